#include "trading/orders/ExecutionButtons.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

// Each button's rule is checked with the order it sends, in Execution_test.

TEST(ExecutionButtons, IndicesOutsideTheArrayHaveNoRuleAndNeedQuotes) {
    for (int index : {-1, 21, 99}) {
        EXPECT_FALSE(ExecuteButtonRuleFor(index).has_value()) << index;
        EXPECT_FALSE(IsMarketTypeButton(index)) << index;
    }
}

TEST(ExecutionButtons, TifTextMapsToItsCode) {
    struct Row {
        const char* text;
        const char* code;
    };
    const Row rows[] = {
        {"AEX", "A"}, {"CHXP", "C"}, {"DAY", "D"}, {"GTC", "G"},  {"GTX", "X"}, {"FOK", "F"},
        {"IOC", "I"}, {"OPG", "O"},  {"OS", "1"},  {"NOW", "N"},  {"EXT", "E"}, {"", "D"},
        {"day", "D"}, {"gtc", "D"},  {"OS ", "D"}, {" IOC", "D"}, {"XYZ", "D"},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(TifCode(r.text), r.code) << '"' << r.text << '"';
    }
}

TEST(ExecutionButtons, ReserveGoesOnlyToTheListedDestinations) {
    for (const char* d :
         {"ARCA", "ATTN", "BRUT", "GNET", "INCA", "INET", "ISLD", "NASDAQ", "NOCI", "TRAC"}) {
        EXPECT_TRUE(TakesReserve(d)) << d;
    }
    for (const char* d : {"NYSE", "", "arca", "ARCA ", "NASD", "AMEX"}) {
        EXPECT_FALSE(TakesReserve(d)) << d;
    }
}

} // namespace
} // namespace wicker
