#include "platform/fix/FixOrderMapping.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct OrderTypeTags {
    int refusal = 0;
    std::vector<FixField> fields;
};

OrderTypeTags MapOrderType(int32_t priceType, std::string_view tif, double limitPrice,
                           FixVersion version, const TifProfile& profile) {
    OrderTypeTags out;
    out.refusal = AppendOrderType(out.fields, priceType, tif, limitPrice, version, profile);
    return out;
}

std::string Tags(const std::vector<FixField>& fields) {
    std::string out;
    for (const FixField& f : fields) {
        out += (out.empty() ? "" : " ") + std::to_string(f.tag) + "=" + f.value;
    }
    return out;
}

TEST(FixSide, EverySideCodeTheScreenSends) {
    struct Row {
        const char* name;
        const char* code;
        std::optional<std::string> fix;
    };
    const Row rows[] = {
        {"limit buy", "BUY", "1"}, {"other buy", "B", "1"},   {"sell", "S", "2"},
        {"short", "T", "5"},       {"lower case", "b", {}},   {"empty", "", {}},
        {"buy minus", "M", {}},    {"word sell", "SELL", {}},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(FixSideOf(r.code), r.fix) << r.name;
    }
}

TEST(FixSide, ReportedSidesBackToCodes) {
    struct Row {
        const char* fix;
        std::optional<std::string> code;
    };
    const Row rows[] = {{"1", "B"}, {"2", "S"}, {"5", "T"}, {"6", "T"},
                        {"3", "M"}, {"9", {}},  {"", {}},   {"12", {}}};
    for (const Row& r : rows) {
        EXPECT_EQ(SideCodeOf(r.fix), r.code) << r.fix;
    }
}

TEST(FixVersionText, AcceptedSpellings) {
    EXPECT_EQ(ParseFixVersion("4.2"), FixVersion::Fix42);
    EXPECT_EQ(ParseFixVersion(" fix.4.4 "), FixVersion::Fix44);
    EXPECT_EQ(ParseFixVersion("FIX.4.4"), FixVersion::Fix44);
    EXPECT_EQ(ParseFixVersion("4.3"), std::nullopt);
    EXPECT_EQ(ParseFixVersion(""), std::nullopt);
    EXPECT_EQ(BeginStringOf(FixVersion::Fix42), "FIX.4.2");
    EXPECT_EQ(BeginStringOf(FixVersion::Fix44), "FIX.4.4");
}

// Every price type with every TIF letter the screen produces, in both versions, without a
// broker profile: the platform's own letters have no FIX meaning and are refused (-6).
TEST(FixOrderType, EveryPriceTypeAndTifLetterInBothVersions) {
    struct Row {
        const char* name;
        int32_t priceType;
        const char* tif;
        const char* fix42; // tags, or the refusal code
        const char* fix44;
    };
    const Row rows[] = {
        {"limit day", 5, "D", "40=2 44=10.25 59=0", "40=2 44=10.25 59=0"},
        {"limit gtc", 5, "G", "40=2 44=10.25 59=1", "40=2 44=10.25 59=1"},
        {"limit opg", 5, "O", "40=2 44=10.25 59=2", "40=2 44=10.25 59=2"},
        {"limit ioc", 5, "I", "40=2 44=10.25 59=3", "40=2 44=10.25 59=3"},
        {"limit fok", 5, "F", "40=2 44=10.25 59=4", "40=2 44=10.25 59=4"},
        {"limit gtx", 5, "X", "40=2 44=10.25 59=5", "40=2 44=10.25 59=5"},
        {"market day", 1, "D", "40=1 59=0", "40=1 59=0"},
        {"market gtc", 1, "G", "40=1 59=1", "40=1 59=1"},
        {"market on open", 1, "O", "40=1 59=2", "40=1 59=2"},
        {"market ioc", 1, "I", "40=1 59=3", "40=1 59=3"},
        {"market fok", 1, "F", "40=1 59=4", "40=1 59=4"},
        {"market gtx", 1, "X", "40=1 59=5", "40=1 59=5"},
        {"moc day", 2, "D", "40=5 59=0", "40=1 59=7"},
        {"moc gtc", 2, "G", "40=5 59=1", "40=1 59=7"},
        {"moc ioc", 2, "I", "40=5 59=3", "40=1 59=7"},
        {"limit os", 5, "1", "-6", "-6"},
        {"limit now", 5, "N", "-6", "-6"},
        {"market ext", 1, "E", "-6", "-6"},
        {"market aex", 1, "A", "-6", "-6"},
        {"moc chxp", 2, "C", "-6", "-6"},
        {"unknown letter", 5, "Z", "-6", "-6"},
        {"empty tif", 1, "", "-6", "-6"},
        {"tif as text", 5, "DAY", "-6", "-6"},
        {"price type 0", 0, "D", "-5", "-5"},
        {"price type 3", 3, "D", "-5", "-5"},
        {"price type 4", 4, "D", "-5", "-5"},
        {"price type -1", -1, "D", "-5", "-5"},
        {"price type 6", 6, "D", "-5", "-5"},
    };
    for (const Row& r : rows) {
        for (const FixVersion v : {FixVersion::Fix42, FixVersion::Fix44}) {
            const OrderTypeTags got = MapOrderType(r.priceType, r.tif, 10.25, v, TifProfile{});
            const std::string expected = v == FixVersion::Fix42 ? r.fix42 : r.fix44;
            const std::string text =
                got.refusal != 0 ? std::to_string(got.refusal) : Tags(got.fields);
            EXPECT_EQ(text, expected) << r.name << (v == FixVersion::Fix42 ? " 4.2" : " 4.4");
            if (got.refusal != 0) {
                EXPECT_TRUE(got.fields.empty()) << r.name;
            }
        }
    }
}

TEST(FixOrderType, BrokerProfileCarriesThePlatformLettersAndMayReplaceStandardOnes) {
    TifProfile p;
    p.letters["N"] = {{59, "3"}};
    p.letters["E"] = {{59, "0"}, {9416, "Y"}};
    p.letters["1"] = {{9417, "OS"}}; // no TimeInForce at all: the broker's default
    p.letters["X"] = {{59, "6"}, {432, "20991231"}};
    struct Row {
        const char* name;
        int32_t priceType;
        const char* tif;
        FixVersion version;
        const char* tags;
    };
    const Row rows[] = {
        {"now", 5, "N", FixVersion::Fix42, "40=2 44=10.25 59=3"},
        {"ext", 1, "E", FixVersion::Fix42, "40=1 59=0 9416=Y"},
        {"os", 5, "1", FixVersion::Fix44, "40=2 44=10.25 9417=OS"},
        {"gtx replaced", 5, "X", FixVersion::Fix42, "40=2 44=10.25 59=6 432=20991231"},
        {"moc 4.4 keeps extra tags", 2, "E", FixVersion::Fix44, "40=1 59=7 9416=Y"},
        {"moc 4.4 adds tif", 2, "1", FixVersion::Fix44, "40=1 9417=OS 59=7"},
        {"moc 4.2", 2, "E", FixVersion::Fix42, "40=5 59=0 9416=Y"},
        {"day unchanged", 1, "D", FixVersion::Fix44, "40=1 59=0"},
    };
    for (const Row& r : rows) {
        const OrderTypeTags got = MapOrderType(r.priceType, r.tif, 10.25, r.version, p);
        EXPECT_EQ(got.refusal, 0) << r.name;
        EXPECT_EQ(Tags(got.fields), r.tags) << r.name;
    }
    EXPECT_EQ(MapOrderType(1, "A", 0, FixVersion::Fix42, p).refusal, -6) << "AEX not in profile";
    EXPECT_EQ(MapOrderType(1, "C", 0, FixVersion::Fix44, p).refusal, -6) << "CHXP not in profile";
}

TEST(FixOrderType, LimitPriceMustBeANumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(MapOrderType(5, "D", nan, FixVersion::Fix42, {}).refusal, -5);
    EXPECT_EQ(MapOrderType(5, "D", inf, FixVersion::Fix44, {}).refusal, -5);
    // A market order carries no price, so its (unused) price does not matter.
    EXPECT_EQ(MapOrderType(1, "D", nan, FixVersion::Fix42, {}).refusal, 0);
}

TEST(FixTifNames, LettersAndSettingNamesBothWays) {
    const std::pair<const char*, const char*> rows[] = {
        {"D", "DAY"}, {"G", "GTC"}, {"O", "OPG"}, {"I", "IOC"}, {"F", "FOK"},  {"X", "GTX"},
        {"1", "OS"},  {"N", "NOW"}, {"E", "EXT"}, {"A", "AEX"}, {"C", "CHXP"},
    };
    for (const auto& [letter, name] : rows) {
        EXPECT_EQ(TifNameOf(letter), name);
        EXPECT_EQ(TifLetterOf(name), letter);
    }
    EXPECT_EQ(TifNameOf("Z"), "");
    EXPECT_EQ(TifLetterOf("day"), "");
}

TEST(FixTifNames, ProfileEntryText) {
    struct Row {
        const char* text;
        std::optional<std::string> tags;
    };
    const Row rows[] = {
        {"59=3", "59=3"},
        {" 59=0 ; 9416=Y ", "59=0 9416=Y"},
        {"59=0;", "59=0"},
        {"", {}},
        {";", {}},
        {"59", {}},
        {"=3", {}},
        {"x=3", {}},
        {"0=3", {}},
        {"-59=3", {}},
        {"59=", {}},
        {"59=3;abc", {}},
        {"59=3\x01"
         "10=1",
         {}},
    };
    for (const Row& r : rows) {
        const auto got = ParseTifTags(r.text);
        EXPECT_EQ(got ? std::optional<std::string>(Tags(*got)) : std::nullopt, r.tags)
            << '"' << r.text << '"';
    }
}

TEST(FixPrice, PlainDecimalText) {
    const std::pair<double, const char*> rows[] = {
        {10.25, "10.25"},   {10.0, "10"},
        {0.0001, "0.0001"}, {1e-9, "0"},
        {-0.0, "0"},        {123456789.5, "123456789.5"},
        {0.1 + 0.2, "0.3"}, {1e20, "100000000000000000000"},
    };
    for (const auto& [value, text] : rows) {
        EXPECT_EQ(FormatFixPrice(value), text) << value;
    }
}

} // namespace
} // namespace wicker
