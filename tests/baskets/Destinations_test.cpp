#include "BasketTestDb.h"
#include "baskets/Destinations.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct DefaultCase {
    const char* name;
    std::string symbol;
    std::string expected;
};

class DefaultDestinationTest : public testing::TestWithParam<DefaultCase> {};

TEST_P(DefaultDestinationTest, LongerThanThreeCharactersIsOtc) {
    EXPECT_EQ(DefaultDestinationFor(GetParam().symbol, "LISTED", "OTC"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Symbols, DefaultDestinationTest,
                         testing::Values(DefaultCase{"ThreeLetters", "IBM", "LISTED"},
                                         DefaultCase{"FourLetters", "MSFT", "OTC"},
                                         DefaultCase{"OneLetter", "F", "LISTED"},
                                         DefaultCase{"Empty", "", "LISTED"},
                                         DefaultCase{"TrailingBlankCounts", "IBM ", "OTC"},
                                         DefaultCase{"AccentedCountsAsOne", "\xC3\x89TE", "LISTED"},
                                         DefaultCase{"FourAccented", "\xC3\x89TES", "OTC"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(InvalidDestinationsTest, NotesEachUnknownDestinationOnceInOrder) {
    InvalidDestinations invalid({"ARCA", "NYSE"});
    for (const char* d : {"NYSE", "FOO", "", "nyse", "FOO", "BAR", "ARCA", "BAR"}) {
        invalid.check(d);
    }
    EXPECT_EQ(invalid.noted(), (std::vector<std::string>{"FOO", "nyse", "BAR"}));
    EXPECT_EQ(InvalidDestinationsText(invalid.noted()), "FOO\nnyse\nBAR\n");
}

TEST(EnabledDestinationsTest, OnlyEnabledOnesSortedWhenAsked) {
    test::BasketTestDb t;
    t.db->ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('AAA',0)");
    t.db->ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('BOX',1)");
    const std::vector<std::string> sorted = {"AMEX",   "ARCA",  "BOX",  "INCA", "INET",
                                             "NASDAQ", "NY/AM", "NYSE", "NYSE+"};
    EXPECT_EQ(EnabledDestinations(*t.db, true), sorted);
    auto unsorted = EnabledDestinations(*t.db, false);
    EXPECT_EQ(unsorted.back(), "BOX");
    EXPECT_EQ(unsorted.size(), sorted.size());
}

} // namespace
} // namespace wicker
