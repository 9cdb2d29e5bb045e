#include "BasketTestDb.h"
#include "MemoryIndexStore.h"
#include "baskets/BasketSetupStore.h"
#include "common/RuntimeError.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::BasketTestDb;
using test::MemoryIndexStore;

TEST(BasketRowKeyTest, NumberAndUnderscoreBothWays) {
    EXPECT_EQ(BasketRowKey(12), "12_");
    EXPECT_EQ(BasketNumFromKey("12_"), 12);
    EXPECT_EQ(BasketNumFromKey("7_x_y"), 7);
    EXPECT_THROW(BasketNumFromKey("_"), RuntimeError);
}

struct AfterDeleteCase {
    const char* name;
    size_t deleted;
    size_t remaining;
    std::optional<size_t> expected;
};

class RowAfterDeleteTest : public testing::TestWithParam<AfterDeleteCase> {};

TEST_P(RowAfterDeleteTest, FollowingRowOrNewLast) {
    EXPECT_EQ(RowAfterDelete(GetParam().deleted, GetParam().remaining), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, RowAfterDeleteTest,
                         testing::Values(AfterDeleteCase{"First", 0, 3, 0},
                                         AfterDeleteCase{"Middle", 1, 3, 1},
                                         AfterDeleteCase{"Last", 3, 3, 2},
                                         AfterDeleteCase{"Only", 0, 0, std::nullopt}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(BasketSetupStoreTest, BasketRowsTrimmedWithCollectionsAndTicks) {
    BasketTestDb t;
    const int32_t a = t.addBasket(" Tech ", " TK ", 1);
    const int32_t b = t.addBasket("Banks", "BK", 0);
    MemoryIndexStore index;
    index.setDivisor("Tech", 2.5);
    index.setIndexType("Tech", "Mkt Cap Weighted");
    const auto rows = LoadBasketRows(*t.db, index);
    ASSERT_EQ(rows.size(), 2u);
    // The collections are keyed by the trimmed name the list shows.
    EXPECT_EQ(rows[0], (BasketRow{a, "Tech", "TK", "B", "2.5", "Mkt Cap Weighted", true}));
    EXPECT_EQ(rows[1], (BasketRow{b, "Banks", "BK", "B", "0", "Price Weighted", false}));
}

TEST(BasketSetupStoreTest, StockRowsShowNullIndexSharesAsZero) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    t.addLine(a, " IBM ", "100", "NYSE");
    t.addLine(a, "GE", "2.5", "ARCA", "40");
    t.addLine(t.addBasket("Other"), "X", "1", "NYSE");
    const auto rows = LoadStockRows(*t.db, a);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].symbol, "IBM");
    EXPECT_EQ(rows[0].quantity, "100");
    EXPECT_EQ(rows[0].indexShares, "0");
    EXPECT_EQ(rows[1], (StockRow{rows[0].recordNum + 1, "GE", "2.5", "ARCA", "40"}));
}

TEST(BasketSetupStoreTest, DeleteBasketRemovesItsRowAndLinesOnly) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    const int32_t b = t.addBasket("B");
    t.addLine(a, "X", "1", "NYSE");
    t.addLine(b, "Y", "1", "NYSE");
    DeleteBasket(*t.db, a);
    EXPECT_EQ(t.rows("SELECT strBasketName FROM tblBaskets"), (std::vector<std::string>{"B"}));
    EXPECT_EQ(t.rows("SELECT strSym FROM tblBasketDetails"), (std::vector<std::string>{"Y"}));
}

TEST(BasketSetupStoreTest, DeleteStockLineByRecordNumber) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    t.addLine(a, "X", "1", "NYSE");
    t.addLine(a, "X", "1", "NYSE");
    DeleteStockLine(*t.db, LoadStockRows(*t.db, a)[0].recordNum);
    EXPECT_EQ(t.lines(a).size(), 1u);
}

TEST(BasketSetupStoreTest, SaveRewritesLinesInListOrderAndNullSharesAsZero) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    t.addLine(a, "IBM", "100", "NYSE");
    t.addLine(a, "GE", "5", "ARCA");
    auto stocks = LoadStockRows(*t.db, a);
    std::swap(stocks[0], stocks[1]);
    MemoryIndexStore index;
    auto baskets = LoadBasketRows(*t.db, index);
    SaveBasketChanges(*t.db, index, a, stocks, baskets);
    EXPECT_EQ(t.lines(a), (std::vector<std::string>{"GE|5|ARCA|0", "IBM|100|NYSE|0"}));
    const auto reread = LoadStockRows(*t.db, a);
    EXPECT_GT(reread[0].recordNum, stocks[1].recordNum);
}

TEST(BasketSetupStoreTest, SaveStoresTicksAndRebuildsCollections) {
    BasketTestDb t;
    t.addBasket("A", "A", 0);
    t.addBasket("B", "B", 1);
    MemoryIndexStore index;
    index.setDivisor("Gone", 9);
    auto baskets = LoadBasketRows(*t.db, index);
    baskets[0].onButton = true;
    baskets[0].divisor = "3";
    baskets[0].indexType = "Eql Dlr Weighted";
    baskets[1].onButton = false;
    SaveBasketChanges(*t.db, index, 0, {}, baskets);
    EXPECT_EQ(t.rows("SELECT strBasketName, intOnButton FROM tblBaskets ORDER BY intBasketNum"),
              (std::vector<std::string>{"A|1", "B|0"}));
    EXPECT_EQ(index.divisors, (std::map<std::string, double>{{"A", 3}, {"B", 0}}));
    EXPECT_EQ(index.indexTypes, (std::map<std::string, std::string>{{"A", "Eql Dlr Weighted"},
                                                                    {"B", "Price Weighted"}}));
}

TEST(BasketSetupStoreTest, SaveWithNoBasketSelectedLeavesLinesAlone) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    t.addLine(a, "IBM", "100", "NYSE");
    MemoryIndexStore index;
    SaveBasketChanges(*t.db, index, 0, {}, LoadBasketRows(*t.db, index));
    EXPECT_EQ(t.lines(a), (std::vector<std::string>{"IBM|100|NYSE|<null>"}));
}

TEST(BasketSetupStoreTest, RefusedLineKeepsTheStoredLines) {
    BasketTestDb t;
    const int32_t a = t.addBasket("A");
    t.addLine(a, "IBM", "100", "NYSE");
    auto stocks = LoadStockRows(*t.db, a);
    stocks.push_back({0, "BAD", "12abc", "NYSE", "0"});
    MemoryIndexStore index;
    EXPECT_THROW(SaveBasketChanges(*t.db, index, a, stocks, LoadBasketRows(*t.db, index)), DbError);
    EXPECT_EQ(t.lines(a), (std::vector<std::string>{"IBM|100|NYSE|<null>"}));
}

TEST(BasketSetupStoreTest, BadDivisorLeavesCollectionsWhole) {
    BasketTestDb t;
    t.addBasket("A");
    MemoryIndexStore index;
    index.setDivisor("A", 4);
    auto baskets = LoadBasketRows(*t.db, index);
    baskets[0].divisor = "four";
    EXPECT_THROW(SaveBasketChanges(*t.db, index, 0, {}, baskets), RuntimeError);
    EXPECT_EQ(index.divisors, (std::map<std::string, double>{{"A", 4}}));
}

TEST(BasketSetupStoreTest, WriteButtonFlagsByName) {
    BasketTestDb t;
    t.addBasket("A", "A", 0);
    MemoryIndexStore index;
    auto baskets = LoadBasketRows(*t.db, index);
    baskets[0].onButton = true;
    WriteButtonFlags(*t.db, baskets);
    EXPECT_EQ(t.rows("SELECT intOnButton FROM tblBaskets"), (std::vector<std::string>{"1"}));
}

} // namespace
} // namespace wicker
