#include "platform/PlatformSettings.h"
#include "support/TempDir.h"

#include <map>

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

// Section "Platform" as a map: a key that is not in it is absent.
PlatformKeyReader Keys(std::map<std::string, std::string> values) {
    return [values = std::move(values)](std::string_view name) -> std::optional<std::string> {
        const auto it = values.find(std::string(name));
        if (it == values.end()) {
            return std::nullopt;
        }
        return it->second;
    };
}

TEST(PlatformSettings, NothingSetMeansTheSimulatorWithNoLimits) {
    const PlatformSettings s = ReadPlatformSettings(Keys({}));
    EXPECT_EQ(s.mode, PlatformMode::Sim);
    EXPECT_TRUE(s.messages.empty());
    EXPECT_TRUE(s.sim.halted.empty());
    EXPECT_TRUE(s.sim.limits.enabledDestinations.empty());
    EXPECT_EQ(s.sim.limits.maxOrderNotional, 0);
}

TEST(PlatformSettings, ReadsEveryKnob) {
    const PlatformSettings s = ReadPlatformSettings(Keys({
        {"Mode", " fix "},
        {"SimSeed", "18446744073709551615"},
        {"SimUpdatesPerSecond", "0.5"},
        {"SimFillDelayMs", "0"},
        {"SimClipSize", "250"},
        {"SimHalted", "ibm, MSFT,,  "},
        {"EnabledDestinations", "nasdaq,ARCA"},
        {"MaxOrderNotional", "250000"},
    }));
    EXPECT_TRUE(s.messages.empty()) << s.messages.front();
    EXPECT_EQ(s.mode, PlatformMode::Fix);
    EXPECT_EQ(s.sim.seed, UINT64_MAX);
    EXPECT_EQ(s.sim.updatesPerSecond, 0.5);
    EXPECT_EQ(s.sim.fillDelayMs, 0);
    EXPECT_EQ(s.sim.clipSize, 250);
    EXPECT_EQ(s.sim.halted, (std::set<std::string>{"IBM", "MSFT"}));
    EXPECT_EQ(s.sim.limits.enabledDestinations, (std::set<std::string>{"NASDAQ", "ARCA"}));
    EXPECT_EQ(s.sim.limits.maxOrderNotional, 250000);
}

struct BadRow {
    const char* name;
    const char* key;
    const char* value;
    const char* message; // the whole line the user sees
};

class PlatformSettingsBadValue : public ::testing::TestWithParam<BadRow> {};

TEST_P(PlatformSettingsBadValue, KeepsTheDefaultAndSaysSo) {
    const PlatformSettings s = ReadPlatformSettings(Keys({{GetParam().key, GetParam().value}}));
    ASSERT_EQ(s.messages.size(), 1u);
    EXPECT_EQ(s.messages[0], GetParam().message);
    const PlatformSettings defaults;
    EXPECT_EQ(s.mode, defaults.mode);
    EXPECT_EQ(s.sim.seed, defaults.sim.seed);
    EXPECT_EQ(s.sim.updatesPerSecond, defaults.sim.updatesPerSecond);
    EXPECT_EQ(s.sim.fillDelayMs, defaults.sim.fillDelayMs);
    EXPECT_EQ(s.sim.clipSize, defaults.sim.clipSize);
    EXPECT_EQ(s.sim.limits.maxOrderNotional, 0);
}

const BadRow kBadRows[] = {
    {"UnknownMode", "Mode", "FXI",
     "Setting \"Mode\" in section \"Platform\" of basket.ini must be SIM or FIX, not \"FXI\"; "
     "using SIM."},
    {"NegativeSeed", "SimSeed", "-1",
     "Setting \"SimSeed\" in section \"Platform\" of basket.ini must be a whole number of 0 or "
     "more, not \"-1\"; using 1."},
    {"SeedTooBig", "SimSeed", "18446744073709551616",
     "Setting \"SimSeed\" in section \"Platform\" of basket.ini must be a whole number of 0 or "
     "more, not \"18446744073709551616\"; using 1."},
    {"RateText", "SimUpdatesPerSecond", "fast",
     "Setting \"SimUpdatesPerSecond\" in section \"Platform\" of basket.ini must be a number of "
     "quote updates per symbol from 0.01 to 1000, not \"fast\"; using 4."},
    {"RateZero", "SimUpdatesPerSecond", "0",
     "Setting \"SimUpdatesPerSecond\" in section \"Platform\" of basket.ini must be a number of "
     "quote updates per symbol from 0.01 to 1000, not \"0\"; using 4."},
    {"RateNotANumber", "SimUpdatesPerSecond", "nan",
     "Setting \"SimUpdatesPerSecond\" in section \"Platform\" of basket.ini must be a number of "
     "quote updates per symbol from 0.01 to 1000, not \"nan\"; using 4."},
    {"DelayWithUnit", "SimFillDelayMs", "500ms",
     "Setting \"SimFillDelayMs\" in section \"Platform\" of basket.ini must be milliseconds from "
     "0 to 3600000, not \"500ms\"; using 3000."},
    {"DelayTooLong", "SimFillDelayMs", "3600001",
     "Setting \"SimFillDelayMs\" in section \"Platform\" of basket.ini must be milliseconds from "
     "0 to 3600000, not \"3600001\"; using 3000."},
    {"ClipNegative", "SimClipSize", "-100",
     "Setting \"SimClipSize\" in section \"Platform\" of basket.ini must be a number of shares "
     "from 0 (no clips) to 1000000000, not \"-100\"; using 1000."},
    {"ClipFraction", "SimClipSize", "1.5",
     "Setting \"SimClipSize\" in section \"Platform\" of basket.ini must be a number of shares "
     "from 0 (no clips) to 1000000000, not \"1.5\"; using 1000."},
    {"Notional", "MaxOrderNotional", "lots",
     "The setting MaxOrderNotional in section Platform of basket.ini must be a dollar amount of 0 "
     "or more (0 = no limit), not \"lots\". The simulator runs without an exposure limit."},
};

INSTANTIATE_TEST_SUITE_P(Rows, PlatformSettingsBadValue, ::testing::ValuesIn(kBadRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PlatformSettings, EveryBadValueIsReportedAndTheGoodOnesStillCount) {
    const PlatformSettings s = ReadPlatformSettings(Keys({
        {"Mode", "paper"},
        {"SimSeed", "x"},
        {"SimClipSize", "500"},
        {"EnabledDestinations", "ARCA"},
        {"MaxOrderNotional", "-5"},
    }));
    EXPECT_EQ(s.messages.size(), 3u);
    EXPECT_EQ(s.mode, PlatformMode::Sim);
    EXPECT_EQ(s.sim.clipSize, 500);
    EXPECT_EQ(s.sim.limits.enabledDestinations, (std::set<std::string>{"ARCA"}));
}

TEST(PlatformSettings, ReadsSectionPlatformOfTheSettingsFile) {
    TempDir dir;
    WriteFile(dir / "basket.ini", "[General]\r\nMode=FIX\r\n[Platform]\r\nMode=FIX\r\n"
                                  "SimSeed=99\r\nSimHalted=ABC\r\n");
    const PlatformSettings s = ReadPlatformSettings(dir / "basket.ini");
    EXPECT_TRUE(s.messages.empty());
    EXPECT_EQ(s.mode, PlatformMode::Fix);
    EXPECT_EQ(s.sim.seed, 99u);
    EXPECT_EQ(s.sim.halted, (std::set<std::string>{"ABC"}));
}

TEST(PlatformSettings, AMissingFileMeansTheDefaults) {
    TempDir dir;
    const PlatformSettings s = ReadPlatformSettings(dir / "basket.ini");
    EXPECT_TRUE(s.messages.empty());
    EXPECT_EQ(s.mode, PlatformMode::Sim);
}

} // namespace
} // namespace wicker::test
