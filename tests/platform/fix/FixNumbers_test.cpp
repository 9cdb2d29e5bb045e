#include "platform/fix/FixNumbers.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace wicker {
namespace {

// Short numbers take a quick path; every text must read as the C library reads it, to the
// last bit, and anything that is not a plain FIX decimal must be refused whichever path.
TEST(FixNumbers, DecimalsReadExactlyAsStrtodAndRefuseTheRest) {
    for (const char* text : {"0", "100", "007", "999999999", "1234567890", "10.25", "0.1", "5.",
                             ".5", "123456789012.345", "0.000000000000001", "98765.4321",
                             "12345678901234567.5", "-1.5", "-0"}) {
        const std::optional<double> value = ParseFixDecimal(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(*value, std::strtod(text, nullptr)) << text;
    }
    for (const char* text : {"", ".", "-", "1.2.3", "1e5", " 1", "1 ", "+1", "0x10", "nan"}) {
        EXPECT_FALSE(ParseFixDecimal(text)) << text;
    }
}

TEST(FixNumbers, QuantitiesAreWholeAndWithinRange) {
    const std::pair<const char*, std::optional<int32_t>> cases[] = {
        {"0", 0},
        {"100", 100},
        {"100.0", 100},
        {"100.5", std::nullopt},
        {"-5", -5},
        {"2147483647", 2147483647},
        {"2147483648", std::nullopt},
        {"abc", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(ParseFixQuantity(text), expected) << text;
    }
}

} // namespace
} // namespace wicker
