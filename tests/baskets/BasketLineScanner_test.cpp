#include "baskets/BasketLineScanner.h"

#include <string>

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct ScanCase {
    const char* name;
    std::string line;
    BasketFileFields expected;
};

class ScanBasketLineTest : public testing::TestWithParam<ScanCase> {};

TEST_P(ScanBasketLineTest, SplitsIntoFourFields) {
    EXPECT_EQ(ScanBasketLine(GetParam().line), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ScanBasketLineTest,
    testing::Values(
        ScanCase{"ThreeFields", "ABC,100,NYSE", {"ABC", "100", "NYSE", ""}},
        ScanCase{"EmptyDestination", "ABCD,100,", {"ABCD", "100", "", ""}},
        ScanCase{"NoSecondComma", "XYZ,50", {"XYZ", "50", "", ""}},
        ScanCase{"SymbolOnly", "XYZ", {"XYZ", "", "", ""}},
        ScanCase{"IndexShares", "IBM,10,NYSE,5000", {"IBM", "10", "NYSE", "5000"}},
        ScanCase{"ExtraFieldsDropped", "IBM,10,NYSE,5000,junk,more", {"IBM", "10", "NYSE", "5000"}},
        ScanCase{"BlanksKept", "ABC , 100 ,nyse ", {"ABC ", " 100 ", "nyse ", ""}},
        ScanCase{"EmptyLine", "", {"", "", "", ""}},
        ScanCase{"OnlyCommas", ",,,,,", {"", "", "", ""}},
        ScanCase{"QuotesAreText", "\"A,B\",1", {"\"A", "B\"", "1", ""}},
        ScanCase{"TabsAreText", "A\tB,1", {"A\tB", "1", "", ""}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(BasketLineScannerTest, CutsFieldsAtTheLimitAndMarksTheLine) {
    BasketLineScanner scanner(4);
    scanner.feed("ABCDEFG,12,NYSE");
    EXPECT_TRUE(scanner.overlong());
    EXPECT_EQ(scanner.take(), (BasketFileFields{"ABCD", "12", "NYSE", ""}));
    // The next line starts clean.
    scanner.feed("AB,1");
    EXPECT_FALSE(scanner.overlong());
    EXPECT_EQ(scanner.take(), (BasketFileFields{"AB", "1", "", ""}));
}

TEST(BasketLineScannerTest, FieldsPastTheFourthNeverCountAsOverlong) {
    BasketLineScanner scanner(4);
    scanner.feed("AB,1,NYSE,5," + std::string(10000, 'x'));
    EXPECT_FALSE(scanner.overlong());
    EXPECT_EQ(scanner.take(), (BasketFileFields{"AB", "1", "NYSE", "5"}));
}

} // namespace
} // namespace wicker
