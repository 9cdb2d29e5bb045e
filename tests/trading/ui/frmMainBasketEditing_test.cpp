// Editing the main window's basket through its menus and dialogs: removal of lines and
// baskets, New, Save and Save As, the add-stock and edit-item dialogs, and the utilities'
// trading data tools.

#include "admin/ui/frmUtils.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddStockMain.h"
#include "baskets/ui/frmEditItem.h"
#include "baskets/ui/frmSaveAs.h"
#include "trading/basket/MainScreenQueries.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/MainScreenFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;
using Strings = std::vector<std::string>;

class MainEditing : public MainScreen {
protected:
    int32_t BasketNum(const std::string& name) { return *ReadBasketNum(desk->db(), name); }

    /// "symbol qty dest" of a stored basket's rows, by record number.
    Strings StoredRows(int32_t basketNum) {
        Recordset rs = desk->db().OpenRecordset(
            "SELECT strSym, intQty, strDest FROM tblBasketDetails WHERE intBasketNum = " +
            std::to_string(basketNum) + " ORDER BY intRecordNum");
        Strings out;
        for (; !rs.IsEOF(); rs.MoveNext()) {
            out.push_back(rs.Field("strSym").text() + " " + rs.Field("intQty").text() + " " +
                          rs.Field("strDest").text());
        }
        return out;
    }
    size_t AllRows(const char* table) {
        return desk->db().OpenRecordset(std::string("SELECT * FROM ") + table).RowCount();
    }

    void SelectLine(int row) { Stocks().setCurrentIndex(Stocks().model()->index(row, 0)); }
    void PasteText(const char* text) {
        QGuiApplication::clipboard()->setText(QString::fromLatin1(text));
        Action("mnuPaste").trigger();
    }
    Strings Symbols() const {
        Strings out;
        for (int row = 0; row < Rows(Stocks()); ++row) {
            out.push_back(Cell(Stocks(), row, stkSymbol));
        }
        return out;
    }
    std::string BasketName() const { return Find<QLabel>("labelName").text().toStdString(); }

    /// Sends the loaded basket with one order button and lets the market answer.
    void Send(const char* button) {
        ChooseAccount();
        Run(1s);
        Click(button);
        Run(2s);
    }
};

TEST_F(MainEditing, StockListPopUpHasItsCommands) {
    Open();
    const std::pair<const char*, const char*> items[] = {
        {"mnuPaste", "Paste"},           {"mnuEditSelected", "Edit Selected..."},
        {"mnuAddStock", "Add Stock..."}, {"mnuRemoveSelected", "Remove Selected"},
        {"mnuRemoveAll", "Remove All"},  {"mnuRemoveSelectedBasket", "Remove Selected Basket"},
    };
    for (const auto& [name, caption] : items) {
        EXPECT_EQ(Action(name).text().toStdString(), caption) << name;
    }
    EXPECT_EQ(Stocks().contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_EQ(Find<QListWidget>("lstBaskets").contextMenuPolicy(), Qt::CustomContextMenu);
}

// What each command does to the rows is the desk's to test; here the menus reach it.
TEST_F(MainEditing, RemoveAndNewCommandsReachTheLoadedBasket) {
    Open();
    Click("cmdLoad_1");
    const int32_t tech = BasketNum("Tech10");
    SelectLine(1); // MSFT
    Action("mnuRemoveSelected").trigger();
    EXPECT_EQ(Cell(Stocks(), 1, stkSymbol), "NVDA");
    EXPECT_EQ(StoredRows(tech).size(), 9u);
    emit Find<QMenu>("mnuFile").aboutToShow();
    EXPECT_FALSE(Action("mnuFileSave").isEnabled()) << "a stored basket is written already";
    Action("mnuRemoveAll").trigger();
    EXPECT_EQ(Rows(Stocks()), 0);
    EXPECT_TRUE(StoredRows(tech).empty());

    auto& list = Find<QListWidget>("lstBaskets");
    {
        const QSignalBlocker quiet(&list); // chosen, not loaded
        list.setCurrentRow(0);             // Dow3
    }
    Action("mnuRemoveSelectedBasket").trigger();
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.currentRow(), 0); // the neighbour is chosen
    EXPECT_EQ(BasketName(), "Tech10");
    Action("mnuRemoveSelectedBasket").trigger();
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(Find<QPushButton>("cmdLoad_1").isHidden());

    PasteText("IBM\t100\nKO\t5\n");
    Action("mnuFileNew").trigger();
    EXPECT_EQ(Rows(Stocks()), 0);
    EXPECT_EQ(BasketName(), "Basket");
}

TEST_F(MainEditing, SaveStoresAnUnsavedBasketUnderItsNewName) {
    Open();
    PasteText("IBM\t100\nGOOGL\t50\n");
    emit Find<QMenu>("mnuFile").aboutToShow();
    ASSERT_TRUE(Action("mnuFileSave").isEnabled());
    {
        WhenOpens<frmSaveAs> save([](frmSaveAs& d) {
            Child<QLineEdit>(d, "txtBasketName").setText(QStringLiteral("Pasted"));
            Child<QLineEdit>(d, "txtButtonName").setText(QStringLiteral("P"));
            test::Click(d, "buttonSave");
        });
        Action("mnuFileSave").trigger();
    }
    const int32_t pasted = BasketNum("Pasted");
    EXPECT_EQ(desk->CurrentBasketNum(), pasted);
    EXPECT_EQ(BasketName(), "Pasted");
    EXPECT_EQ(StoredRows(pasted), (Strings{"IBM 100 NYSE", "GOOGL 50 ARCA"}));
    auto& list = Find<QListWidget>("lstBaskets");
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.item(1)->text().toStdString(), "Pasted");

    // Now a stored basket: Save offers nothing, and a removal reaches the new rows.
    emit Find<QMenu>("mnuFile").aboutToShow();
    EXPECT_FALSE(Action("mnuFileSave").isEnabled());
    SelectLine(0);
    Action("mnuRemoveSelected").trigger();
    EXPECT_EQ(StoredRows(pasted), Strings{"GOOGL 50 ARCA"});
}

TEST_F(MainEditing, SaveAsOfLinesTheDatabaseRefusesStoresNothing) {
    Open();
    PasteText("IBM\t100\nX'); DELETE FROM tblBaskets; --\t5\n");
    const size_t baskets = AllRows("tblBaskets");
    const size_t details = AllRows("tblBasketDetails");
    {
        WhenOpens<frmSaveAs> save([](frmSaveAs& d) {
            Child<QLineEdit>(d, "txtBasketName").setText(QStringLiteral("Bad"));
            Child<QLineEdit>(d, "txtButtonName").setText(QStringLiteral("B"));
            test::Click(d, "buttonSave");
        });
        Action("mnuFileSaveAs").trigger();
    }
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(AllRows("tblBaskets"), baskets);
    EXPECT_EQ(AllRows("tblBasketDetails"), details);
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
}

TEST_F(MainEditing, AddStockAndEditItemDialogsChangeTheLineAndItsStoredRow) {
    Open();
    Find<QListWidget>("lstBaskets").setCurrentRow(0); // Dow3: JPM, KO, XOM
    const int32_t dow = BasketNum("Dow3");
    {
        WhenOpens<frmAddStockMain> add([this](frmAddStockMain& d) {
            EXPECT_EQ(d.windowTitle().toStdString(), "Add Stock");
            test::Click(d, "buttonAddStock");
            EXPECT_TRUE(d.isVisible()) << "a refused line keeps the dialog open";
            EXPECT_EQ(boxes.texts(), Strings{"Please enter symbol."});
            Type(Child<QLineEdit>(d, "txtSymbol"), QStringLiteral("cvx"));
            Child<QLineEdit>(d, "txtQuantity").setText(QStringLiteral("75"));
            Child<QComboBox>(d, "cboDest").setEditText(QStringLiteral("nyse"));
            test::Click(d, "buttonAddStock");
            EXPECT_FALSE(d.isVisible()) << "the dialog closes after the line was added";
        });
        Action("mnuAddStock").trigger();
    }
    EXPECT_EQ(Symbols(), (Strings{"JPM", "KO", "XOM", "CVX"}));
    EXPECT_EQ(Cell(Stocks(), 3, stkDest), "NYSE");
    EXPECT_EQ(StoredRows(dow).back(), "CVX 75 NYSE");
    Run(1s);
    EXPECT_FALSE(Cell(Stocks(), 3, stkLast).empty()) << "the new line is quoted";

    {
        WhenOpens<frmEditItem> edit([](frmEditItem& d) {
            EXPECT_EQ(Child<QLineEdit>(d, "txtSym").text().toStdString(), "KO");
            EXPECT_EQ(Child<QLineEdit>(d, "txtQty").text().toStdString(), "200");
            EXPECT_EQ(Child<QComboBox>(d, "cbDest").currentText().toStdString(), "NYSE");
            EXPECT_EQ(Child<QComboBox>(d, "cbTif").currentText().toStdString(), "DAY");
            Child<QLineEdit>(d, "txtSym").setText(QStringLiteral("PEP"));
            Child<QLineEdit>(d, "txtQty").setText(QStringLiteral("250"));
            Child<QComboBox>(d, "cbDest").setEditText(QStringLiteral("ARCA"));
            Child<QComboBox>(d, "cbTif").setEditText(QStringLiteral("IOC"));
            Child<QLineEdit>(d, "txtMod").setText(QStringLiteral("0.05"));
            test::Click(d, "cmdOk");
        });
        emit Stocks().doubleClicked(Stocks().model()->index(1, stkSymbol));
    }
    EXPECT_EQ(Cell(Stocks(), 1, stkOrderQty), "250");
    EXPECT_EQ(Cell(Stocks(), 1, stkMod), "0.05");
    EXPECT_EQ(Cell(Stocks(), 1, stkTif), "IOC");
    EXPECT_EQ(StoredRows(dow),
              (Strings{"JPM 100 NYSE", "PEP 250 ARCA", "XOM 150 NYSE", "CVX 75 NYSE"}));

    SelectLine(0);
    {
        WhenOpens<frmEditItem> edit([](frmEditItem& d) {
            EXPECT_EQ(Child<QLineEdit>(d, "txtSym").text().toStdString(), "JPM");
            Child<QLineEdit>(d, "txtQty").setText(QStringLiteral("7"));
            test::Click(d, "cmdOk");
        });
        Action("mnuEditSelected").trigger();
    }
    EXPECT_EQ(Cell(Stocks(), 0, stkBasketQty), "7");
}

// The utilities' rules are their logic's tests; here the menu reaches them on the real desk.
TEST_F(MainEditing, UtilitiesCloseAndThenClearTheSentBasketsList) {
    Open();
    Click("cmdLoad_1");
    Send("cmdExecuteBasket_17"); // BUY MOO: rests through the test
    ASSERT_EQ(Cell(Baskets(), 0, colOpenOrders), "10");
    const size_t journal = AllRows("tblOrders");
    boxes.clear();
    boxes.answerNext(MsgAnswer::Yes);
    {
        WhenOpens<frmUtils> utils([](frmUtils& d) { test::Click(d, "cmdCloseOrders"); });
        Action("mnuUtilities").trigger();
    }
    EXPECT_EQ(Cell(Baskets(), 0, colOpenOrders), "0");
    EXPECT_EQ(Cell(Baskets(), 0, colOpenQty), "0");
    {
        WhenOpens<frmUtils> utils([](frmUtils& d) { test::Click(d, "cmdClearTradeData"); });
        Action("mnuUtilities").trigger();
    }
    EXPECT_EQ(boxes.texts(),
              (Strings{"Do you want to mark all orders closed?", "Trading data cleared."}));
    EXPECT_EQ(Rows(Baskets()), 0);
    EXPECT_EQ(AllRows("tblOrders"), journal);
    Run(2s);
    EXPECT_EQ(Rows(Baskets()), 0) << "cleared orders do not come back";
}

} // namespace
} // namespace wicker::test
