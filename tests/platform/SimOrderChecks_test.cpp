#include "SimDesk.h"
#include "platform/sim/SimOrderChecks.h"

#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

struct CheckRow {
    const char* name;
    std::function<void(OrderSpec&)> change;
    int32_t expected; // 0: accepted
};

SimSettings Limited() {
    SimSettings s;
    s.limits.enabledDestinations = {"NASDAQ", "ARCA"};
    s.limits.maxOrderNotional = 1'000'000;
    return s;
}

class SimPreTradeCheck : public ::testing::TestWithParam<CheckRow> {};

TEST_P(SimPreTradeCheck, ReturnsTheCodeOfTheFirstFault) {
    SimDesk desk(Limited());
    OrderSpec spec;
    GetParam().change(spec);
    const int32_t result = desk.send(spec);
    desk.drain();
    if (GetParam().expected == 0) {
        EXPECT_GT(result, 0);
        ASSERT_FALSE(desk.events.updates.empty());
        EXPECT_EQ(desk.events.updates.front().OrderStatus, QVXOrderStatus::Open);
    } else {
        EXPECT_EQ(result, GetParam().expected);
        EXPECT_TRUE(desk.events.updates.empty()) << "a refused order must not be reported";
    }
}

const CheckRow kRows[] = {
    {"Valid", [](OrderSpec&) {}, 0},
    {"WordBuy", [](OrderSpec& o) { o.side = "BUY"; }, 0},
    {"Sell", [](OrderSpec& o) { o.side = "S"; }, 0},
    {"Short", [](OrderSpec& o) { o.side = "T"; }, 0},
    {"EmptyAccount", [](OrderSpec& o) { o.account = ""; }, -1},
    {"BlankAccount", [](OrderSpec& o) { o.account = "   "; }, -1},
    // The account is looked at before everything else.
    {"EmptyAccountAndSide",
     [](OrderSpec& o) {
         o.account = "";
         o.side = "";
     },
     -1},
    {"EmptySide", [](OrderSpec& o) { o.side = ""; }, -2},
    {"WordSell", [](OrderSpec& o) { o.side = "SELL"; }, -2},
    {"LowerCaseBuy", [](OrderSpec& o) { o.side = "b"; }, -2},
    {"BadSideAndQuantity",
     [](OrderSpec& o) {
         o.side = "X";
         o.quantity = 0;
     },
     -2},
    {"ZeroQuantity", [](OrderSpec& o) { o.quantity = 0; }, -3},
    {"NegativeQuantity", [](OrderSpec& o) { o.quantity = -100; }, -3},
    {"ZeroQuantityEmptySymbol",
     [](OrderSpec& o) {
         o.quantity = 0;
         o.symbol = "";
     },
     -3},
    {"EmptySymbol", [](OrderSpec& o) { o.symbol = ""; }, -4},
    {"BlankSymbol", [](OrderSpec& o) { o.symbol = "  "; }, -4},
    {"EmptySymbolBadType",
     [](OrderSpec& o) {
         o.symbol = "";
         o.priceType = 3;
     },
     -4},
    {"PriceTypeZero", [](OrderSpec& o) { o.priceType = 0; }, -5},
    {"PriceTypeThree", [](OrderSpec& o) { o.priceType = 3; }, -5},
    {"LimitWithoutPrice",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = 0;
     },
     -5},
    {"LimitNegativePrice",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = -1;
     },
     -5},
    {"LimitNotANumber",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = std::numeric_limits<double>::quiet_NaN();
     },
     -5},
    {"LimitInfinite",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = std::numeric_limits<double>::infinity();
     },
     -5},
    {"BadTypeAndTif",
     [](OrderSpec& o) {
         o.priceType = 9;
         o.tif = "Z";
     },
     -5},
    {"MarketOnClose", [](OrderSpec& o) { o.priceType = 2; }, 0},
    {"LimitWithPrice",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = 1.0;
     },
     0},
    {"EmptyTif", [](OrderSpec& o) { o.tif = ""; }, -6},
    {"WordTif", [](OrderSpec& o) { o.tif = "DAY"; }, -6},
    {"LowerCaseTif", [](OrderSpec& o) { o.tif = "d"; }, -6},
    {"TifOnOpen", [](OrderSpec& o) { o.tif = "O"; }, 0},
    {"TifOs", [](OrderSpec& o) { o.tif = "1"; }, 0},
    {"TifChxp", [](OrderSpec& o) { o.tif = "C"; }, 0},
    {"DestinationNotEnabled", [](OrderSpec& o) { o.destination = "NYSE"; }, -7},
    {"EmptyDestination", [](OrderSpec& o) { o.destination = ""; }, -7},
    {"DestinationLowerCase", [](OrderSpec& o) { o.destination = "arca"; }, 0},
    {"BadTifAndDestination",
     [](OrderSpec& o) {
         o.tif = "Q";
         o.destination = "NYSE";
     },
     -6},
    {"LimitAboveExposure",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = 100.01;
         o.quantity = 10000;
     },
     -8},
    {"LimitAtExposure",
     [](OrderSpec& o) {
         o.priceType = 5;
         o.price = 100;
         o.quantity = 10000;
     },
     0},
    {"MarketAboveExposure", [](OrderSpec& o) { o.quantity = 2'000'000'000; }, -8},
    {"DestinationBeforeExposure",
     [](OrderSpec& o) {
         o.destination = "NYSE";
         o.quantity = 2'000'000'000;
     },
     -7},
};

INSTANTIATE_TEST_SUITE_P(Rows, SimPreTradeCheck, ::testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SimPreTradeCheck, EveryDestinationAndAnySizeWithoutLimits) {
    SimDesk desk;
    OrderSpec spec;
    spec.destination = "ANYWHERE";
    spec.quantity = 2'000'000'000;
    EXPECT_GT(desk.send(spec), 0);
}

TEST(SimPreTradeCheck, OfflineBeforeStartAfterStopAndAfterShutdown) {
    SimDesk desk({}, false);
    EXPECT_EQ(desk.send({}), -16);
    OrderSpec bad;
    bad.account = "";
    EXPECT_EQ(desk.send(bad), -16) << "an offline platform checks nothing else";

    ASSERT_TRUE(desk.platform.Start().ok());
    EXPECT_GT(desk.send({}), 0);
    desk.platform.Stop();
    EXPECT_EQ(desk.send({}), -16);
    ASSERT_TRUE(desk.platform.Start().ok());
    EXPECT_GT(desk.send({}), 0);

    desk.platform.TriggerShutdown();
    EXPECT_EQ(desk.send({}), -16);
    EXPECT_FALSE(desk.platform.Start().ok()) << "a shut-down platform stays down";
    EXPECT_EQ(desk.send({}), -16);
    desk.drain();
    EXPECT_EQ(desk.events.shutdowns, 1);
    EXPECT_EQ(desk.events.journal.back(), "shutdown");
}

TEST(SimSideCode, ReportsOneLetter) {
    EXPECT_EQ(SimSideCode("BUY"), "B");
    EXPECT_EQ(SimSideCode("B"), "B");
    EXPECT_EQ(SimSideCode("S"), "S");
    EXPECT_EQ(SimSideCode("T"), "T");
    EXPECT_EQ(SimSideCode("SHORT"), "");
}

TEST(SimPreTradeCheck, AcceptedOrdersGetRisingRecordIds) {
    SimDesk desk;
    const int32_t first = desk.send({});
    const int32_t second = desk.send({});
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
}

} // namespace
} // namespace wicker::test
