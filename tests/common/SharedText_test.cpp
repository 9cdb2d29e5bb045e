#include "common/SharedText.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(SharedText, RecordsFilledFromRepeatingValuesShareThemAndOutliveTheCache) {
    std::optional<RecentTexts> recent{std::in_place};
    SharedText a = recent->of("NYSE");
    const SharedText b = recent->of("NASDAQ");
    SharedText again = recent->of(std::string("NYSE"));
    EXPECT_TRUE(again.SharesWith(a));
    EXPECT_FALSE(b.SharesWith(a));
    // Values pushed out of the cache stay with the records that hold them.
    for (const char* value : {"ARCA", "BATS", "EDGX", "IEX"}) {
        recent->of(value);
    }
    EXPECT_FALSE(recent->of("NYSE").SharesWith(a));
    recent.reset();
    EXPECT_EQ(a, "NYSE");
    EXPECT_EQ(b.str(), "NASDAQ");

    // A holder that takes another value leaves the others as they were.
    a = std::string("NYSE ARCA");
    EXPECT_EQ(a, "NYSE ARCA");
    EXPECT_EQ(again, "NYSE");
    again = std::string();
    EXPECT_TRUE(again.empty());
    EXPECT_EQ(again.str(), "");
    EXPECT_TRUE(SharedText("") == again);
}

} // namespace
} // namespace wicker
