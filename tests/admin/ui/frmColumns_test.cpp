// Showing, hiding, ordering and sizing the main window's list columns: through the
// "Columns" screen and by the headers, kept in basket.ini across restarts.

#include "admin/ui/frmColumns.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/MainScreenFixture.h"

#include <QApplication>
#include <QListWidget>
#include <QTimer>

namespace wicker::test {
namespace {

class ColumnsScreen : public MainScreen {
protected:
    std::string Stored(const char* section, const char* key) const {
        return test::IniValue(dir / "basket.ini", section, key);
    }
    QHeaderView& StockHeader() const { return *Stocks().horizontalHeader(); }
    QHeaderView& BasketHeader() const { return *Baskets().horizontalHeader(); }

    /// Opens "Columns..." from the menu and lets `work` act on the dialog while it is up.
    void WithColumnsDialog(const std::function<void(frmColumns&)>& work) {
        bool seen = false;
        QTimer::singleShot(0, [&] {
            if (auto* dialog = qobject_cast<frmColumns*>(QApplication::activeModalWidget())) {
                seen = true;
                work(*dialog);
                if (dialog->isVisible()) {
                    dialog->reject();
                }
            }
        });
        Action("mnuColumns").trigger();
        EXPECT_TRUE(seen);
    }
    static QListWidgetItem& Item(frmColumns& d, const char* list, const char* caption) {
        auto* l = d.findChild<QListWidget*>(QString::fromLatin1(list));
        const auto found = l->findItems(QString::fromLatin1(caption), Qt::MatchExactly);
        if (found.isEmpty()) {
            throw std::runtime_error(std::string("no item ") + caption);
        }
        return *found.front();
    }
};

TEST_F(ColumnsScreen, HiddenColumnsStayHiddenAfterARestart) {
    Open();
    ASSERT_FALSE(StockHeader().isSectionHidden(stkVolume));
    WithColumnsDialog([&](frmColumns& d) {
        Item(d, "lstStockColumns", "Volume").setCheckState(Qt::Unchecked);
        Item(d, "lstBasketColumns", "Index").setCheckState(Qt::Unchecked);
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    EXPECT_TRUE(StockHeader().isSectionHidden(stkVolume));
    EXPECT_TRUE(BasketHeader().isSectionHidden(colIndex));
    // Written at once, not only when the window closes.
    EXPECT_EQ(Stored("ColumnDisplay", "BasketItemsCols"), "11111111101111111111");
    EXPECT_EQ(Stored("ColumnDisplay", "BasketInfoCols"), "1111111111101");

    TearDown();
    Open();
    EXPECT_TRUE(StockHeader().isSectionHidden(stkVolume));
    EXPECT_FALSE(StockHeader().isSectionHidden(stkChange));
    EXPECT_TRUE(BasketHeader().isSectionHidden(colIndex));
}

TEST_F(ColumnsScreen, TheDialogOrdersColumnsAndResetBringsEveryColumnBack) {
    Ini("[ColumnDisplay]\r\nBasketItemsCols=01111111111111111111\r\n");
    Open();
    WithColumnsDialog([&](frmColumns& d) {
        auto* list = d.findChild<QListWidget*>(QStringLiteral("lstStockColumns"));
        EXPECT_EQ(list->item(0)->checkState(), Qt::Unchecked); // Symbol, hidden by the file
        list->setCurrentRow(3);                                // the fourth column down = "Last"
        d.findChild<QPushButton*>(QStringLiteral("cmdStockUp"))->click();
        d.findChild<QPushButton*>(QStringLiteral("cmdStockUp"))->click();
        EXPECT_EQ(list->currentRow(), 1);
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    EXPECT_EQ(StockHeader().visualIndex(stkLast), 1);
    EXPECT_EQ(StockHeader().visualIndex(stkBid), 2);
    EXPECT_EQ(Stored("ColumnPositions", "ItemsPositions"),
              "1,3,4,2,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,");

    WithColumnsDialog([&](frmColumns& d) {
        d.findChild<QPushButton*>(QStringLiteral("cmdReset"))->click();
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    EXPECT_FALSE(StockHeader().isSectionHidden(stkSymbol));
    EXPECT_EQ(StockHeader().visualIndex(stkLast), stkLast);
    EXPECT_EQ(Stored("ColumnDisplay", "BasketItemsCols"), "11111111111111111111");
}

TEST_F(ColumnsScreen, HidingEveryColumnIsRefusedAndChangesNothing) {
    Open();
    const std::string before = ReadFile(dir / "basket.ini");
    WithColumnsDialog([&](frmColumns& d) {
        auto* list = d.findChild<QListWidget*>(QStringLiteral("lstBasketColumns"));
        for (int row = 0; row < list->count(); ++row) {
            list->item(row)->setCheckState(Qt::Unchecked);
        }
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        EXPECT_TRUE(d.isVisible()); // left open to be put right
    });
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Please leave at least one column of each list shown.");
    EXPECT_FALSE(BasketHeader().isSectionHidden(colBasket));
    EXPECT_EQ(ReadFile(dir / "basket.ini"), before);
}

TEST_F(ColumnsScreen, ADraggedHeaderIsSavedAtOnce) {
    Open();
    StockHeader().moveSection(StockHeader().visualIndex(stkDest), 0);
    EXPECT_EQ(Stored("ColumnPositions", "ItemsPositions"),
              "2,3,4,5,6,7,1,8,9,10,11,12,13,14,15,16,17,18,19,20,");
    BasketHeader().moveSection(BasketHeader().visualIndex(colSide), 0);
    EXPECT_EQ(Stored("ColumnPositions", "InfoPositions"), "2,3,4,5,6,7,8,9,10,11,12,13,1");

    TearDown();
    Open();
    EXPECT_EQ(StockHeader().visualIndex(stkDest), 0);
    EXPECT_EQ(BasketHeader().visualIndex(colSide), 0);
}

TEST_F(ColumnsScreen, WidthsAreRememberedAndAHiddenColumnKeepsItsWidth) {
    Open();
    StockHeader().resizeSection(stkSymbol, 133);
    StockHeader().resizeSection(stkVolume, 99);
    BasketHeader().resizeSection(colBasket, 150);
    WithColumnsDialog([&](frmColumns& d) {
        Item(d, "lstStockColumns", "Volume").setCheckState(Qt::Unchecked);
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    EXPECT_EQ(StockHeader().sectionSize(stkSymbol), 133); // not undone by the dialog
    window->close();
    EXPECT_EQ(Stored("StockColumnWidths", "column1"), "133");
    EXPECT_EQ(Stored("StockColumnWidths", "column10"), "99");
    EXPECT_EQ(Stored("BasketColumnWidths", "column2"), "150");

    TearDown();
    Open();
    EXPECT_EQ(StockHeader().sectionSize(stkSymbol), 133);
    EXPECT_EQ(BasketHeader().sectionSize(colBasket), 150);
    WithColumnsDialog([&](frmColumns& d) {
        Item(d, "lstStockColumns", "Volume").setCheckState(Qt::Checked);
        d.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    EXPECT_EQ(StockHeader().sectionSize(stkVolume), 99);
}

} // namespace
} // namespace wicker::test
