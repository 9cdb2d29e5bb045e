#include "platform/fix/FixPlatformSettings.h"
#include "support/TempDir.h"

#include <map>

#include <gtest/gtest.h>

namespace wicker {
namespace {

Result<FixPlatformSettings> Read(const std::map<std::string, std::string>& keys) {
    return ReadFixPlatformSettings([&](std::string_view name) -> std::optional<std::string> {
        const auto it = keys.find(std::string(name));
        return it == keys.end() ? std::nullopt : std::optional(it->second);
    });
}

TEST(FixPlatformSettings, DefaultsWithNoKeys) {
    const Result<FixPlatformSettings> s = Read({});
    ASSERT_TRUE(s.ok()) << s.error().message;
    EXPECT_EQ(s->host, "127.0.0.1");
    EXPECT_EQ(s->port, DefaultFixPort);
    EXPECT_EQ(s->senderCompID, "WICKER");
    EXPECT_EQ(s->targetCompID, "EXCH");
    EXPECT_EQ(s->version, FixVersion::Fix42);
    EXPECT_EQ(s->heartBtInt, 30);
    EXPECT_EQ(s->handlInst, "1");
    EXPECT_EQ(s->memoTag, 0);
    EXPECT_EQ(s->quotes, FixQuoteSource::Fix);
    EXPECT_EQ(s->sendWindow, 1000);
    EXPECT_FALSE(s->resetOnLogon);
    EXPECT_TRUE(s->tifProfile.letters.empty());
}

TEST(FixPlatformSettings, EveryKeyRead) {
    const Result<FixPlatformSettings> s = Read({
        {"FixHost", " broker.example "},
        {"FixPort", "5001"},
        {"FixSenderCompID", "ME"},
        {"FixTargetCompID", "THEM"},
        {"FixVersion", "4.4"},
        {"FixHeartBtInt", "15"},
        {"FixReconnectInterval", "2"},
        {"FixSettingsFile", "quickfix.cfg"},
        {"FixResetOnLogon", "1"},
        {"FixHandlInst", "2"},
        {"FixMemoTag", "58"},
        {"FixQuotes", "none"},
        {"FixSendWindow", "50"},
        {"FixTifNOW", "59=3"},
        {"FixTifEXT", "59=0;9416=Y"},
        {"FixTifGTX", ""},
    });
    ASSERT_TRUE(s.ok()) << s.error().message;
    EXPECT_EQ(s->host, "broker.example");
    EXPECT_EQ(s->port, 5001);
    EXPECT_EQ(s->senderCompID, "ME");
    EXPECT_EQ(s->targetCompID, "THEM");
    EXPECT_EQ(s->version, FixVersion::Fix44);
    EXPECT_EQ(s->heartBtInt, 15);
    EXPECT_EQ(s->reconnectInterval, 2);
    EXPECT_EQ(s->settingsFile, "quickfix.cfg");
    EXPECT_TRUE(s->resetOnLogon);
    EXPECT_EQ(s->handlInst, "2");
    EXPECT_EQ(s->memoTag, 58);
    EXPECT_EQ(s->quotes, FixQuoteSource::None);
    EXPECT_EQ(s->sendWindow, 50);
    ASSERT_EQ(s->tifProfile.letters.size(), 2u);
    EXPECT_EQ(s->tifProfile.letters.at("N").at(0).value, "3");
    EXPECT_EQ(s->tifProfile.letters.at("E").at(1).tag, 9416);
}

TEST(FixPlatformSettings, UnusableValuesNameTheirKey) {
    struct Row {
        const char* key;
        const char* value;
    };
    const Row rows[] = {
        {"FixPort", "0"},          {"FixPort", "70000"},     {"FixPort", "abc"},
        {"FixPort", "5001.5"},     {"FixHeartBtInt", "-1"},  {"FixVersion", "4.3"},
        {"FixVersion", "FIX.5.0"}, {"FixResetOnLogon", "Y"}, {"FixHandlInst", "4"},
        {"FixQuotes", "sim"},      {"FixSendWindow", "0"},   {"FixMemoTag", "-58"},
        {"FixTifNOW", "IOC"},      {"FixTifOS", "59="},      {"FixTifCHXP", "x=1"},
    };
    for (const Row& r : rows) {
        const Result<FixPlatformSettings> s = Read({{r.key, r.value}});
        ASSERT_FALSE(s.ok()) << r.key << "=" << r.value;
        EXPECT_NE(s.error().message.find(std::string("\"") + r.key + "\""), std::string::npos)
            << s.error().message;
    }
}

TEST(FixPlatformSettings, ReadFromTheSettingsFile) {
    test::TempDir dir;
    test::WriteFile(dir / "basket.ini", "[General]\r\nFixPort=1\r\n"
                                        "[Platform]\r\nMode=FIX\r\nfixport=5001\r\n"
                                        "FixVersion=4.4\r\nFixTifNOW=59=3\r\n");
    const Result<FixPlatformSettings> s = ReadFixPlatformSettings(dir / "basket.ini");
    ASSERT_TRUE(s.ok()) << s.error().message;
    EXPECT_EQ(s->port, 5001) << "names compare without case; other sections do not count";
    EXPECT_EQ(s->version, FixVersion::Fix44);
    EXPECT_EQ(s->tifProfile.letters.at("N").at(0).value, "3");
    EXPECT_EQ(s->host, "127.0.0.1");

    const Result<FixPlatformSettings> none = ReadFixPlatformSettings(dir / "missing.ini");
    ASSERT_TRUE(none.ok());
    EXPECT_EQ(none->port, DefaultFixPort);

    test::WriteFile(dir / "bad.ini", "[Platform]\r\nFixPort=ninety\r\n");
    EXPECT_FALSE(ReadFixPlatformSettings(dir / "bad.ini").ok());
}

} // namespace
} // namespace wicker
