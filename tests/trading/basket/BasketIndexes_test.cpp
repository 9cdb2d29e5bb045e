#include "baskets/BasketTestDb.h"
#include "trading/basket/BasketIndexValue.h"
#include "trading/basket/BasketIndexes.h"
#include "trading/orders/OrderUpdate.h"

#include <deque>

#include <gtest/gtest.h>

namespace wicker {
namespace {

class BasketIndexesTest : public testing::Test {
protected:
    test::BasketTestDb store;
    BasketIndexes indexes;
};

TEST_F(BasketIndexesTest, FillIndexSharesMapReadsEveryBasket) {
    const int32_t tech = store.addBasket("Tech");
    const int32_t empty = store.addBasket("Empty");
    store.addLine(tech, "IBM", "100", "NYSE", "50");
    store.addLine(tech, "MSFT", "100", "NYSE");       // no shares: 0
    store.addLine(tech, "IBM", "200", "NYSE", "999"); // twice: the first stays
    store.addLine(77, "ORPH", "1", "NYSE", "5");      // basket row missing: still mapped
    indexes.FillIndexSharesMap(*store.db);

    struct Row {
        int32_t basket;
        const char* symbol;
        bool found;
        int32_t shares;
    };
    const Row rows[] = {{tech, "IBM", true, 50},  {tech, "ibm", true, 50},  {tech, "MSFT", true, 0},
                        {tech, "AAPL", false, 0}, {empty, "IBM", false, 0}, {77, "ORPH", true, 5},
                        {12345, "IBM", false, 0}};
    for (const Row& r : rows) {
        SCOPED_TRACE(std::to_string(r.basket) + r.symbol);
        int32_t shares = -1;
        EXPECT_EQ(indexes.GetIndexShares(r.basket, r.symbol, shares), r.found);
        EXPECT_EQ(shares, r.shares);
    }
    EXPECT_EQ(indexes.BasketNumOf("TECH"), tech);
    EXPECT_FALSE(indexes.BasketNumOf("Nope"));

    // A rebuild forgets what is no longer stored.
    store.db->ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = 77");
    indexes.FillIndexSharesMap(*store.db);
    int32_t shares = -1;
    EXPECT_FALSE(indexes.GetIndexShares(77, "ORPH", shares));
}

TEST_F(BasketIndexesTest, RecordedSharesReplaceEarlierOnes) {
    indexes.RecordIndexShares(3, "IBM", 10);
    indexes.RecordIndexShares(3, "IBM", 20);
    int32_t shares = 0;
    EXPECT_TRUE(indexes.GetIndexShares(3, "IBM", shares));
    EXPECT_EQ(shares, 20);
}

TEST_F(BasketIndexesTest, MissingDivisorAndTypeHaveTheirDefaults) {
    double divisor = -1;
    std::string type;
    EXPECT_FALSE(indexes.GetDivisor("Tech", divisor));
    EXPECT_EQ(divisor, 0);
    EXPECT_FALSE(indexes.GetIndexType("Tech", type));
    EXPECT_EQ(type, "Price Weighted");
    indexes.setDivisor("Tech", 2.5);
    indexes.setIndexType("Tech", "Mkt Cap Weighted");
    EXPECT_TRUE(indexes.GetDivisor("TECH", divisor)); // names compare without case
    EXPECT_EQ(divisor, 2.5);
    EXPECT_TRUE(indexes.GetIndexType("tech", type));
    EXPECT_EQ(type, "Mkt Cap Weighted");
}

class BasketIndexTextTest : public BasketIndexesTest {
protected:
    void Order(const std::string& symbol) {
        orders.emplace_back();
        orders.back().m_strInstrument = symbol;
        row.m_cOrders.push_back(&orders.back());
    }
    void Price(const std::string& symbol, double last) {
        QVXQuoteStruct q;
        q.Symbol = symbol;
        q.Fields = QVXQuoteField::Last;
        q.LastPrice = last;
        quotes.OnQVXQuoteUpdate(q);
    }
    std::deque<OrderUpdate> orders;
    OrderRow row;
    QuoteBoard quotes;
};

TEST_F(BasketIndexTextTest, PriceWeightedSumOverDivisor) {
    const int32_t tech = store.addBasket("Tech");
    store.addLine(tech, "IBM", "100", "NYSE", "2");
    store.addLine(tech, "MSFT", "100", "NYSE", "3");
    indexes.FillIndexSharesMap(*store.db);
    indexes.setDivisor("Tech", 4);
    row.m_strBasketName = "Tech";
    Order("IBM");
    Order("MSFT");
    Order("IBM"); // a second order of a symbol counts once
    Price("IBM", 10);
    Price("MSFT", 20);
    // (2 x 10 + 3 x 20) / 4
    EXPECT_EQ(BasketIndexText(row, indexes, quotes), "20.0000");
}

TEST_F(BasketIndexTextTest, OtherTypesAndUnusableDivisorsShowNothing) {
    const int32_t tech = store.addBasket("Tech");
    store.addLine(tech, "IBM", "100", "NYSE", "2");
    indexes.FillIndexSharesMap(*store.db);
    row.m_strBasketName = "Tech";
    Order("IBM");
    Price("IBM", 10);
    EXPECT_EQ(BasketIndexText(row, indexes, quotes), ""); // no divisor
    indexes.setDivisor("Tech", 0);
    EXPECT_EQ(BasketIndexText(row, indexes, quotes), "");
    indexes.setDivisor("Tech", 1);
    EXPECT_EQ(BasketIndexText(row, indexes, quotes), "20.0000");
    indexes.setIndexType("Tech", "Eql Dlr Weighted");
    EXPECT_EQ(BasketIndexText(row, indexes, quotes), "");
}

} // namespace
} // namespace wicker
