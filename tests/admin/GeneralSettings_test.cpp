#include "admin/GeneralSettings.h"
#include "platform/PlatformSettings.h"
#include "storage/Settings.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class GeneralSettingsFile : public testing::Test {
protected:
    Settings LoadScreen() const { return LoadSettings(dir.path(), clock); }
    GeneralSettings Load() const { return LoadGeneralSettings(LoadScreen(), dir.path()); }
    std::string Stored(const std::string& section, const std::string& key) const {
        return test::IniValue(dir / "basket.ini", section, key);
    }

    TempDir dir;
    ManualClock clock{FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})};
};

TEST_F(GeneralSettingsFile, DefaultsOfAnEmptyFolder) {
    const GeneralSettings v = Load();
    EXPECT_EQ(v.shareRounding, 1);
    EXPECT_EQ(v.numDecimals, 2);
    EXPECT_EQ(v.reserveQuantity, "100");
    EXPECT_EQ(v.buttons, "111100111100111100000");
    EXPECT_FALSE(v.moo);
    EXPECT_FALSE(v.moc);
    EXPECT_EQ(v.buyButtonColor, -2147483633);
    EXPECT_EQ(v.defaultListed, "NYSE");
    EXPECT_EQ(v.defaultOTC, "ARCA");
    EXPECT_EQ(v.platform.at("Mode"), "SIM");
    EXPECT_EQ(v.platform.at("FixPort"), "9878");
    EXPECT_EQ(v.platform.at("SimFillDelayMs"), "3000");
    EXPECT_EQ(v.platform.size(), EditablePlatformKeys().size());
    // Only the price band and the repeat-send guard are on out of the box.
    EXPECT_EQ(v.limits, (std::map<std::string, std::string>{{"MaxOrderShares", "0"},
                                                            {"MaxOrderValue", "0"},
                                                            {"MaxSendValue", "0"},
                                                            {"PriceBandPercent", "10"},
                                                            {"RepeatSendSeconds", "5"},
                                                            {"Table", "0=0.0001;1=0.01"}}));
}

TEST_F(GeneralSettingsFile, EveryValueComesBackThroughTheStartUpLoader) {
    const GeneralSettings loaded = Load();
    GeneralSettings v = loaded;
    v.shareRounding = 100;
    v.beforeSending = v.beforeCancel = v.beforeChange = true;
    v.beforeExit = false;
    v.reserveQuantity = "300";
    v.reserveEnabled = true;
    v.numDecimals = 4;
    v.basketButtons = false;
    v.basketInfoDisplay = false;
    v.basketInfoShowAll = true;
    SetOptionalButtons(v, OrderKind::Moc, true);
    SetButtonShown(v, OrderSide::Sell, OrderKind::Last, false);
    v.colorOrderButtons = false;
    v.buyButtonColor = ColorSettingOf(255, 0, 0);
    v.sellButtonColor = ColorSettingOf(0, 0, 255);
    v.shortButtonColor = ColorSettingOf(0, 128, 0);
    v.defaultListed = "ARCA";
    v.defaultOTC = "NASDAQ";
    v.limits = {{"MaxOrderShares", "25000"},  {"MaxOrderValue", "1000000"},
                {"MaxSendValue", "25000000"}, {"PriceBandPercent", "2.5"},
                {"RepeatSendSeconds", "0"},   {"Table", "0=0.001;1=0.01"}};
    ASSERT_TRUE(SaveGeneralSettings(dir.path(), v, loaded).ok());

    const Settings s = LoadScreen();
    EXPECT_EQ(s.shareRounding, 100);
    EXPECT_TRUE(s.beforeSending && s.beforeCancel && s.beforeChange);
    EXPECT_FALSE(s.beforeExit);
    EXPECT_EQ(s.reserveQuantity, 300);
    EXPECT_TRUE(s.reserveEnabled);
    EXPECT_EQ(s.numDecimals, 4);
    EXPECT_FALSE(s.basketButtons);
    EXPECT_FALSE(s.basketInfoDisplay);
    EXPECT_TRUE(s.basketInfoShowAll);
    EXPECT_EQ(s.moo, 0);
    EXPECT_EQ(s.moc, 1);
    EXPECT_EQ(s.buttons, "111101110101111101000");
    EXPECT_FALSE(s.colorOrderButtons);
    EXPECT_EQ(s.buyButtonColor, 255);
    EXPECT_EQ(s.sellButtonColor, 16711680);
    EXPECT_EQ(s.shortButtonColor, 32768);
    EXPECT_EQ(s.maxOrderShares, 25000);
    EXPECT_EQ(s.maxSendValue, 25000000);
    EXPECT_EQ(s.priceBandPercent, 2.5);
    EXPECT_EQ(s.repeatSendSeconds, 0);
    EXPECT_EQ(s.tickTable, "0=0.001;1=0.01");
    EXPECT_EQ(Load(), v);
}

TEST_F(GeneralSettingsFile, OnlyChangedPlatformKeysAreWrittenAndThePlatformReadsThem) {
    const GeneralSettings loaded = Load();
    GeneralSettings v = loaded;
    v.platform["Mode"] = "fix";
    v.platform["SimClipSize"] = "500";
    v.platform["EnabledDestinations"] = "arca, nyse";
    v.platform["MaxOrderNotional"] = "250000";
    v = Normalised(v);
    ASSERT_FALSE(ValidateGeneralSettings(v, loaded, {}, dir.path()));
    ASSERT_TRUE(SaveGeneralSettings(dir.path(), v, loaded).ok());

    EXPECT_EQ(Stored("Platform", "Mode"), "FIX");
    EXPECT_EQ(Stored("Platform", "EnabledDestinations"), "ARCA,NYSE");
    EXPECT_EQ(Stored("Platform", "FixHost"), "<missing>"); // left alone: stays absent
    EXPECT_EQ(Stored("Platform", "SimSeed"), "<missing>");
    const PlatformSettings p = ReadPlatformSettings(dir / "basket.ini");
    EXPECT_TRUE(p.messages.empty());
    EXPECT_EQ(p.mode, PlatformMode::Fix);
    EXPECT_EQ(p.sim.clipSize, 500);
    EXPECT_EQ(p.sim.limits.enabledDestinations, (std::set<std::string>{"ARCA", "NYSE"}));
    EXPECT_EQ(p.sim.limits.maxOrderNotional, 250000);
    EXPECT_TRUE(PlatformChanged(v, loaded));
    EXPECT_FALSE(PlatformChanged(loaded, loaded));
}

TEST_F(GeneralSettingsFile, OtherSectionsAndCommentsSurviveASave) {
    WriteFile(dir / "basket.ini", "; kept\r\n[Sequence]\r\nSeqNum=41\r\n[Platform]\r\n"
                                  "FixTifOS=59=3;9416=Y\r\nFixHost=broker.example\r\n");
    const GeneralSettings loaded = Load();
    EXPECT_EQ(loaded.platform.at("FixHost"), "broker.example");
    ASSERT_TRUE(SaveGeneralSettings(dir.path(), loaded, loaded).ok());
    const std::string text = ReadFile(dir / "basket.ini");
    EXPECT_EQ(text.rfind("; kept\r\n", 0), 0u);
    EXPECT_EQ(Stored("Sequence", "SeqNum"), "41");
    EXPECT_EQ(Stored("Platform", "FixTifOS"), "59=3;9416=Y");
    EXPECT_EQ(Stored("Platform", "FixHost"), "broker.example");
    EXPECT_EQ(Stored("Decimals", "NumDecimals"), "2");
}

TEST_F(GeneralSettingsFile, AFileThatCannotBeReadIsNeverWritten) {
    std::filesystem::create_directories(dir / "basket.ini"); // something there, no file
    const GeneralSettings loaded = Load();
    GeneralSettings v = loaded;
    v.numDecimals = 3;
    const Result<void> saved = SaveGeneralSettings(dir.path(), v, loaded);
    ASSERT_FALSE(saved.ok());
    EXPECT_NE(saved.error().message.find("not saved"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_directory(dir / "basket.ini"));
}

TEST_F(GeneralSettingsFile, ScreenShowingOptionalButtonsCountsAsOffered) {
    WriteFile(dir / "basket.ini", "[ButtonsDisplay]\r\nButtons=1111101\r\n");
    const GeneralSettings v = Load();
    EXPECT_TRUE(v.moo); // the buy MOO flag is "1"
    EXPECT_TRUE(v.moc); // missing flags show their buttons
    EXPECT_EQ(v.buttons, "111110111111111111000");
}

TEST(GeneralSettingsButtons, OfferingAKindShowsOrHidesItsThreeButtons) {
    GeneralSettings v;
    SetOptionalButtons(v, OrderKind::Moo, true);
    EXPECT_TRUE(v.moo);
    EXPECT_EQ(v.buttons, "111110111110111110000");
    SetOptionalButtons(v, OrderKind::Moc, true);
    EXPECT_EQ(v.buttons, "111111111111111111000");
    SetOptionalButtons(v, OrderKind::Moo, false);
    EXPECT_FALSE(v.moo);
    EXPECT_EQ(v.buttons, "111101111101111101000");
    SetOptionalButtons(v, OrderKind::Bid, false); // not optional: nothing changes
    EXPECT_EQ(v.buttons, "111101111101111101000");
    EXPECT_EQ(ButtonFlagIndex(OrderSide::Short, OrderKind::Moc), 17u);
}

TEST(GeneralSettingsButtons, TrailingFlagsAreKept) {
    GeneralSettings v;
    v.buttons = "000000000000000000101";
    SetButtonShown(v, OrderSide::Buy, OrderKind::Bid, true);
    EXPECT_EQ(v.buttons, "100000000000000000101");
}

TEST(GeneralSettingsColors, SettingsFormOfColours) {
    EXPECT_EQ(ColorSettingOf(255, 0, 0), 0x0000FF);
    EXPECT_EQ(ColorSettingOf(0, 255, 0), 0x00FF00);
    EXPECT_EQ(ColorSettingOf(1, 2, 3), 0x030201);
    EXPECT_TRUE(IsSystemColorSetting(-2147483633));
    EXPECT_FALSE(IsSystemColorSetting(0xFFFFFF));
    GeneralSettings v;
    v.buyButtonColor = v.sellButtonColor = v.shortButtonColor = 255;
    SetDefaultColors(v);
    EXPECT_EQ(v.buyButtonColor, -2147483633);
    EXPECT_EQ(v.sellButtonColor, -2147483633);
    EXPECT_EQ(v.shortButtonColor, -2147483633);
}

TEST(GeneralSettingsApply, TheScreenTakesTheValues) {
    GeneralSettings v;
    v.shareRounding = 10;
    v.numDecimals = 3;
    v.reserveQuantity = "200";
    v.reserveEnabled = true;
    v.beforeCancel = true;
    SetOptionalButtons(v, OrderKind::Moo, true);
    v.sellButtonColor = 255;
    Settings s;
    ApplyGeneralSettings(v, s);
    EXPECT_EQ(s.shareRounding, 10);
    EXPECT_EQ(s.numDecimals, 3);
    EXPECT_EQ(s.reserveQuantity, 200);
    EXPECT_TRUE(s.reserveEnabled);
    EXPECT_TRUE(s.beforeCancel);
    EXPECT_FALSE(s.beforeSending);
    EXPECT_EQ(s.moo, 1);
    EXPECT_EQ(s.buttons, "111110111110111110000");
    EXPECT_EQ(s.sellButtonColor, 255);
}

class GeneralSettingsValidation : public testing::Test {
protected:
    GeneralSettings Good() const { return LoadGeneralSettings(Settings{}, dir.path()); }
    TempDir dir;
    const std::vector<std::string> destinations{"ARCA", "NASDAQ", "NYSE"};
};

TEST_F(GeneralSettingsValidation, BadValuesPointAtTheirBox) {
    struct Row {
        const char* name;
        std::function<void(GeneralSettings&)> change;
        const char* field; // "" = accepted
    };
    const auto platform = [](const char* key, const char* text) {
        return [=](GeneralSettings& v) { v.platform[key] = text; };
    };
    const auto limit = [](const char* key, const char* text) {
        return [=](GeneralSettings& v) { v.limits[key] = text; };
    };
    const auto fix = [](const char* key, const char* text) {
        return [=](GeneralSettings& v) {
            v.platform["Mode"] = "FIX";
            v.platform[key] = text;
        };
    };
    const Row rows[] = {
        {"unchanged", [](GeneralSettings&) {}, ""},
        {"rounding 5", [](GeneralSettings& v) { v.shareRounding = 5; }, "ShareRounding"},
        {"rounding 100", [](GeneralSettings& v) { v.shareRounding = 100; }, ""},
        {"reserve 0", [](GeneralSettings& v) { v.reserveQuantity = "0"; }, "ReserveQuantity"},
        {"reserve text", [](GeneralSettings& v) { v.reserveQuantity = "1e3"; }, "ReserveQuantity"},
        {"reserve empty", [](GeneralSettings& v) { v.reserveQuantity = ""; }, "ReserveQuantity"},
        {"reserve overflow", [](GeneralSettings& v) { v.reserveQuantity = "9999999999"; },
         "ReserveQuantity"},
        {"decimals 5", [](GeneralSettings& v) { v.numDecimals = 5; }, "NumDecimals"},
        {"decimals 3", [](GeneralSettings& v) { v.numDecimals = 3; }, ""},
        {"listed empty", [](GeneralSettings& v) { v.defaultListed = ""; }, "DefaultListed"},
        {"listed unknown", [](GeneralSettings& v) { v.defaultListed = "BATS"; }, "DefaultListed"},
        {"otc with comma", [](GeneralSettings& v) { v.defaultOTC = "AR,CA"; }, "DefaultOTC"},
        {"mode other", platform("Mode", "LIVE"), "Mode"},
        {"fix port 0", fix("FixPort", "0"), "FixPort"},
        {"fix port text", fix("FixPort", "http"), "FixPort"},
        {"fix port 65535", fix("FixPort", "65535"), ""},
        {"fix host empty", fix("FixHost", ""), "FixHost"},
        {"fix sender empty", fix("FixSenderCompID", ""), "FixSenderCompID"},
        {"fix version 4.3", fix("FixVersion", "4.3"), "FixVersion"},
        {"fix heartbeat 0", fix("FixHeartBtInt", "0"), "FixHeartBtInt"},
        {"fix handlinst 4", fix("FixHandlInst", "4"), "FixHandlInst"},
        {"fix quotes sim", fix("FixQuotes", "SIM"), "FixQuotes"},
        {"fix window 0", fix("FixSendWindow", "0"), "FixSendWindow"},
        {"fix settings file missing", fix("FixSettingsFile", "session.cfg"), "FixSettingsFile"},
        {"fix port changed under SIM", platform("FixPort", "70000"), "FixPort"},
        {"sim updates 0", platform("SimUpdatesPerSecond", "0"), "SimUpdatesPerSecond"},
        {"sim seed negative", platform("SimSeed", "-1"), "SimSeed"},
        {"sim delay too long", platform("SimFillDelayMs", "3600001"), "SimFillDelayMs"},
        {"sim clip changed under FIX", fix("SimClipSize", "-5"), "SimClipSize"},
        {"notional negative", platform("MaxOrderNotional", "-1"), "MaxOrderNotional"},
        {"notional text", platform("MaxOrderNotional", "lots"), "MaxOrderNotional"},
        {"notional empty", platform("MaxOrderNotional", ""), ""},
        {"limit shares fraction", limit("MaxOrderShares", "10.5"), "MaxOrderShares"},
        {"limit value negative", limit("MaxOrderValue", "-1"), "MaxOrderValue"},
        {"limit band text", limit("PriceBandPercent", "ten"), "PriceBandPercent"},
        {"limit band off", limit("PriceBandPercent", "0"), ""},
        {"limit repeat empty", limit("RepeatSendSeconds", ""), "RepeatSendSeconds"},
        {"tick table without 0", limit("Table", "1=0.01"), "Table"},
    };
    const GeneralSettings loaded = Good();
    for (const Row& r : rows) {
        GeneralSettings v = loaded;
        r.change(v);
        const auto problem =
            ValidateGeneralSettings(Normalised(v), loaded, destinations, dir.path());
        if (*r.field == '\0') {
            EXPECT_FALSE(problem) << r.name << ": " << problem->message;
        } else {
            ASSERT_TRUE(problem) << r.name;
            EXPECT_EQ(problem->field, r.field) << r.name;
            EXPECT_FALSE(problem->message.empty()) << r.name;
        }
    }
}

TEST_F(GeneralSettingsValidation, AnOldBadValueOfTheOtherPlatformDoesNotBlock) {
    GeneralSettings loaded = Good();
    loaded.platform["FixPort"] = "junk"; // as read from the file, mode SIM
    GeneralSettings v = loaded;
    v.numDecimals = 4;
    EXPECT_FALSE(ValidateGeneralSettings(v, loaded, destinations, dir.path()));
    v.platform["Mode"] = "FIX"; // now it is the platform in use
    const auto problem = ValidateGeneralSettings(v, loaded, destinations, dir.path());
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->field, "FixPort");
}

TEST_F(GeneralSettingsValidation, AnExistingQuickFixFileIsAccepted) {
    WriteFile(dir / "session.cfg", "[DEFAULT]\n");
    GeneralSettings v = Good();
    v.platform["Mode"] = "FIX";
    v.platform["FixSettingsFile"] = "session.cfg";
    EXPECT_FALSE(ValidateGeneralSettings(v, Good(), destinations, dir.path()));
}

TEST_F(GeneralSettingsValidation, WithoutDestinationsAnyNameIsAccepted) {
    GeneralSettings v = Good();
    v.defaultListed = "BATS";
    EXPECT_FALSE(ValidateGeneralSettings(v, Good(), {}, dir.path()));
}

TEST(GeneralSettingsNormalised, TextsAreTrimmedAndUpperCased) {
    GeneralSettings v;
    v.defaultListed = " nyse ";
    v.reserveQuantity = " 200 ";
    v.platform["Mode"] = " fix";
    v.platform["SimHalted"] = "ibm, ,msft ";
    v.platform["FixHost"] = " Broker.Example ";
    const GeneralSettings n = Normalised(v);
    EXPECT_EQ(n.defaultListed, "NYSE");
    EXPECT_EQ(n.reserveQuantity, "200");
    EXPECT_EQ(n.platform.at("Mode"), "FIX");
    EXPECT_EQ(n.platform.at("SimHalted"), "IBM,MSFT");
    EXPECT_EQ(n.platform.at("FixHost"), "Broker.Example");
}

} // namespace
} // namespace wicker
