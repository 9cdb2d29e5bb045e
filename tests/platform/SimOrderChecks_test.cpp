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
    std::function<void(OrderFields&)> change;
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
    OrderFields fields;
    GetParam().change(fields);
    const int32_t result = desk.send(fields);
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
    {"Valid", [](OrderFields&) {}, 0},
    {"WordBuy", [](OrderFields& o) { o.side = "BUY"; }, 0},
    {"Sell", [](OrderFields& o) { o.side = "S"; }, 0},
    {"Short", [](OrderFields& o) { o.side = "T"; }, 0},
    {"EmptyAccount", [](OrderFields& o) { o.account = ""; }, -1},
    {"BlankAccount", [](OrderFields& o) { o.account = "   "; }, -1},
    // The account is looked at before everything else.
    {"EmptyAccountAndSide",
     [](OrderFields& o) {
         o.account = "";
         o.side = "";
     },
     -1},
    {"EmptySide", [](OrderFields& o) { o.side = ""; }, -2},
    {"WordSell", [](OrderFields& o) { o.side = "SELL"; }, -2},
    {"LowerCaseBuy", [](OrderFields& o) { o.side = "b"; }, -2},
    {"BadSideAndQuantity",
     [](OrderFields& o) {
         o.side = "X";
         o.quantity = 0;
     },
     -2},
    {"ZeroQuantity", [](OrderFields& o) { o.quantity = 0; }, -3},
    {"NegativeQuantity", [](OrderFields& o) { o.quantity = -100; }, -3},
    {"ZeroQuantityEmptySymbol",
     [](OrderFields& o) {
         o.quantity = 0;
         o.symbol = "";
     },
     -3},
    {"EmptySymbol", [](OrderFields& o) { o.symbol = ""; }, -4},
    {"BlankSymbol", [](OrderFields& o) { o.symbol = "  "; }, -4},
    {"EmptySymbolBadType",
     [](OrderFields& o) {
         o.symbol = "";
         o.priceType = 3;
     },
     -4},
    {"PriceTypeZero", [](OrderFields& o) { o.priceType = 0; }, -5},
    {"PriceTypeThree", [](OrderFields& o) { o.priceType = 3; }, -5},
    {"LimitWithoutPrice",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = 0;
     },
     -5},
    {"LimitNegativePrice",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = -1;
     },
     -5},
    {"LimitNotANumber",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = std::numeric_limits<double>::quiet_NaN();
     },
     -5},
    {"LimitInfinite",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = std::numeric_limits<double>::infinity();
     },
     -5},
    {"BadTypeAndTif",
     [](OrderFields& o) {
         o.priceType = 9;
         o.tif = "Z";
     },
     -5},
    {"MarketOnClose", [](OrderFields& o) { o.priceType = 2; }, 0},
    {"LimitWithPrice",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = 1.0;
     },
     0},
    {"EmptyTif", [](OrderFields& o) { o.tif = ""; }, -6},
    {"WordTif", [](OrderFields& o) { o.tif = "DAY"; }, -6},
    {"LowerCaseTif", [](OrderFields& o) { o.tif = "d"; }, -6},
    {"TifOnOpen", [](OrderFields& o) { o.tif = "O"; }, 0},
    {"TifOs", [](OrderFields& o) { o.tif = "1"; }, 0},
    {"TifChxp", [](OrderFields& o) { o.tif = "C"; }, 0},
    {"DestinationNotEnabled", [](OrderFields& o) { o.destination = "NYSE"; }, -7},
    {"EmptyDestination", [](OrderFields& o) { o.destination = ""; }, -7},
    {"DestinationLowerCase", [](OrderFields& o) { o.destination = "arca"; }, 0},
    {"BadTifAndDestination",
     [](OrderFields& o) {
         o.tif = "Q";
         o.destination = "NYSE";
     },
     -6},
    {"LimitAboveExposure",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = 100.01;
         o.quantity = 10000;
     },
     -8},
    {"LimitAtExposure",
     [](OrderFields& o) {
         o.priceType = 5;
         o.price = 100;
         o.quantity = 10000;
     },
     0},
    {"MarketAboveExposure", [](OrderFields& o) { o.quantity = 2'000'000'000; }, -8},
    {"DestinationBeforeExposure",
     [](OrderFields& o) {
         o.destination = "NYSE";
         o.quantity = 2'000'000'000;
     },
     -7},
};

INSTANTIATE_TEST_SUITE_P(Rows, SimPreTradeCheck, ::testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SimPreTradeCheck, EveryDestinationAndAnySizeWithoutLimits) {
    SimDesk desk;
    OrderFields fields;
    fields.destination = "ANYWHERE";
    fields.quantity = 2'000'000'000;
    EXPECT_GT(desk.send(fields), 0);
}

TEST(SimPreTradeCheck, OfflineBeforeStartAfterStopAndAfterShutdown) {
    SimDesk desk({}, false);
    EXPECT_EQ(desk.send({}), -16);
    OrderFields bad;
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
