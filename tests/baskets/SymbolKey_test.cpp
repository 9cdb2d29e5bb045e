#include "baskets/SymbolKey.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct KeyCase {
    const char* name;
    std::string typed;
    bool modifier;
    std::string expected;
};

class SymbolKeyTest : public testing::TestWithParam<KeyCase> {};

TEST_P(SymbolKeyTest, UpperCaseUnlessAModifierIsHeld) {
    EXPECT_EQ(SymbolKeyText(GetParam().typed, GetParam().modifier), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Keys, SymbolKeyTest,
                         testing::Values(KeyCase{"Plain", "a", false, "A"},
                                         KeyCase{"ShiftInverts", "A", true, "a"},
                                         KeyCase{"HeldLowerStaysLower", "a", true, "a"},
                                         KeyCase{"UpperStaysUpper", "Q", false, "Q"},
                                         KeyCase{"DigitUnchanged", "7", false, "7"},
                                         KeyCase{"DotWithModifier", ".", true, "."}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
