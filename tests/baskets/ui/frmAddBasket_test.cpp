#include "baskets/BasketTestDb.h"
#include "baskets/MemoryIndexStore.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddBasket.h"
#include "support/RecordingMessageBoxes.h"

#include <functional>

#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class AddBasketScreen : public testing::Test {
public:
    QLineEdit& edit(const char* name) { return Child<QLineEdit>(dialog, name); }
    QComboBox& combo(const char* name) { return Child<QComboBox>(dialog, name); }
    QTableView& list() { return Child<QTableView>(dialog, "lvStocks"); }

    void enterLine(const char* sym, const char* qty, const char* dest) {
        edit("txtSymbol").setText(QString::fromLatin1(sym));
        edit("txtQty").setText(QString::fromLatin1(qty));
        combo("txtDest").setEditText(QString::fromLatin1(dest));
    }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    MemoryIndexStore index;
    int savedCalls = 0;
    frmAddBasket dialog{*t.db, boxes, index, [this] { ++savedCalls; }};
};

TEST_F(AddBasketScreen, OpensWithIndexTypesDestinationsAndCaption) {
    EXPECT_EQ(dialog.windowTitle().toStdString(), "Add New Basket");
    QComboBox& types = combo("cbIndex");
    ASSERT_EQ(types.count(), 3);
    EXPECT_EQ(types.itemText(2).toStdString(), "Eql Dlr Weighted");
    EXPECT_EQ(types.currentText().toStdString(), "Price Weighted");
    QComboBox& dest = combo("txtDest");
    ASSERT_EQ(dest.count(), 8);
    EXPECT_EQ(dest.itemText(0).toStdString(), "AMEX");
    EXPECT_EQ(dest.itemText(7).toStdString(), "NYSE+");
    EXPECT_TRUE(Child<QRadioButton>(dialog, "Option1").isChecked());
    EXPECT_NE(dialog.findChild<QRadioButton*>(QStringLiteral("optLsBasket")), nullptr);
}

TEST_F(AddBasketScreen, QuantityOneE3IsKeptAsTypedAndStored) {
    enterLine("IBM", "1e3", "nyse");
    Click(dialog, "cmdAdd");
    ASSERT_EQ(Rows(list()), 1);
    EXPECT_EQ(Cell(list(), 0, 1), "1e3");
    EXPECT_EQ(Cell(list(), 0, 2), "NYSE");
    // The entry boxes are emptied for the next line.
    EXPECT_TRUE(edit("txtSymbol").text().isEmpty());
    EXPECT_TRUE(combo("txtDest").currentText().isEmpty());
    edit("txtBasketName").setText(QStringLiteral("Tech"));
    edit("txtButtonName").setText(QStringLiteral("TK"));
    Click(dialog, "cmdSave");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(t.rows("SELECT strSym, intQty, strDest FROM tblBasketDetails"),
              (std::vector<std::string>{"IBM|1000|NYSE"}));
}

// The rules are the logic's; the screen shows the message, stores nothing, stays open and
// puts the focus where the fault is.
TEST_F(AddBasketScreen, RefusalsStoreNothingAndFocusTheFaultyBox) {
    struct Row {
        const char* name;
        std::function<void(AddBasketScreen&)> enter;
        const char* button;
        const char* message;
        const char* focus; ///< "" = wherever it was
    };
    const Row rows[] = {
        {"QuantityNotANumber", [](auto& s) { s.enterLine("IBM", "abc", "NYSE"); }, "cmdAdd",
         "Please enter a valid quantity.", "txtQty"},
        {"NoDestination", [](auto& s) { s.enterLine("IBM", "5", ""); }, "cmdAdd",
         "Destination cannot be blank. Please enter a destination.", "txtDest"},
        {"ExistingName",
         [](auto& s) {
             s.t.addBasket("Tech");
             s.edit("txtBasketName").setText(QStringLiteral("Tech"));
             s.edit("txtButtonName").setText(QStringLiteral("T2"));
         },
         "cmdSave",
         "There is an existing basket with this name.\nPlease choose a different basket name.",
         "txtBasketName"},
        {"NoButtonName",
         [](auto& s) {
             s.edit("txtBasketName").setText(QStringLiteral("Oil"));
             s.edit("txtButtonName").clear();
         },
         "cmdSave", "Please type a button name.", "txtButtonName"},
        {"DivisorNotANumber",
         [](auto& s) {
             s.edit("txtBasketName").setText(QStringLiteral("Gas"));
             s.edit("txtButtonName").setText(QStringLiteral("GS"));
             s.edit("txtDivisor").setText(QStringLiteral("ten"));
         },
         "cmdSave", "Run-time error '13':\n\nType mismatch", ""},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        boxes.clear();
        r.enter(*this);
        const int baskets = t.count("tblBaskets");
        Click(dialog, r.button);
        EXPECT_EQ(boxes.texts(), std::vector<std::string>{r.message});
        EXPECT_EQ(Rows(list()), 0);
        EXPECT_EQ(t.count("tblBaskets"), baskets);
        EXPECT_EQ(savedCalls, 0);
        EXPECT_NE(dialog.result(), QDialog::Accepted);
        if (*r.focus != '\0') {
            EXPECT_EQ(dialog.focusWidget(),
                      dialog.findChild<QWidget*>(QString::fromLatin1(r.focus)));
        }
    }
}

TEST_F(AddBasketScreen, ShiftInvertsTheCaseOfTypedLetters) {
    QLineEdit& sym = edit("txtSymbol");
    Type(sym, QStringLiteral("ib"));
    Type(sym, QStringLiteral("m"), true);
    EXPECT_EQ(sym.text().toStdString(), "IBm");
}

TEST_F(AddBasketScreen, EnterInTheSymbolBoxAddsTheLine) {
    enterLine("GE", "10", "ARCA");
    PressEnter(edit("txtSymbol"));
    ASSERT_EQ(Rows(list()), 1);
    EXPECT_EQ(Cell(list(), 0, 0), "GE");
    EXPECT_FALSE(dialog.result() == QDialog::Accepted);
}

TEST_F(AddBasketScreen, RemoveSelectedDropsTheRowAndNothingWithoutSelection) {
    enterLine("A", "1", "NYSE");
    Click(dialog, "cmdAdd");
    enterLine("B", "2", "NYSE");
    Click(dialog, "cmdAdd");
    Click(dialog, "cmdRemove");
    EXPECT_EQ(Rows(list()), 2);
    list().setCurrentIndex(list().model()->index(0, 0));
    Click(dialog, "cmdRemove");
    ASSERT_EQ(Rows(list()), 1);
    EXPECT_EQ(Cell(list(), 0, 0), "B");
}

TEST_F(AddBasketScreen, SaveStoresBasketDivisorAndIndexTypeThenReloadsTheSetupList) {
    edit("txtBasketName").setText(QStringLiteral("Tech"));
    edit("txtButtonName").setText(QStringLiteral("TK"));
    edit("txtDivisor").setText(QStringLiteral("12.5"));
    combo("cbIndex").setCurrentIndex(1);
    Click(dialog, "cmdSave");
    EXPECT_EQ(savedCalls, 1);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(t.rows("SELECT strBasketName, strButtonName, chType FROM tblBaskets"),
              (std::vector<std::string>{"Tech|TK|B"}));
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
    EXPECT_EQ(index.divisors.at("Tech"), 12.5);
    EXPECT_EQ(index.indexTypes.at("Tech"), "Mkt Cap Weighted");
}

} // namespace
} // namespace wicker
