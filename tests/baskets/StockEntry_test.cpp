#include "BasketTestDb.h"
#include "baskets/StockEntry.h"
#include "common/RuntimeError.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::BasketTestDb;
using test::RecordingMessageBoxes;

class AddStockTest : public testing::Test {
protected:
    std::optional<StockRow> add(StockEntry& e) {
        return AddStockToBasket(*t.db, boxes, basket, e, focus);
    }

    BasketTestDb t;
    int32_t basket = t.addBasket("A");
    RecordingMessageBoxes boxes;
    StockField focus = StockField::None;
};

TEST_F(AddStockTest, EmptyQuantityAndSharesBecomeZero) {
    StockEntry e{"IBM", "", "nyse", ""};
    const auto row = add(e);
    ASSERT_TRUE(row);
    EXPECT_EQ(e.quantity, "0");
    EXPECT_EQ(e.indexShares, "0");
    EXPECT_EQ(*row, (StockRow{0, "IBM", "0", "NYSE", "0"}));
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|0|NYSE|0"}));
}

TEST_F(AddStockTest, QuantityGoesInAsA32BitInteger) {
    StockEntry e{"IBM", "2.5", "ARCA", "3"};
    EXPECT_EQ(add(e)->quantity, "2");
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|2|ARCA|3"}));
}

TEST_F(AddStockTest, QuantityThatIsNotANumberFailsBeforeTheDatabase) {
    StockEntry e{"IBM", "abc", "ARCA", ""};
    try {
        add(e);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 13);
    }
    EXPECT_TRUE(t.lines(basket).empty());
}

struct MissingCase {
    const char* name;
    StockEntry entry;
    std::string message;
    std::string title;
    StockField focus;
};

class AddStockRefusalTest : public AddStockTest, public testing::WithParamInterface<MissingCase> {};

TEST_P(AddStockRefusalTest, ExclamationAndNothingStored) {
    StockEntry e = GetParam().entry;
    EXPECT_FALSE(add(e));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, GetParam().message);
    EXPECT_EQ(boxes.shown()[0].title, GetParam().title);
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(focus, GetParam().focus);
    EXPECT_TRUE(t.lines(basket).empty());
}

INSTANTIATE_TEST_SUITE_P(Boxes, AddStockRefusalTest,
                         testing::Values(MissingCase{"NoSymbol",
                                                     {"", "1", "NYSE", ""},
                                                     "Please enter symbol.",
                                                     "Symbol",
                                                     StockField::Symbol},
                                         MissingCase{"NoDestination",
                                                     {"IBM", "1", "", ""},
                                                     "Please enter destination.",
                                                     "Destination",
                                                     StockField::Destination}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(EditStockSqlTest, BuiltPieceByPiece) {
    const StockLineKey old{3, "IBM", 100, "NYSE", 0};
    EXPECT_EQ(EditStockSql(old, {"MSFT", "2.5", "arca", "40"}),
              "UPDATE tblBasketDetails SET strSym = 'MSFT', intQty = 2, strDest = 'ARCA', "
              "nIndexShares = 40 WHERE intBasketNum = 3 AND strSym = 'IBM' AND intQty = 100 AND "
              "strDest = 'NYSE' AND (nIndexShares = 0 OR ISNULL(nIndexShares))");
}

class EditStockTest : public testing::Test {
protected:
    BasketTestDb t;
    int32_t basket = t.addBasket("A");
    RecordingMessageBoxes boxes;
};

TEST_F(EditStockTest, FindsALineWithNullIndexShares) {
    t.addLine(basket, "IBM", "100", "NYSE");
    StockEntry e{"IBM", "150", "nyse", ""};
    const auto row = UpdateStockLine(*t.db, boxes, {basket, "IBM", 100, "NYSE", 0}, e);
    ASSERT_TRUE(row);
    EXPECT_EQ(*row, (StockRow{0, "IBM", "150", "NYSE", "0"}));
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|150|NYSE|0"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(EditStockTest, ChangesEveryIdenticalLineOfTheBasketOnly) {
    t.addLine(basket, "IBM", "100", "NYSE", "5");
    t.addLine(basket, "GE", "100", "NYSE", "5");
    t.addLine(basket, "IBM", "100", "NYSE", "5");
    const int32_t other = t.addBasket("B");
    t.addLine(other, "IBM", "100", "NYSE", "5");
    StockEntry e{"IBM", "1", "ARCA", "6"};
    ASSERT_TRUE(UpdateStockLine(*t.db, boxes, {basket, "IBM", 100, "NYSE", 5}, e));
    EXPECT_EQ(t.lines(basket),
              (std::vector<std::string>{"IBM|1|ARCA|6", "GE|100|NYSE|5", "IBM|1|ARCA|6"}));
    EXPECT_EQ(t.lines(other), (std::vector<std::string>{"IBM|100|NYSE|5"}));
}

TEST_F(EditStockTest, OtherIndexSharesAreNotMatched) {
    t.addLine(basket, "IBM", "100", "NYSE", "5");
    StockEntry e{"IBM", "1", "NYSE", "6"};
    ASSERT_TRUE(UpdateStockLine(*t.db, boxes, {basket, "IBM", 100, "NYSE", 4}, e));
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|100|NYSE|5"}));
}

TEST_F(EditStockTest, EmptySymbolIsRefused) {
    StockEntry e{"", "1", "NYSE", ""};
    EXPECT_FALSE(UpdateStockLine(*t.db, boxes, {basket, "IBM", 100, "NYSE", 0}, e));
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Please enter symbol."}));
    EXPECT_EQ(boxes.shown()[0].title, "Symbol");
}

struct TrapCase {
    const char* name;
    StockEntry entry;
};

class EditStockTrapTest : public EditStockTest, public testing::WithParamInterface<TrapCase> {};

TEST_P(EditStockTrapTest, FailureIsTrappedAndNothingChanges) {
    t.addLine(basket, "IBM", "100", "NYSE");
    StockEntry e = GetParam().entry;
    EXPECT_FALSE(UpdateStockLine(*t.db, boxes, {basket, "IBM", 100, "NYSE", 0}, e));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Changes could not be saved.");
    EXPECT_EQ(boxes.shown()[0].title, "Database Error");
    EXPECT_EQ(t.lines(basket), (std::vector<std::string>{"IBM|100|NYSE|<null>"}));
}

INSTANTIATE_TEST_SUITE_P(
    Failures, EditStockTrapTest,
    testing::Values(TrapCase{"QuantityNotANumber", {"IBM", "abc", "NYSE", ""}},
                    TrapCase{"SharesNotANumber", {"IBM", "1", "NYSE", "x"}},
                    TrapCase{"Apostrophe", {"I'BM", "1", "NYSE", ""}},
                    TrapCase{"SymbolTooLong", {"ABCDEFGHIJK", "1", "NYSE", ""}},
                    TrapCase{"QuantityOverflow", {"IBM", "3000000000", "NYSE", ""}}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
