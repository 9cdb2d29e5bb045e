#include "common/RuntimeError.h"
#include "trading/basket/RoundMath.h"

#include <limits>

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(RoundMath, FirstDecimalDecidesWithTheOddThreshold) {
    struct Row {
        const char* name;
        double value;
        int16_t decimals;
        double expected;
    };
    const Row rows[] = {
        {"fraction 0.45 stays down", 10.45, 0, 10},
        {"fraction 0.46 goes up", 10.46, 0, 11},
        {"plain 0.45 stays down", 0.45, 0, 0},
        {"fraction 0.55 goes up", 10.55, 0, 11},
        {"half goes up", 24.5, 0, 25},
        {"quarter stays down", 1.25, 0, 1},
        {"0.49 goes up", 3.49, 0, 4},
        {"0.44 stays down", 3.44, 0, 3},
        {"whole number unchanged", 7, 0, 7},
        {"zero", 0, 0, 0},
        {"negative floored first", -1.3, 0, -1},
        {"negative half", -2.5, 0, -2},
        {"negative small fraction", -1.9, 0, -2},
        {"two decimals up", 1.236, 2, 1.24},
        {"two decimals, 0.45 of a cent stays down", 1.2345, 2, 1.23},
        {"one decimal", 2.56, 1, 2.6},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_DOUBLE_EQ(RoundMath(r.value, r.decimals), r.expected);
    }
}

TEST(RoundMath, NoNumberIsAnOverflowError) {
    try {
        RoundMath(std::numeric_limits<double>::quiet_NaN(), 0);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}

} // namespace
} // namespace wicker
