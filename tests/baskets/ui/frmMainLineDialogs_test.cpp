// The main screen's add-stock and edit-item dialogs on their own: their boxes, lists,
// keys and what they hand to the main screen.

#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddStockMain.h"
#include "baskets/ui/frmEditItem.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/ui/UpDown.h"

#include <QComboBox>
#include <QLineEdit>
#include <QToolButton>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;
using Strings = std::vector<std::string>;

Strings Items(const QComboBox& combo) {
    Strings out;
    for (int i = 0; i < combo.count(); ++i) {
        out.push_back(combo.itemText(i).toStdString());
    }
    return out;
}

class AddStockMainScreen : public testing::Test {
protected:
    QLineEdit& edit(const char* name) { return Child<QLineEdit>(dialog, name); }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    std::vector<MainLineEntry> offered;
    bool accept = true;
    frmAddStockMain dialog{*t.db, boxes, [this](MainLineEntry& e) {
                               offered.push_back(e);
                               if (e.quantity.empty()) {
                                   e.quantity = "0";
                               }
                               return accept && !e.symbol.empty();
                           }};
};

TEST_F(AddStockMainScreen, TypedSymbolIsUpperCaseAndEnterAddsTheLine) {
    dialog.show();
    EXPECT_EQ(Child<QComboBox>(dialog, "cboDest").count(), 8);
    Type(edit("txtSymbol"), QStringLiteral("ibm"));
    Child<QComboBox>(dialog, "cboDest").setEditText(QStringLiteral("ARCA"));
    PressEnter(edit("txtQuantity"));
    ASSERT_EQ(offered.size(), 1u);
    EXPECT_EQ(offered[0].symbol, "IBM");
    EXPECT_EQ(offered[0].quantity, "");
    EXPECT_EQ(offered[0].destination, "ARCA");
    EXPECT_EQ(edit("txtQuantity").text().toStdString(), "0");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(AddStockMainScreen, ARefusedLineKeepsTheDialogOpenWithTheFocusOnTheSymbol) {
    dialog.show();
    test::Click(dialog, "buttonAddStock");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.focusWidget(), &edit("txtSymbol"));
    test::Click(dialog, "buttonCancel");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(offered.size(), 1u);
}

class EditItemScreen : public testing::Test {
protected:
    QLineEdit& edit(const char* name) { return Child<QLineEdit>(dialog, name); }
    QComboBox& combo(const char* name) { return Child<QComboBox>(dialog, name); }
    void Step(bool up) {
        auto& spinner = Child<UpDown>(dialog, "UpDown1");
        (up ? spinner.upButton() : spinner.downButton())->click();
    }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    std::vector<MainLineEntry> saved;
    frmEditItem dialog{*t.db, boxes, MainLineEntry{"KO", "200", "NYSE", "0", "EXT"},
                       [this](MainLineEntry& e) {
                           saved.push_back(e);
                           return true;
                       }};
};

TEST_F(EditItemScreen, ShowsTheLineWithTheSortedDestinationsAndItsTifList) {
    EXPECT_EQ(edit("txtSym").text().toStdString(), "KO");
    EXPECT_EQ(edit("txtQty").text().toStdString(), "200");
    EXPECT_EQ(edit("txtMod").text().toStdString(), "0");
    const Strings dests = Items(combo("cbDest"));
    EXPECT_TRUE(std::is_sorted(dests.begin(), dests.end()));
    EXPECT_EQ(combo("cbDest").currentText().toStdString(), "NYSE");
    EXPECT_EQ(combo("cbDest").currentIndex(), combo("cbDest").findText(QStringLiteral("NYSE")));
    EXPECT_EQ(Items(combo("cbTif")), (Strings{"AEX", "CHXP", "DAY", "GTC", "GTX", "FOK", "IOC",
                                              "OPG", "OS", "NOW", "ETX"}));
    // A TIF the list lacks is shown as the line has it.
    EXPECT_EQ(combo("cbTif").currentText().toStdString(), "EXT");
}

TEST_F(EditItemScreen, TheSpinnerStepsTheModifierByACentWithoutRemainders) {
    struct Row {
        const char* start;
        bool up;
        const char* after;
    };
    const Row rows[] = {{"0", true, "0.01"},   {"0.01", false, "0"}, {"0.1", false, "0.09"},
                        {"-0.005", true, "0"}, {"abc", true, "0"},   {"1.5", true, "1.51"}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.start);
        edit("txtMod").setText(QString::fromLatin1(r.start));
        Step(r.up);
        EXPECT_EQ(edit("txtMod").text().toStdString(), r.after);
    }
    edit("txtMod").setText(QStringLiteral("0"));
    for (int i = 0; i < 30; ++i) {
        Step(true);
    }
    for (int i = 0; i < 30; ++i) {
        Step(false);
    }
    EXPECT_EQ(edit("txtMod").text().toStdString(), "0");
}

TEST_F(EditItemScreen, OkHandsOverEveryBox) {
    dialog.show();
    edit("txtSym").clear();
    Type(edit("txtSym"), QStringLiteral("pep"));
    edit("txtQty").setText(QStringLiteral("5"));
    combo("cbDest").setEditText(QStringLiteral("ARCA"));
    combo("cbTif").setCurrentIndex(combo("cbTif").findText(QStringLiteral("IOC")));
    edit("txtMod").setText(QStringLiteral("-0.02"));
    PressEnter(edit("txtMod"));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0], (MainLineEntry{"PEP", "5", "ARCA", "-0.02", "IOC"}));
    EXPECT_FALSE(dialog.isVisible());
}

} // namespace
} // namespace wicker
