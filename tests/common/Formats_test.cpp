#include "common/Formats.h"
#include "common/ShortestDecimal.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct FormatCase {
    double value;
    const char* pattern;
    const char* expected;
};

TEST(Format, Patterns) {
    const FormatCase cases[] = {
        {0, "#0.00", "0.00"},
        {1.5, "#0.00", "1.50"},
        {2.345, "#0.00", "2.35"}, // decimal rounding, not the binary value below .345
        {2.675, "#0.00", "2.68"},
        {-2.345, "#0.00", "-2.35"},
        {-0.001, "#0.00", "0.00"},
        {9.995, "#0.00", "10.00"},
        {1234567.891, "#0.00", "1234567.89"},
        {1.5, "#0.0000", "1.5000"},
        {1.23456, "#0.000", "1.235"},
        {0.00005, "#0.0000", "0.0001"},
        {0, "#.00", ".00"},
        {0.5, "#.00", ".50"},
        {12345.678, "#.00", "12345.68"},
        {-0.5, "#.00", "-.50"},
        {0, "#,###", ""},
        {0.4, "#,###", ""},
        {0.5, "#,###", "1"},
        {999, "#,###", "999"},
        {1000, "#,###", "1,000"},
        {100000, "#,###", "100,000"},
        {1234567.5, "#,###", "1,234,568"},
        {-1234, "#,###", "-1,234"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Format(c.value, c.pattern), c.expected) << c.value << " " << c.pattern;
    }
}

TEST(Format, UnknownPatternIsAnError) {
    EXPECT_THROW(Format(1.0, "0.0%"), std::invalid_argument);
}

TEST(FormatDecimals, MatchesThePatterns) {
    EXPECT_EQ(FormatDecimals(1.5, 2), Format(1.5, "#0.00"));
    EXPECT_EQ(FormatDecimals(1.5, 4), "1.5000");
    EXPECT_EQ(FormatDecimals(1.5, 0), "2");
    EXPECT_EQ(FormatDecimals(2.5, 0), "3"); // display rounds half away from zero
    EXPECT_THROW(FormatDecimals(1.0, 9), std::invalid_argument);
}

TEST(FormatTime12, TwelveHourClock) {
    EXPECT_EQ(FormatTime12({2026, 11, 22, 0, 5, 9, 0}), "12:05:09 AM");
    EXPECT_EQ(FormatTime12({2026, 11, 22, 9, 30, 0, 0}), "09:30:00 AM");
    EXPECT_EQ(FormatTime12({2026, 11, 22, 12, 0, 0, 0}), "12:00:00 PM");
    EXPECT_EQ(FormatTime12({2026, 11, 22, 15, 4, 5, 0}), "03:04:05 PM");
    EXPECT_EQ(FormatTime12({2026, 11, 22, 23, 59, 59, 0}), "11:59:59 PM");
}

TEST(FormatYyyymmdd, PadsMonthAndDay) {
    EXPECT_EQ(FormatYyyymmdd({2026, 1, 2, 0, 0, 0, 0}), "20260102");
    EXPECT_EQ(FormatYyyymmdd({2026, 11, 22, 0, 0, 0, 0}), "20261122");
}

TEST(Clock, LocalRoundTrip) {
    const LocalDateTime t{2026, 3, 14, 15, 9, 26, 535};
    EXPECT_EQ(ToLocal(FromLocal(t)), t);
    ManualClock clock(FromLocal(t));
    clock.advance(std::chrono::hours(9));
    EXPECT_EQ(FormatYyyymmdd(clock.localNow()), "20260315");
}

// The journal's price text must be exactly what std::to_chars writes: prices on every grid
// of up to four places, their neighbours one bit away, and the values at the edges of the
// quick path (where the scientific text can be the shorter one).
TEST(ShortestDecimal, WritesWhatToCharsWrites) {
    std::vector<double> values = {0,
                                  -0.0,
                                  0.001,
                                  0.0001,
                                  0.00999,
                                  0.01,
                                  0.0100001,
                                  0.05,
                                  0.1,
                                  0.3,
                                  1e4,
                                  2e4,
                                  99999,
                                  99999.9999,
                                  99999.99995,
                                  1e5,
                                  2e5,
                                  1e22,
                                  -1.25,
                                  5e-324,
                                  1.7976931348623157e308,
                                  std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::infinity()};
    for (int places = 0; places <= 5; ++places) {
        const double scale = std::pow(10.0, places);
        for (long n = 1; n < 200000; n += (n < 2000 ? 1 : 997)) {
            const double v = static_cast<double>(n) / scale;
            values.insert(values.end(),
                          {v, std::nextafter(v, 0.0), std::nextafter(v, 1e9), v * 7.77});
        }
    }
    for (const double v : values) {
        char expected[64];
        char got[64];
        const auto want = std::to_chars(expected, expected + sizeof expected, v);
        const auto made = ShortestDecimal(got, got + sizeof got, v);
        ASSERT_EQ(made.ec, want.ec) << v;
        ASSERT_EQ(std::string_view(got, made.ptr), std::string_view(expected, want.ptr))
            << std::string_view(expected, want.ptr);
    }
    char small[4];
    EXPECT_EQ(ShortestDecimal(small, small + sizeof small, 12345.25).ec,
              std::errc::value_too_large);
    const auto fits = ShortestDecimal(small, small + sizeof small, 1.25);
    EXPECT_EQ(std::string_view(small, fits.ptr), "1.25");
}

} // namespace
} // namespace wicker
