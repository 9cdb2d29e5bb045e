#include "trading/OrderChangeFixture.h"
#include "trading/orders/BasketModify.h"
#include "trading/quotes/QuoteBoard.h"

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using BasketOutcome = BasketModifyReport::Outcome;

QVXQuoteStruct QuoteOf(const std::string& symbol, double bid, double ask, double last) {
    QVXQuoteStruct q;
    q.Symbol = symbol;
    q.Fields = QVXQuoteField::Bid | QVXQuoteField::Ask | QVXQuoteField::Last;
    q.BidPrice = bid;
    q.AskPrice = ask;
    q.LastPrice = last;
    return q;
}

class ModifyBasket : public OrderChange {
protected:
    ModifyBasket() {
        // Send 57 of Tech10: open, partly filled, filled, cancelled; send 58 open.
        Track(OrderRecord(1, "Tech10", 57, 1, "AAPL", 100, 0, 100));
        Track(OrderRecord(2, "Tech10", 57, 2, "MSFT", 200, 50, 150));
        Track(OrderRecord(3, "Tech10", 57, 3, "NVDA", 300, 300, 0));
        Track(OrderRecord(4, "Tech10", 57, 4, "INTC", 400, 0, 0));
        Track(OrderRecord(5, "Tech10", 58, 1, "AAPL", 100, 0, 100));
        quotes.OnQVXQuoteSnap(QuoteOf("AAPL", 180.10, 180.20, 180.15));
        quotes.OnQVXQuoteSnap(QuoteOf("MSFT", 400.50, 400.70, 400.60));
    }
    BasketModifyReport Run(BasketChangeTo to, bool confirm = false,
                           BasketSend send = {"Tech10", 57}) {
        OrderReplace replace = Replacer();
        BasketModify modify(replace, tracker, quotes, boxes);
        return modify.ModifyBasket(send, to, confirm);
    }
    std::vector<int32_t> ReplacedIds() const {
        std::vector<int32_t> replaced;
        for (const auto& r : broker.replaces) {
            replaced.push_back(r.orderRecordId);
        }
        return replaced;
    }

    QuoteBoard quotes;
};

TEST_F(ModifyBasket, OnlyTheOpenOrdersOfTheSendAreReplacedAtTheQuotePlusModifier) {
    const BasketModifyReport r = Run({ChangeBasis::Bid, "-0.05"});
    EXPECT_EQ(r.outcome, BasketOutcome::Worked);
    EXPECT_EQ(r.changed, 2);
    EXPECT_EQ(ReplacedIds(), (std::vector<int32_t>{1, 2}));
    EXPECT_DOUBLE_EQ(broker.replaces[0].change.lmtPrice, 180.05);
    EXPECT_DOUBLE_EQ(broker.replaces[1].change.lmtPrice, 400.45);
    // Quantities stay; fills are kept by the replace.
    EXPECT_EQ(broker.replaces[0].change.quantity, 100);
    EXPECT_EQ(broker.replaces[1].change.quantity, 200);
    EXPECT_EQ(broker.replaces[1].change.newClOrderID, "DEMO01-20240315-57-2-M1");
    EXPECT_EQ(JournalRows(), 2);
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(ModifyBasket, EachBasisTakesItsQuote) {
    struct Row {
        const char* name;
        ChangeBasis basis;
        int32_t priceType;
        double price;
    };
    const Row rows[] = {
        {"bid", ChangeBasis::Bid, 5, 180.10},
        {"ask", ChangeBasis::Ask, 5, 180.20},
        {"last", ChangeBasis::Last, 5, 180.15},
        {"market", ChangeBasis::Market, 1, 0},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        broker.replaces.clear();
        Run({r.basis, "0"}, false, {"Tech10", 58});
        ASSERT_EQ(broker.replaces.size(), 1u);
        EXPECT_EQ(broker.replaces[0].change.priceType, r.priceType);
        EXPECT_DOUBLE_EQ(broker.replaces[0].change.lmtPrice, r.price);
    }
}

TEST_F(ModifyBasket, RefusalsAndUnpricedOrdersComeInOneSummary) {
    Track(OrderRecord(6, "Tech10", 57, 5, "ZZZZ", 10, 0, 10)); // never quoted
    Track(OrderRecord(7, "Tech10", 57, 6, "MSFT", 20, 0, 20));
    broker.answers[2] = -8;
    broker.answers[7] = kReplaceOrderNotOpen;
    const BasketModifyReport r = Run({ChangeBasis::Ask, "0.01"});
    EXPECT_EQ(r.changed, 1);
    EXPECT_EQ(ReplacedIds(), (std::vector<int32_t>{1, 2, 7}));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Some Orders Were Not Changed");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(boxes.shown()[0].text,
              "***** Orders Not Sent *****\r\n"
              "ZZZZ 10 NASDAQ: no Ask\r\n"
              "MSFT 20 NASDAQ: Order is not open.\r\n"
              "\r\n"
              "***** Submit Order Error *****\r\n"
              "MSFT 200 NASDAQ: This order would violate your exposure limit.\r\n");
    EXPECT_EQ(JournalRows(), 1);
}

TEST_F(ModifyBasket, ANegativeResultingPriceIsNotSent) {
    const BasketModifyReport r = Run({ChangeBasis::Bid, "-500"});
    EXPECT_TRUE(broker.replaces.empty());
    EXPECT_EQ(r.notSent.size(), 2u);
}

TEST_F(ModifyBasket, OrdersThatAlreadyHaveTheTermsAreLeftAlone) {
    // AAPL rests at 10.00 (the record's limit); a bid of 10.00 changes nothing for it.
    quotes.OnQVXQuoteSnap(QuoteOf("AAPL", 10.0, 10.1, 10.05));
    const BasketModifyReport r = Run({ChangeBasis::Bid, ""}, false, {"Tech10", 58});
    EXPECT_EQ(r.unchanged, 1);
    EXPECT_TRUE(broker.replaces.empty());
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(ModifyBasket, NothingIsSentWithoutOpenOrdersABadModifierOrAYes) {
    struct Row {
        const char* name;
        BasketSend send;
        BasketChangeTo to;
        bool confirm;
        BasketOutcome outcome;
        const char* text;
    };
    Track(OrderRecord(8, "Done", 3, 1, "AAPL", 100, 100, 0));
    const Row rows[] = {
        {"all filled",
         {"Done", 3},
         {ChangeBasis::Market, ""},
         false,
         BasketOutcome::NoOpenOrders,
         "That basket does not contain any open orders."},
        {"bad modifier",
         {"Tech10", 57},
         {ChangeBasis::Bid, "abc"},
         false,
         BasketOutcome::BadModifier,
         "The modifier must be a number."},
        {"answered No",
         {"Tech10", 57},
         {ChangeBasis::Bid, "0.02"},
         true,
         BasketOutcome::NotConfirmed,
         "Do you want to change all open orders for basket #57 to Bid + 0.02?"},
        {"answered No to market",
         {"Tech10", 57},
         {ChangeBasis::Market, ""},
         true,
         BasketOutcome::NotConfirmed,
         "Do you want to change all open orders for basket #57 to market?"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        boxes.clear();
        boxes.answerNext(MsgAnswer::No);
        EXPECT_EQ(Run(r.to, r.confirm, r.send).outcome, r.outcome);
        EXPECT_EQ(boxes.texts(), std::vector<std::string>{r.text});
    }
    EXPECT_TRUE(broker.replaces.empty());
}

} // namespace
} // namespace wicker::test
