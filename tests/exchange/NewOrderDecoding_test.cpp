#include "exchange/NewOrderDecoding.h"
#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/NewOrderSingle.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

OrderTicket Ticket(const std::string& side, int32_t priceType, const std::string& tif) {
    return test::Ticket({.side = side,
                         .lmtPrice = 10.25,
                         .priceType = priceType,
                         .tif = tif,
                         .destination = "NASDAQ",
                         .memo = ""});
}

// Every side, price type and standard TIF letter, in both versions: what Wicker sends,
// the exchange reads back as the same order (market-on-close in 4.4 carries no TIF letter
// of its own: it is a day order at the close).
TEST(NewOrderRoundTrip, EverySidePriceTypeAndTifInBothVersions) {
    const ManualClock clock;
    const std::pair<const char*, const char*> sides[] = {
        {"BUY", "B"}, {"B", "B"}, {"S", "S"}, {"T", "T"}};
    for (const FixVersion v : {FixVersion::Fix42, FixVersion::Fix44}) {
        for (const auto& [side, code] : sides) {
            for (const int32_t priceType : {1, 2, 5}) {
                for (const char* tif : {"D", "G", "O", "I", "F", "X"}) {
                    SCOPED_TRACE(BeginStringOf(v) + " " + side + " " + std::to_string(priceType) +
                                 " " + tif);
                    FixOrderProfile profile;
                    profile.version = v;
                    const NewOrderSingleOrRefusal sent =
                        BuildNewOrderSingle(Ticket(side, priceType, tif), profile, clock);
                    ASSERT_EQ(sent.refusal, 0);
                    const auto decoded = DecodeNewOrder(sent.message, v);
                    ASSERT_TRUE(std::holds_alternative<ExchangeOrderRequest>(decoded))
                        << std::get<ExchangeRefusal>(decoded).text;
                    const ExchangeOrderRequest& r = std::get<ExchangeOrderRequest>(decoded);
                    EXPECT_EQ(r.side, code);
                    EXPECT_EQ(r.priceType, priceType);
                    const bool closeIn44 = priceType == 2 && v == FixVersion::Fix44;
                    EXPECT_EQ(r.tif, closeIn44 ? "D" : tif);
                    EXPECT_EQ(r.price, priceType == 5 ? 10.25 : 0.0);
                    EXPECT_EQ(r.quantity, 300);
                    EXPECT_EQ(r.symbol, "IBM");
                    EXPECT_EQ(r.account, "ACCT01");
                    EXPECT_EQ(r.destination, "NASDAQ");
                    EXPECT_EQ(r.clOrdID, "ACCT01-20240315-57-1");
                }
            }
        }
    }
}

FixMessage Order(const std::string& text) {
    return test::Fix("35=D|" + text);
}

TEST(NewOrderDecoding, UnusableOrdersAreRefusedWithAReason) {
    const std::string good = "11=A-1|55=IBM|54=1|38=100|40=2|44=10|59=0";
    ASSERT_TRUE(std::holds_alternative<ExchangeOrderRequest>(
        DecodeNewOrder(Order(good), FixVersion::Fix42)));
    struct Row {
        const char* name;
        const char* text;
        FixVersion version;
        int reason;
    };
    const Row rows[] = {
        {"no ClOrdID", "55=IBM|54=1|38=100|40=1", FixVersion::Fix42, OrdRejOther},
        {"no symbol", "11=A|54=1|38=100|40=1", FixVersion::Fix42, OrdRejUnknownSymbol},
        {"buy minus", "11=A|55=IBM|54=3|38=100|40=1", FixVersion::Fix42, OrdRejOther},
        {"side 9", "11=A|55=IBM|54=9|38=100|40=1", FixVersion::Fix42, OrdRejOther},
        {"no quantity", "11=A|55=IBM|54=1|40=1", FixVersion::Fix42, OrdRejOther},
        {"zero quantity", "11=A|55=IBM|54=1|38=0|40=1", FixVersion::Fix42, OrdRejOther},
        {"limit without price", "11=A|55=IBM|54=1|38=1|40=2", FixVersion::Fix42, OrdRejOther},
        {"limit price 0", "11=A|55=IBM|54=1|38=1|40=2|44=0", FixVersion::Fix42, OrdRejOther},
        {"stop order", "11=A|55=IBM|54=1|38=1|40=3", FixVersion::Fix42, OrdRejOther},
        {"moc type in 4.4", "11=A|55=IBM|54=1|38=1|40=5", FixVersion::Fix44, OrdRejOther},
        {"at the close in 4.2", "11=A|55=IBM|54=1|38=1|40=1|59=7", FixVersion::Fix42, OrdRejOther},
        {"limit at the close", "11=A|55=IBM|54=1|38=1|40=2|44=1|59=7", FixVersion::Fix44,
         OrdRejOther},
        {"tif 6", "11=A|55=IBM|54=1|38=1|40=1|59=6", FixVersion::Fix42, OrdRejOther},
        {"tif text", "11=A|55=IBM|54=1|38=1|40=1|59=DAY", FixVersion::Fix42, OrdRejOther},
        {"bad max floor", "11=A|55=IBM|54=1|38=1|40=1|111=x", FixVersion::Fix42, OrdRejOther},
    };
    for (const Row& r : rows) {
        const auto d = DecodeNewOrder(Order(r.text), r.version);
        ASSERT_TRUE(std::holds_alternative<ExchangeRefusal>(d)) << r.name;
        EXPECT_EQ(std::get<ExchangeRefusal>(d).ordRejReason, r.reason) << r.name;
        EXPECT_FALSE(std::get<ExchangeRefusal>(d).text.empty()) << r.name;
    }
}

TEST(NewOrderDecoding, MissingTimeInForceIsADayOrder) {
    const auto d = DecodeNewOrder(Order("11=A|55=IBM|54=2|38=5|40=1"), FixVersion::Fix42);
    ASSERT_TRUE(std::holds_alternative<ExchangeOrderRequest>(d));
    EXPECT_EQ(std::get<ExchangeOrderRequest>(d).tif, "D");
    EXPECT_EQ(std::get<ExchangeOrderRequest>(d).side, "S");
}

} // namespace
} // namespace wicker
