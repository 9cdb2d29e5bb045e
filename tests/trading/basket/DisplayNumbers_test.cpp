#include "common/Conversions.h"
#include "common/Formats.h"
#include "trading/basket/DisplayNumbers.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

// The fast texts must be the general formats' texts, value for value.
std::vector<double> Values() {
    std::vector<double> v{0.0,
                          -0.0,
                          2.345, // just below in binary: the 15-digit form rounds it up
                          -2.345,
                          0.005,
                          -0.004,
                          -0.005,
                          0.00049,
                          0.5,
                          0.45,
                          9.995,
                          99999.995,
                          999.9999,
                          1e-7,
                          -1e-7,
                          123456789.125,
                          100000000000000.5, // a tie at the 15th digit
                          999999999999999.0,
                          1e15,
                          -1e15,
                          1e300,
                          250,
                          100000,
                          1234.567,
                          std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity(),
                          std::numeric_limits<double>::denorm_min()};
    uint64_t x = 88172645463325252ull;
    for (int i = 0; i < 200000; ++i) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        switch (i % 4) {
        case 0: // prices on a cent grid, with the binary noise of arithmetic
            v.push_back(static_cast<double>(x % 10000000) / 100 + (i % 3 == 0 ? 0.005 : 0));
            break;
        case 1: // anything at all
        {
            double d;
            std::memcpy(&d, &x, sizeof d);
            v.push_back(d);
            break;
        }
        case 2: // percentages
            v.push_back((static_cast<double>(x % 2000001) - 1000000) / 3000.0);
            break;
        default: // volumes and thousands
            v.push_back(static_cast<double>(x % 100000000000ull) / 1000.0);
        }
    }
    return v;
}

TEST(DisplayNumbers, SameTextsAsTheGeneralFormats) {
    int mismatches = 0;
    for (double value : Values()) {
        const std::string expected[] = {Format(value, "#0.00"),   Format(value, "#0.000"),
                                        Format(value, "#0.0000"), Format(value, "#.00"),
                                        Format(value, "#,###"),   NumberText(value)};
        const std::string fast[] = {FixedText(value, 2),  FixedText(value, 3),
                                    FixedText(value, 4),  FixedText(value, 2, false),
                                    ThousandsText(value), QuantityText(value)};
        for (size_t k = 0; k < 6; ++k) {
            if (fast[k] != expected[k] && ++mismatches <= 10) {
                ADD_FAILURE() << "value " << NumberText(value) << " form " << k << ": " << fast[k]
                              << " != " << expected[k];
            }
        }
    }
    EXPECT_EQ(mismatches, 0);
}

TEST(DisplayNumbers, KnownTexts) {
    EXPECT_EQ(FixedText(1.5, 4), "1.5000");
    EXPECT_EQ(FixedText(0, 2, false), ".00");
    EXPECT_EQ(FixedText(2.345, 2), "2.35");
    EXPECT_EQ(FixedText(-0.001, 2), "0.00");
    EXPECT_EQ(ThousandsText(250000), "250,000");
    EXPECT_EQ(ThousandsText(0), "");
    EXPECT_EQ(QuantityText(-150), "-150");
    EXPECT_EQ(QuantityText(0.5), "0.5");
    // A $100M send in full, not "11087555....".
    EXPECT_EQ(DollarText(110875551.234), "110,875,551.23");
    EXPECT_EQ(DollarText(-1234.5), "-1,234.50");
    EXPECT_EQ(DollarText(999.999), "1,000.00");
    EXPECT_EQ(DollarText(0), "0.00");
}

} // namespace
} // namespace wicker
