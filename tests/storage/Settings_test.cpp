#include "common/Formats.h"
#include "storage/Settings.h"
#include "storage/clsIniFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

class SettingsTest : public testing::Test {
protected:
    test::TempDir dir;
    ManualClock clock{FromLocal({2026, 11, 22, 9, 30, 0, 0})};
    std::string Ini(const char* section, const char* key) {
        clsIniFile ini;
        ini.setPath(dir / "basket.ini");
        ini.setSection(section);
        ini.setKey(key);
        return ini.Value();
    }
};

TEST_F(SettingsTest, EmptyFolderGivesEveryDefault) {
    Strings installs;
    const Settings s =
        LoadSettings(dir.path(), clock, [&](const std::string& v) { installs.push_back(v); });
    EXPECT_EQ(installs, (Strings{"4010", "4011", "4013", "4016", "5010"}));
    EXPECT_EQ(s.volThousands, "");
    EXPECT_EQ(s.buttons, "111100111100111100000");
    ASSERT_EQ(s.itemsPositions.size(), 21u); // trailing comma: one empty element
    EXPECT_EQ(s.itemsPositions.back(), "");
    EXPECT_EQ(s.infoPositions.size(), 13u);
    EXPECT_EQ(s.buyButtonColor, -2147483633);
    EXPECT_EQ(s.shareRounding, 1);
    EXPECT_EQ(s.reserveQuantity, 100);
    EXPECT_EQ(s.numDecimals, 2);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_FALSE(s.stockColumnWidths[0].has_value());
    // The daily reset is the only write.
    EXPECT_EQ(Ini("Sequence", "CurDate"), "20261122");
    EXPECT_EQ(Ini("Sequence", "BasketNum"), "1");
}

TEST_F(SettingsTest, NewDayResetsBasketNumButNotSeqNum) {
    test::WriteFile(dir / "basket.ini",
                    "[Sequence]\r\nCurDate=20261121\r\nSeqNum=42\r\nBasketNum=7\r\n");
    Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_EQ(s.seqNum, 42);
    EXPECT_EQ(Ini("Sequence", "SeqNum"), "42");
    // Same day again: the number stands.
    test::WriteFile(dir / "basket.ini",
                    "[Sequence]\r\nCurDate=20261122\r\nSeqNum=42\r\nBasketNum=7\r\n");
    s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketNum, 7);
}

TEST_F(SettingsTest, ButtonsDefaultFollowsOptionalButtons) {
    struct Row {
        const char* moo;
        const char* moc;
        const char* buttons;
    };
    const Row rows[] = {{"1", "1", "111111111111111111000"}, {"1", "0", "111110111110111110000"},
                        {"0", "1", "111101111101111101000"}, {"0", "0", "111100111100111100000"},
                        {"2", "0", "111100111100111100000"}, {"abc", "1", "111101111101111101000"}};
    for (const auto& r : rows) {
        test::WriteFile(dir / "basket.ini", std::string("[OptionalButtons]\r\nMOO=") + r.moo +
                                                "\r\nMOC=" + r.moc + "\r\n");
        EXPECT_EQ(LoadSettings(dir.path(), clock).buttons, r.buttons) << r.moo << r.moc;
    }
}

TEST_F(SettingsTest, InstallFlagsAndBadValuesKeepDefaults) {
    test::WriteFile(dir / "basket.ini",
                    "[Install]\r\n4010=1\r\n4011=abc\r\n5010=1\r\n[Decimals]\r\nNumDecimals=x\r\n"
                    "[Rounding]\r\nShareRounding=2.5\r\n");
    Strings installs;
    const Settings s =
        LoadSettings(dir.path(), clock, [&](const std::string& v) { installs.push_back(v); });
    EXPECT_EQ(installs, (Strings{"4011", "4013", "4016"}));
    EXPECT_EQ(s.numDecimals, 2);
    EXPECT_EQ(s.shareRounding, 2); // halves to even
}

TEST_F(SettingsTest, PlatformFileAndWidths) {
    test::WriteFile(dir / "$QvxLast.ini", "[General]\r\nVolThousands=1\r\nVolThreshold=100000\r\n");
    test::WriteFile(dir / "basket.ini", "[StockColumnWidths]\r\ncolumn3=120\r\n");
    const Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.volThousands, "1");
    EXPECT_EQ(s.volThreshold, "100000");
    EXPECT_EQ(s.stockColumnWidths[2], 120);
}

TEST_F(SettingsTest, DivisorsAndIndexTypesRoundTrip) {
    Settings s;
    s.divisors = {{"Tech", 2.5}, {"My_Basket", 10}};
    s.indexTypes = {{"Tech", "Mkt Cap Weighted"}};
    SaveScreenSettings(dir.path(), s, {"My_Basket", "Tech", "New"});
    EXPECT_EQ(Ini("Divisors", "List"), "My_Basket_10,Tech_2.5,New_1,");
    EXPECT_EQ(Ini("IndexTypes", "List"),
              "My_Basket_Price Weighted,Tech_Mkt Cap Weighted,New_Price Weighted,");
    const Settings back = LoadSettings(dir.path(), clock);
    EXPECT_EQ(back.divisors.at("My_Basket"), 10);
    EXPECT_EQ(back.divisors.at("Tech"), 2.5);
    EXPECT_EQ(back.indexTypes.at("Tech"), "Mkt Cap Weighted");
    EXPECT_EQ(back.itemsPositions, s.itemsPositions);
    EXPECT_EQ(Ini("ColumnPositions", "ItemsPositions"),
              "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,");
    EXPECT_EQ(back.infoPositions, LoadSettings(test::TempDir().path(), clock).infoPositions);
}

} // namespace
} // namespace wicker
