#include "storage/Settings.h"
#include "storage/clsIniFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class SettingsTest : public testing::Test {
protected:
    test::TempDir dir;
    ManualClock clock{FromLocal({2026, 11, 22, 9, 30, 0, 0})};
    fs::path file() const { return dir / "basket.ini"; }
    std::string Ini(const char* section, const char* key) const {
        return test::IniValue(file(), section, key);
    }
    Settings Load(const std::string& basketIni) {
        test::WriteFile(file(), basketIni);
        return LoadSettings(dir.path(), clock);
    }
};

TEST_F(SettingsTest, EmptyFolderGivesEveryDefault) {
    const Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.volThousands, "");
    EXPECT_EQ(s.volThreshold, "");
    EXPECT_EQ(s.stockColumnWidths, std::vector<std::optional<int32_t>>(20));
    EXPECT_EQ(s.basketColumnWidths, std::vector<std::optional<int32_t>>(13));
    EXPECT_EQ(s.basketItemsCols, "11111111111111111111");
    EXPECT_EQ(s.basketInfoCols, "1111111111111");
    EXPECT_EQ(s.moo, 0);
    EXPECT_EQ(s.moc, 0);
    EXPECT_EQ(s.buttons, "111100111100111100000");
    ASSERT_EQ(s.itemsPositions.size(), 21u); // the default's trailing comma
    EXPECT_EQ(s.itemsPositions[19], "20");
    EXPECT_EQ(s.itemsPositions[20], "");
    ASSERT_EQ(s.infoPositions.size(), 13u);
    EXPECT_EQ(s.infoPositions[12], "13");
    EXPECT_TRUE(s.colorOrderButtons);
    EXPECT_EQ(s.buyButtonColor, -2147483633);
    EXPECT_EQ(s.sellButtonColor, -2147483633);
    EXPECT_EQ(s.shortButtonColor, -2147483633);
    EXPECT_EQ(s.shareRounding, 1);
    EXPECT_FALSE(s.beforeSending || s.beforeCancel || s.beforeChange);
    EXPECT_TRUE(s.beforeExit);
    EXPECT_EQ(s.seqNum, 1);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_TRUE(s.basketButtons);
    EXPECT_TRUE(s.basketInfoDisplay);
    EXPECT_FALSE(s.basketInfoShowAll);
    EXPECT_EQ(s.reserveQuantity, 100);
    EXPECT_FALSE(s.reserveEnabled);
    EXPECT_EQ(s.numDecimals, 2);
    EXPECT_TRUE(s.divisors.empty());
    EXPECT_TRUE(s.indexTypes.empty());
    EXPECT_TRUE(s.problems.empty());
    // The daily reset is the only write.
    EXPECT_EQ(test::ReadFile(file()), "[Sequence]\r\nCurDate=20261122\r\nBasketNum=1\r\n");
}

TEST_F(SettingsTest, EveryKeyIsReadFromItsSection) {
    test::WriteFile(dir / "$QvxLast.ini", "[General]\r\nVolThousands=1\r\nVolThreshold=100000\r\n");
    const Settings s =
        Load("[StockColumnWidths]\r\ncolumn1=100\r\ncolumn20=7\r\n"
             "[BasketColumnWidths]\r\ncolumn13=55\r\n"
             "[ColumnDisplay]\r\nBasketItemsCols=0101\r\nBasketInfoCols=10\r\n"
             "[OptionalButtons]\r\nMOO=1\r\nMOC=1\r\n[ButtonsDisplay]\r\nButtons=000\r\n"
             "[ColumnPositions]\r\nItemsPositions=2,1\r\nInfoPositions=3,1,2\r\n"
             "[Color]\r\nColorOrderButtons=0\r\nBuyButtonColor=255\r\nSellButtonColor=-1\r\n"
             "ShortButtonColor=65280\r\n[Rounding]\r\nShareRounding=100\r\n"
             "[Confirmation]\r\nBeforeSending=1\r\nBeforeCancel=1\r\nBeforeChange=1\r\n"
             "BeforeExit=0\r\n"
             "[Sequence]\r\nCurDate=20261122\r\nSeqNum=12\r\nBasketNum=5\r\n"
             "[DisplaySettings]\r\nBasketButtons=0\r\n[BasketInfo]\r\nDisplay=0\r\nShowAll=1\r\n"
             "[Reserve]\r\nQuantity=500\r\nEnabled=1\r\n[Decimals]\r\nNumDecimals=4\r\n");
    EXPECT_EQ(s.volThousands, "1");
    EXPECT_EQ(s.volThreshold, "100000");
    EXPECT_EQ(s.stockColumnWidths[0], 100);
    EXPECT_EQ(s.stockColumnWidths[19], 7);
    EXPECT_FALSE(s.stockColumnWidths[1]);
    EXPECT_EQ(s.basketColumnWidths[12], 55);
    EXPECT_EQ(s.basketItemsCols, "0101");
    EXPECT_EQ(s.basketInfoCols, "10");
    EXPECT_EQ(s.moo, 1);
    EXPECT_EQ(s.moc, 1);
    EXPECT_EQ(s.buttons, "000");
    EXPECT_EQ(s.itemsPositions, (Strings{"2", "1"}));
    EXPECT_EQ(s.infoPositions, (Strings{"3", "1", "2"}));
    EXPECT_FALSE(s.colorOrderButtons);
    EXPECT_EQ(s.buyButtonColor, 255);
    EXPECT_EQ(s.sellButtonColor, -1);
    EXPECT_EQ(s.shortButtonColor, 65280);
    EXPECT_EQ(s.shareRounding, 100);
    EXPECT_TRUE(s.beforeSending && s.beforeCancel && s.beforeChange);
    EXPECT_FALSE(s.beforeExit);
    EXPECT_EQ(s.seqNum, 12);
    EXPECT_EQ(s.basketNum, 5);
    EXPECT_FALSE(s.basketButtons);
    EXPECT_FALSE(s.basketInfoDisplay);
    EXPECT_TRUE(s.basketInfoShowAll);
    EXPECT_EQ(s.reserveQuantity, 500);
    EXPECT_TRUE(s.reserveEnabled);
    EXPECT_EQ(s.numDecimals, 4);
    EXPECT_TRUE(s.problems.empty());
}

TEST_F(SettingsTest, NewDayRestartsBasketNumButNeverSeqNum) {
    Settings s = Load("[Sequence]\r\nCurDate=20261121\r\nSeqNum=42\r\nBasketNum=7\r\n");
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_EQ(s.seqNum, 42);
    EXPECT_EQ(s.curDate, "20261122");
    EXPECT_EQ(Ini("Sequence", "CurDate"), "20261122");
    EXPECT_EQ(Ini("Sequence", "BasketNum"), "1");
    EXPECT_EQ(Ini("Sequence", "SeqNum"), "42");

    // Later the same day the number that was reached stands.
    ASSERT_TRUE(SaveBasketSeq(dir.path(), 8));
    s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketNum, 8);

    // Midnight local time is a new day.
    clock.set(FromLocal({2026, 11, 23, 0, 0, 1, 0}));
    s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_EQ(s.seqNum, 42);
}

TEST_F(SettingsTest, ButtonsDefaultFollowsTheOptionalButtons) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"1", "1", "111111111111111111000"},     {"1", "0", "111110111110111110000"},
        {"0", "1", "111101111101111101000"},     {"0", "0", "111100111100111100000"},
        {"2", "0", "111100111100111100000"},     {"1", "-1", "111100111100111100000"},
        {"0.5", "1.5", "111100111100111100000"}, // halves to even: 0 and 2
        {"abc", "1", "111101111101111101000"},   // unreadable MOO stays 0
    };
    for (const auto& [moo, moc, buttons] : rows) {
        const Settings s = Load(std::string("[OptionalButtons]\r\nMOO=") + moo + "\r\nMOC=" + moc);
        EXPECT_EQ(s.buttons, buttons) << moo << "/" << moc;
    }
    EXPECT_EQ(Load("[OptionalButtons]\r\nMOO=abc\r\n").moo, 0);
}

TEST_F(SettingsTest, UnconvertibleValuesKeepTheirDefaults) {
    const Settings s =
        Load("[OptionalButtons]\r\nMOO=99999\r\n[Decimals]\r\nNumDecimals=x\r\n"
             "[Rounding]\r\nShareRounding=2.5\r\n"
             "[Color]\r\nBuyButtonColor=&Hzz\r\nColorOrderButtons=yes\r\n"
             "[Sequence]\r\nCurDate=20261122\r\nSeqNum=40000\r\nBasketNum=\r\n"
             "[Reserve]\r\nQuantity=1e10\r\nEnabled=True\r\n"
             "[Confirmation]\r\nBeforeSending=-1\r\nBeforeCancel=0.0\r\n"
             "[StockColumnWidths]\r\ncolumn1=wide\r\ncolumn2=-1\r\ncolumn3=80.5\r\n");
    EXPECT_EQ(s.moo, 0);
    EXPECT_EQ(s.numDecimals, 2);
    EXPECT_EQ(s.shareRounding, 2);
    EXPECT_EQ(s.buyButtonColor, -2147483633);
    EXPECT_TRUE(s.colorOrderButtons);
    EXPECT_EQ(s.seqNum, 1);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_EQ(s.reserveQuantity, 100);
    EXPECT_TRUE(s.reserveEnabled);
    EXPECT_TRUE(s.beforeSending);
    EXPECT_FALSE(s.beforeCancel);
    EXPECT_FALSE(s.stockColumnWidths[0]);
    EXPECT_FALSE(s.stockColumnWidths[1]);
    EXPECT_EQ(s.stockColumnWidths[2], 80);
}

TEST_F(SettingsTest, DecimalsOutsideWhatAPriceCanShowReadAsTwoAndAreReported) {
    struct Row {
        const char* value;
        int16_t read;
        bool reported;
    };
    const Row rows[] = {{"0", 0, false}, {"4", 4, false}, {"8", 8, false},
                        {"9", 2, true},  {"-1", 2, true}, {"32767", 2, true}};
    for (const Row& r : rows) {
        const Settings s = Load(std::string("[Decimals]\r\nNumDecimals=") + r.value + "\r\n");
        EXPECT_EQ(s.numDecimals, r.read) << r.value;
        EXPECT_EQ(s.problems.size(), r.reported ? 1u : 0u) << r.value;
    }
}

TEST_F(SettingsTest, LeftoverFilesOfAnInterruptedWriteAreRemovedAtTheStart) {
    const Strings leftovers = {".basket.ini.0badf00d.tmp", ".basket.ini.12345678.tmp"};
    const Strings others = {".basket.ini.tmp", ".basket.ini.1234567.tmp",
                            ".basket.ini.ABCDEFGH.tmp", "basket.ini.12345678.tmp",
                            ".other.ini.12345678.tmp"};
    for (const auto& name : leftovers) {
        test::WriteFile(dir / name, "[Decimals]\r\nNumDecimals=3\r\n");
    }
    for (const auto& name : others) {
        test::WriteFile(dir / name, "x");
    }
    const Settings s = Load("[Decimals]\r\nNumDecimals=4\r\n");
    EXPECT_EQ(s.numDecimals, 4);
    for (const auto& name : leftovers) {
        EXPECT_FALSE(fs::exists(dir / name)) << name;
    }
    for (const auto& name : others) {
        EXPECT_TRUE(fs::exists(dir / name)) << name;
    }
}

TEST_F(SettingsTest, AnUnusableLimitKeepsItsValueAndIsReported) {
    const Settings s = Load("[Limits]\r\nMaxOrderShares=5000\r\nPriceBandPercent=-3\r\n"
                            "MaxSendValue=lots\r\n");
    EXPECT_EQ(s.maxOrderShares, 5000);
    EXPECT_EQ(s.priceBandPercent, 10);
    EXPECT_EQ(s.maxSendValue, 0);
    ASSERT_EQ(s.problems.size(), 2u);
    EXPECT_EQ(s.problems[1], "The setting PriceBandPercent in section Limits of basket.ini must be "
                             "a number of 0 or more (0 = off), not \"-3\". It stays at 10.");
}

TEST_F(SettingsTest, InstallHookRunsForEveryVersionThatReadsZero) {
    test::WriteFile(file(), "[Install]\r\n4010=1\r\n4011=abc\r\n4013=0.4\r\n5010=1.5\r\n");
    Strings ran;
    const Settings s =
        LoadSettings(dir.path(), clock, [&](const std::string& v) { ran.push_back(v); });
    EXPECT_EQ(ran, (Strings{"4011", "4013", "4016"}));
    EXPECT_EQ(s.install.at("4010"), 1);
    EXPECT_EQ(s.install.at("4011"), 1); // set in memory after the set-up ran
    EXPECT_EQ(s.install.at("5010"), 2);
    EXPECT_EQ(Ini("Install", "4011"), "abc"); // not written back by the loader
    EXPECT_EQ(Ini("Install", "4016"), "<missing>");
}

TEST_F(SettingsTest, InstallHookWritesAreSeenByLaterReadsAndItsFailureIsReported) {
    const Settings s = LoadSettings(dir.path(), clock, [&](const std::string& v) {
        if (v == "4010") {
            clsIniFile ini;
            ini.setPath(file());
            ini.setSection("Decimals");
            ini.setKey("NumDecimals");
            ini.setValue("3");
        }
        if (v == "4016") {
            throw std::runtime_error("disk full");
        }
    });
    EXPECT_EQ(s.numDecimals, 3);
    ASSERT_EQ(s.problems.size(), 1u);
    EXPECT_NE(s.problems[0].find("4016"), std::string::npos);
    EXPECT_NE(s.problems[0].find("disk full"), std::string::npos);
}

TEST_F(SettingsTest, UnreadableSettingsFileIsReportedAndLeftAlone) {
    fs::create_directory(file());
    const Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.basketNum, 1);
    EXPECT_EQ(s.numDecimals, 2);
    ASSERT_EQ(s.problems.size(), 2u); // the file, and the day's reset that could not be saved
    EXPECT_NE(s.problems[0].find("basket.ini"), std::string::npos);
    EXPECT_TRUE(fs::is_directory(file()));
}

TEST(BasketList, SplitsEachEntryAtItsLastUnderscore) {
    const auto list = SplitBasketList("My_Basket_10,Tech_2.5,,noseparator,_5,tech_99,Odd__,");
    const ByBasketName<std::string> want = {{"My_Basket", "10"}, {"Tech", "2.5"}, {"Odd_", ""}};
    EXPECT_EQ(list, want);
    EXPECT_EQ(list.at("TECH"), "2.5"); // names compare without case; the first entry wins
}

TEST(BasketList, JoinSkipsBasketsWithoutAValueAndReportsWhatTheListCannotHold) {
    const BasketListText list =
        JoinBasketList({"A_1", "No value", "Comma,Name", "B", "", "Bad value"},
                       [](const std::string& name) -> std::optional<std::string> {
                           if (name == "No value") {
                               return std::nullopt;
                           }
                           return name == "Bad value" ? "x_y" : "v";
                       });
    EXPECT_EQ(list.text, "A_1_v,B_v,");
    EXPECT_EQ(list.leftOut, (Strings{"Comma,Name", "", "Bad value"}));
}

TEST_F(SettingsTest, DivisorsAndIndexTypesRoundTripInListOrder) {
    Settings s;
    s.divisors = {{"Tech", 2.5}, {"My_Basket", 10}, {"Big", 1e20}};
    s.indexTypes = {
        {"tech", "Mkt Cap Weighted"}, {"My_Basket", "Price Weighted"}, {"big", "Eql Dlr Weighted"}};
    EXPECT_TRUE(SaveScreenSettings(dir.path(), s, {"My_Basket", "TECH", "Big"}));
    EXPECT_EQ(Ini("Divisors", "List"), "My_Basket_10,TECH_2.5,Big_1E+20,");
    EXPECT_EQ(Ini("IndexTypes", "List"),
              "My_Basket_Price Weighted,TECH_Mkt Cap Weighted,Big_Eql Dlr Weighted,");
    const Settings back = LoadSettings(dir.path(), clock);
    EXPECT_EQ(back.divisors,
              (ByBasketName<double>{{"My_Basket", 10}, {"TECH", 2.5}, {"Big", 1e20}}));
    EXPECT_EQ(back.indexTypes.size(), 3u);
    EXPECT_EQ(back.indexTypes.at("Tech"), "Mkt Cap Weighted");
    EXPECT_EQ(back.itemsPositions, s.itemsPositions);
    EXPECT_EQ(back.infoPositions, s.infoPositions);
    EXPECT_EQ(Ini("ColumnPositions", "ItemsPositions"), kDefaultItemsPositions);
    EXPECT_EQ(Ini("ButtonsDisplay", "Buttons"), "111100111100111100000");
    EXPECT_EQ(Ini("ColumnDisplay", "BasketInfoCols"), "1111111111111");
}

TEST_F(SettingsTest, LongBasketListsAreReadWhole) {
    ByBasketName<double> divisors;
    std::vector<std::string> order;
    for (int i = 0; i < 60; ++i) {
        order.push_back("Basket number " + std::to_string(i));
        divisors[order.back()] = 1.25 + i;
    }
    ASSERT_TRUE(SaveDivisors(dir.path(), order, divisors));
    EXPECT_EQ(Ini("Divisors", "List").size(), 254u); // what one plain read returns
    EXPECT_EQ(LoadSettings(dir.path(), clock).divisors, divisors);
}

TEST_F(SettingsTest, ABasketTheListCannotHoldIsReportedAndTheRestSaved) {
    const auto saved = SaveIndexTypes(dir.path(), {"A,B", "C"},
                                      {{"A,B", "Price Weighted"}, {"C", "Eql Dlr Weighted"}});
    ASSERT_FALSE(saved);
    EXPECT_NE(saved.error().message.find("A,B"), std::string::npos);
    EXPECT_EQ(Ini("IndexTypes", "List"), "C_Eql Dlr Weighted,");
}

TEST_F(SettingsTest, WritersStoreTheirKeys) {
    ASSERT_TRUE(SaveBasketSeq(dir.path(), 17));
    ASSERT_TRUE(SaveSeqNum(dir.path(), -3));
    ASSERT_TRUE(SaveColumnPositions(dir.path(), {"3", "1", "2", ""}, {"2", "1"}));
    ASSERT_TRUE(SaveButtonsDisplay(dir.path(), "101"));
    ASSERT_TRUE(SaveColumnDisplay(dir.path(), "0011", "01"));
    EXPECT_EQ(test::ReadFile(file()),
              "[Sequence]\r\nBasketNum=17\r\nSeqNum=-3\r\n\r\n"
              "[ColumnPositions]\r\nItemsPositions=3,1,2,\r\nInfoPositions=2,1\r\n\r\n"
              "[ButtonsDisplay]\r\nButtons=101\r\n\r\n"
              "[ColumnDisplay]\r\nBasketItemsCols=0011\r\nBasketInfoCols=01\r\n");
    const Settings s = LoadSettings(dir.path(), clock);
    EXPECT_EQ(s.itemsPositions, (Strings{"3", "1", "2", ""}));
    EXPECT_EQ(s.seqNum, -3);
}

TEST_F(SettingsTest, WriterFailureSaysWhichKey) {
    const auto saved = SaveSeqNum(dir.path() / "gone", 2);
    ASSERT_FALSE(saved);
    EXPECT_NE(saved.error().message.find("Sequence / SeqNum"), std::string::npos);
}

} // namespace
} // namespace wicker
