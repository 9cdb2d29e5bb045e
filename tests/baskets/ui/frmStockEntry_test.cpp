#include "baskets/BasketTestDb.h"
#include "baskets/ui/ScreenSupport.h"
#include "baskets/ui/frmAddStock.h"
#include "baskets/ui/frmEditStock.h"
#include "support/RecordingMessageBoxes.h"

#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class AddStockScreen : public testing::Test {
protected:
    QLineEdit& edit(const char* name) { return Child<QLineEdit>(dialog, name); }
    QComboBox& dest() { return Child<QComboBox>(dialog, "cboDest"); }

    BasketTestDb t;
    int32_t basket = t.addBasket("A");
    RecordingMessageBoxes boxes;
    std::vector<StockRow> added;
    frmAddStock dialog{*t.db, boxes, basket, [this](const StockRow& r) { added.push_back(r); }};
};

TEST_F(AddStockScreen, EmptyQuantityAndSharesStoreZeroAndTheDialogStaysOpen) {
    dialog.show();
    EXPECT_EQ(dest().count(), 8) << "the enabled destinations";
    edit("txtSymbol").setText(QStringLiteral("IBM"));
    dest().setEditText(QStringLiteral("nyse"));
    Click(dialog, "cmdAdd");
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|0|NYSE|0"}));
    ASSERT_EQ(added.size(), 1u);
    EXPECT_EQ(added[0], (StockRow{0, "IBM", "0", "NYSE", "0"}));
    EXPECT_TRUE(dialog.isVisible());
    // Ready for the next line: the destination stays.
    EXPECT_TRUE(edit("txtSymbol").text().isEmpty());
    EXPECT_TRUE(edit("txtQty").text().isEmpty());
    EXPECT_EQ(dest().currentText().toStdString(), "nyse");
    EXPECT_EQ(dialog.focusWidget(), &edit("txtSymbol"));
}

TEST_F(AddStockScreen, EnterInAnyBoxAddsAndSeveralLinesInARow) {
    edit("txtSymbol").setText(QStringLiteral("IBM"));
    edit("txtQty").setText(QStringLiteral("10"));
    dest().setEditText(QStringLiteral("ARCA"));
    edit("txtIndexShares").setText(QStringLiteral("7"));
    PressEnter(edit("txtIndexShares"));
    edit("txtSymbol").setText(QStringLiteral("GE"));
    edit("txtQty").setText(QStringLiteral("20"));
    PressEnter(dest());
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|10|ARCA|7", "GE|20|ARCA|0"}));
}

class EditStockScreen : public testing::Test {
protected:
    std::unique_ptr<frmEditStock> open(StockLineKey old) {
        return std::make_unique<frmEditStock>(*t.db, boxes, std::move(old),
                                              [this](const StockRow& r) { saved = r; });
    }

    BasketTestDb t;
    int32_t basket = t.addBasket("A");
    RecordingMessageBoxes boxes;
    std::optional<StockRow> saved;
};

TEST_F(EditStockScreen, ShowsTheOldValues) {
    auto d = open({basket, "IBM", 100, "NYSE", 0});
    EXPECT_EQ(Child<QLineEdit>(*d, "txtSymbol").text().toStdString(), "IBM");
    EXPECT_EQ(Child<QLineEdit>(*d, "txtQty").text().toStdString(), "100");
    EXPECT_EQ(Child<QComboBox>(*d, "txtDest").currentText().toStdString(), "NYSE");
    EXPECT_EQ(Child<QLineEdit>(*d, "txtIndexShares").text().toStdString(), "0");
}

// Which lines match is the logic's rule; the screen saves on Enter and hands the row back.
TEST_F(EditStockScreen, EnterSavesTheLineAndHandsTheRowBack) {
    t.addLine(basket, "IBM", "100", "NYSE");
    auto d = open({basket, "IBM", 100, "NYSE", 0});
    Child<QLineEdit>(*d, "txtQty").setText(QStringLiteral("250"));
    Child<QComboBox>(*d, "txtDest").setEditText(QStringLiteral("arca"));
    PressEnter(Child<QLineEdit>(*d, "txtIndexShares"));
    EXPECT_EQ(d->result(), QDialog::Accepted);
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|250|ARCA|0"}));
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved, (StockRow{0, "IBM", "250", "ARCA", "0"}));
}

TEST_F(EditStockScreen, FailureIsTrappedAndTheDialogStaysOpen) {
    t.addLine(basket, "IBM", "100", "NYSE");
    auto d = open({basket, "IBM", 100, "NYSE", 0});
    d->show();
    Child<QLineEdit>(*d, "txtQty").setText(QStringLiteral("many"));
    Click(*d, "cmdSave");
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Changes could not be saved."}));
    EXPECT_EQ(boxes.shown()[0].title, "Database Error");
    EXPECT_TRUE(d->isVisible());
    EXPECT_FALSE(saved);
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|100|NYSE|<null>"}));
}

} // namespace
} // namespace wicker
