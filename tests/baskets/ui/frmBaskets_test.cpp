#include "baskets/BasketTestDb.h"
#include "baskets/MemoryIndexStore.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddBasket.h"
#include "baskets/ui/frmAddStock.h"
#include "baskets/ui/frmBaskets.h"
#include "baskets/ui/frmEditDivisor.h"
#include "baskets/ui/frmEditStock.h"
#include "baskets/ui/frmExportBasket.h"
#include "baskets/ui/frmImportBasket.h"
#include "support/RecordingMessageBoxes.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class SetupScreen : public testing::Test {
protected:
    SetupScreen() {
        tech = t.addBasket("Tech", "TK", 1);
        banks = t.addBasket("Banks", "BK", 0);
        oil = t.addBasket("Oil", "OL", 0);
        t.addLine(tech, "IBM", "100", "NYSE");
        t.addLine(tech, "MSFT", "50", "ARCA", "30");
        t.addLine(banks, "JPM", "10", "NYSE", "4");
        index.setDivisor("Tech", 2.5);
        index.setIndexType("Tech", "Mkt Cap Weighted");
    }

    std::unique_ptr<frmBaskets> open() {
        auto screen = std::make_unique<frmBaskets>(
            BasketUiContext{*t.db, boxes, index, main, files, t.dir.path(), [] {
                                return ImportDefaults{"NYSE", "ARCA"};
                            }});
        screen->show();
        return screen;
    }

    static QTableView& baskets(frmBaskets& s) { return Child<QTableView>(s, "lvBaskets"); }
    static QTableView& stocks(frmBaskets& s) { return Child<QTableView>(s, "lvBasketStocks"); }
    static std::string label(frmBaskets& s) {
        return Child<QLabel>(s, "lblBasket").text().toStdString();
    }
    static void clickBasket(frmBaskets& s, int row) {
        baskets(s).setCurrentIndex(baskets(s).model()->index(row, 0));
    }
    static std::vector<std::string> basketNames(frmBaskets& s) {
        std::vector<std::string> out;
        for (int i = 0; i < Rows(baskets(s)); ++i) {
            out.push_back(Cell(baskets(s), i, 0));
        }
        return out;
    }
    static void tick(frmBaskets& s, int row, bool on) {
        baskets(s).model()->setData(baskets(s).model()->index(row, 0),
                                    on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }

    BasketTestDb t;
    int32_t tech = 0;
    int32_t banks = 0;
    int32_t oil = 0;
    RecordingMessageBoxes boxes;
    MemoryIndexStore index;
    RecordingMainLink main;
    ScriptedFileChooser files;
};

TEST_F(SetupScreen, OpensWithEveryBasketAndNoneSelected) {
    auto s = open();
    EXPECT_EQ(s->windowTitle().toStdString(), "Basket Setup");
    EXPECT_EQ(basketNames(*s), (std::vector<std::string>{"Tech", "Banks", "Oil"}));
    QTableView& list = baskets(*s);
    EXPECT_TRUE(list.isColumnHidden(frmBaskets::ColButton));
    EXPECT_EQ(Cell(list, 0, frmBaskets::ColButton), "TK");
    EXPECT_EQ(Cell(list, 0, frmBaskets::ColType), "B");
    EXPECT_EQ(Cell(list, 0, frmBaskets::ColDivisor), "2.5");
    EXPECT_EQ(Cell(list, 0, frmBaskets::ColIndex), "Mkt Cap Weighted");
    EXPECT_EQ(list.model()->index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(list.model()->index(1, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(s->currentBasketNum(), 0);
    EXPECT_EQ(label(*s), "");
    EXPECT_EQ(Rows(stocks(*s)), 0);
    auto* menu = s->findChild<QMenu*>(QStringLiteral("mnuSetupFile"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->title().toStdString(), "&File");
    EXPECT_EQ(Child<QAction>(*s, "mnuImport").text().toStdString(), "&Import Basket...");
    EXPECT_EQ(Child<QAction>(*s, "mnuExport").text().toStdString(), "&Export Basket...");
    EXPECT_EQ(Child<QAction>(*s, "mnuImportSpreadsheet").text().toStdString(),
              "Import from &Spreadsheet...");
    // At the first size every caption and value reads whole.
    for (const QTableView* view : {&list, &stocks(*s)}) {
        for (int c = 0; c < view->model()->columnCount(); ++c) {
            const QString caption = view->model()->headerData(c, Qt::Horizontal).toString();
            if (!view->isColumnHidden(c)) {
                EXPECT_GT(view->columnWidth(c), view->fontMetrics().horizontalAdvance(caption))
                    << caption.toStdString();
            }
        }
    }
    EXPECT_GT(list.columnWidth(frmBaskets::ColIndex),
              list.fontMetrics().horizontalAdvance(QStringLiteral("Mkt Cap Weighted")));
}

TEST_F(SetupScreen, ClickingABasketShowsItsLinesWithNullSharesAsZero) {
    auto s = open();
    clickBasket(*s, 0);
    EXPECT_EQ(label(*s), "Tech");
    EXPECT_EQ(s->currentBasketNum(), tech);
    QTableView& lines = stocks(*s);
    ASSERT_EQ(Rows(lines), 2);
    EXPECT_EQ(Cell(lines, 0, 0), "IBM");
    EXPECT_EQ(Cell(lines, 0, 3), "0");
    EXPECT_EQ(Cell(lines, 1, 3), "30");
}

TEST_F(SetupScreen, AddStockWithNoBasketSelectedOpensNothing) {
    auto s = open();
    // The list getting the focus is no choice of a basket.
    s->activateWindow();
    baskets(*s).setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(s->currentBasketNum(), 0);
    Click(*s, "cmdDeleteBasket");
    EXPECT_EQ(basketNames(*s), (std::vector<std::string>{"Tech", "Banks", "Oil"}));
    Click(*s, "cmdAddStock");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Please select a basket first.");
    EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
    EXPECT_EQ(s->findChild<frmAddStock*>(), nullptr);
}

// Which row follows a deletion is the store's rule; the screen shows it and drops the lines.
TEST_F(SetupScreen, DeletingABasketShowsTheFollowingOneAndDropsItsLines) {
    auto s = open();
    clickBasket(*s, 1);
    Click(*s, "cmdDeleteBasket");
    EXPECT_EQ(basketNames(*s), (std::vector<std::string>{"Tech", "Oil"}));
    EXPECT_EQ(label(*s), "Oil");
    EXPECT_EQ(baskets(*s).currentIndex().row(), 1);
    EXPECT_TRUE(t.lines(banks).empty());
    EXPECT_EQ(t.lines(tech).size(), 2u);

    clickBasket(*s, 0);
    Click(*s, "cmdDeleteBasket"); // Tech: Oil follows
    Click(*s, "cmdDeleteBasket"); // Oil, the last: nothing is shown
    EXPECT_EQ(Rows(baskets(*s)), 0);
    EXPECT_EQ(Rows(stocks(*s)), 0);
    EXPECT_EQ(label(*s), "");
    EXPECT_EQ(s->currentBasketNum(), 0);
}

TEST_F(SetupScreen, DeleteStockRemovesTheRowAtOnce) {
    auto s = open();
    clickBasket(*s, 0);
    stocks(*s).setCurrentIndex(stocks(*s).model()->index(0, 0));
    Click(*s, "cmdDeleteStock");
    EXPECT_EQ(Rows(stocks(*s)), 1);
    EXPECT_EQ(t.lines(tech), (std::vector<std::string>{"MSFT|50|ARCA|30"}));
}

TEST_F(SetupScreen, SaveChangesWritesNullSharesAsZeroAndTellsTheMainScreen) {
    auto s = open();
    clickBasket(*s, 0);
    tick(*s, 1, true);
    Click(*s, "cmdSaveBasketChanges");
    EXPECT_EQ(t.lines(tech), (std::vector<std::string>{"IBM|100|NYSE|0", "MSFT|50|ARCA|30"}));
    EXPECT_EQ(t.rows("SELECT intOnButton FROM tblBaskets ORDER BY intBasketNum"),
              (std::vector<std::string>{"1", "1", "0"}));
    EXPECT_EQ(index.divisors,
              (std::map<std::string, double>{{"Banks", 0}, {"Oil", 0}, {"Tech", 2.5}}));
    // The main screen's loaded lines are left as the trader set them.
    EXPECT_EQ(main.calls, (std::vector<std::string>{"LoadBasketList", "LoadButtonValues"}));
    EXPECT_EQ(s->result(), QDialog::Accepted);
    EXPECT_FALSE(s->isVisible());
}

// Cancel and the title bar both keep the ticks, never rewrite the lines and refresh the
// main screen's buttons.
TEST_F(SetupScreen, ClosingKeepsTicksAndNeverRewritesLines) {
    for (const bool byTitleBar : {false, true}) {
        SCOPED_TRACE(byTitleBar ? "title bar" : "Cancel");
        main.calls.clear();
        auto s = open();
        clickBasket(*s, 0);
        tick(*s, byTitleBar ? 2 : 1, true);
        if (byTitleBar) {
            s->close();
        } else {
            Click(*s, "cmdCancel");
        }
        EXPECT_EQ(t.rows("SELECT intOnButton FROM tblBaskets ORDER BY intBasketNum"),
                  (std::vector<std::string>{"1", "1", byTitleBar ? "1" : "0"}));
        EXPECT_EQ(t.lines(tech),
                  (std::vector<std::string>{"IBM|100|NYSE|<null>", "MSFT|50|ARCA|30"}));
        EXPECT_EQ(main.calls, (std::vector<std::string>{"LoadBasketList", "LoadButtonValues",
                                                        "LoadButtonDisplay"}));
        EXPECT_FALSE(s->isVisible());
    }
}

TEST_F(SetupScreen, DoubleClickOnABasketEditsItsDivisorNeverZero) {
    auto s = open();
    WhenOpens<frmEditDivisor> act([](frmEditDivisor& d) {
        EXPECT_EQ(Child<QLineEdit>(d, "txtBasketName").text().toStdString(), "Banks");
        EXPECT_EQ(Child<QLineEdit>(d, "txtButtonName").text().toStdString(), "BK");
        Child<QLineEdit>(d, "txtDivisor").setText(QStringLiteral("0"));
        Child<QComboBox>(d, "cbIndex").setCurrentIndex(2);
        Click(d, "butOK");
    });
    emit baskets(*s).doubleClicked(baskets(*s).model()->index(1, 0));
    EXPECT_EQ(Cell(baskets(*s), 1, frmBaskets::ColDivisor), "1");
    EXPECT_EQ(Cell(baskets(*s), 1, frmBaskets::ColIndex), "Eql Dlr Weighted");
    EXPECT_EQ(index.divisors.at("Banks"), 1);
}

TEST_F(SetupScreen, DoubleClickOnALineEditsItAndUpdatesTheRow) {
    auto s = open();
    clickBasket(*s, 0);
    WhenOpens<frmEditStock> act([](frmEditStock& d) {
        EXPECT_EQ(Child<QLineEdit>(d, "txtIndexShares").text().toStdString(), "0");
        Child<QLineEdit>(d, "txtQty").setText(QStringLiteral("175"));
        Click(d, "cmdSave");
    });
    emit stocks(*s).doubleClicked(stocks(*s).model()->index(0, 0));
    EXPECT_EQ(Cell(stocks(*s), 0, frmBaskets::ColQty), "175");
    EXPECT_EQ(t.lines(tech)[0], "IBM|175|NYSE|0");
}

TEST_F(SetupScreen, AddStockAddsLinesAndReloadsThemAfterwards) {
    auto s = open();
    clickBasket(*s, 2);
    WhenOpens<frmAddStock> act([](frmAddStock& d) {
        Child<QLineEdit>(d, "txtSymbol").setText(QStringLiteral("XOM"));
        Child<QLineEdit>(d, "txtQty").setText(QStringLiteral("40"));
        Child<QComboBox>(d, "cboDest").setEditText(QStringLiteral("NYSE"));
        Click(d, "cmdAdd");
        Child<QLineEdit>(d, "txtSymbol").setText(QStringLiteral("CVX"));
        Click(d, "cmdAdd");
        Click(d, "cmdCancel");
    });
    Click(*s, "cmdAddStock");
    ASSERT_EQ(Rows(stocks(*s)), 2);
    EXPECT_EQ(Cell(stocks(*s), 1, 0), "CVX");
    EXPECT_EQ(t.lines(oil), (std::vector<std::string>{"XOM|40|NYSE|0", "CVX|0|NYSE|0"}));
}

TEST_F(SetupScreen, AddBasketReloadsTheList) {
    auto s = open();
    WhenOpens<frmAddBasket> act([](frmAddBasket& d) {
        Child<QLineEdit>(d, "txtBasketName").setText(QStringLiteral("Retail"));
        Child<QLineEdit>(d, "txtButtonName").setText(QStringLiteral("RT"));
        Click(d, "cmdSave");
    });
    Click(*s, "cmdNewBasket");
    EXPECT_EQ(basketNames(*s), (std::vector<std::string>{"Tech", "Banks", "Oil", "Retail"}));
}

TEST_F(SetupScreen, ImportThroughTheMenuAddsTheBasketAndKeepsTheShownLines) {
    WriteFile(t.dir / "new.txt", "AAPL,5,\r\n");
    auto s = open();
    clickBasket(*s, 1);
    WhenOpens<frmImportBasket> act([&](frmImportBasket& d) {
        Child<QLineEdit>(d, "txtBasketName").setText(QStringLiteral("Fresh"));
        Child<QLineEdit>(d, "txtButtonName").setText(QStringLiteral("FR"));
        Child<QLineEdit>(d, "txtFileName")
            .setText(QString::fromStdString((t.dir / "new.txt").string()));
        Click(d, "cmdImport");
    });
    Child<QAction>(*s, "mnuImport").trigger();
    EXPECT_EQ(basketNames(*s), (std::vector<std::string>{"Tech", "Banks", "Oil", "Fresh"}));
    EXPECT_EQ(label(*s), "Banks");
    EXPECT_EQ(baskets(*s).currentIndex().row(), 1);
    EXPECT_EQ(t.rows("SELECT strDest FROM tblBasketDetails WHERE strSym = 'AAPL'"),
              (std::vector<std::string>{"ARCA"}));
}

TEST_F(SetupScreen, ExportProposesTheNameWithoutBlanksInTheBasketsFolder) {
    t.db->ExecuteSql("UPDATE tblBaskets SET strBasketName = 'Big Tech' WHERE strBasketName = "
                     "'Tech'");
    auto s = open();
    clickBasket(*s, 0);
    WhenOpens<frmExportBasket> act([&](frmExportBasket& d) {
        EXPECT_EQ(Child<QLineEdit>(d, "ebFilename").text().toStdString(),
                  (t.dir / "Baskets" / "BigTech.txt").string());
        Click(d, "butExport");
    });
    Child<QAction>(*s, "mnuExport").trigger();
    EXPECT_EQ(ReadFile(t.dir / "Baskets" / "BigTech.txt"), "IBM,100,NYSE\r\nMSFT,50,ARCA\r\n");
}

TEST_F(SetupScreen, ExportWithNoBasketSelectedAsksForOne) {
    auto s = open();
    Child<QAction>(*s, "mnuExport").trigger();
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Please select a basket first."}));
}

} // namespace
} // namespace wicker
