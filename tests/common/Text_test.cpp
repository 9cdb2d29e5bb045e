#include "common/Text.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using V = std::vector<std::string>;

TEST(Split, KeepsEmptyFieldsAndGivesNothingForEmptyText) {
    EXPECT_EQ(Split("a,b,c", ","), (V{"a", "b", "c"}));
    EXPECT_EQ(Split("a,", ","), (V{"a", ""}));
    EXPECT_EQ(Split(",,", ","), (V{"", "", ""}));
    EXPECT_EQ(Split("", ","), V{});
    EXPECT_EQ(Split("a, b", ","), (V{"a", " b"}));
    EXPECT_EQ(Split("a\r\nb", "\r\n"), (V{"a", "b"}));
}

TEST(Trim, BlanksOnly) {
    EXPECT_EQ(Trim("  x y  "), "x y");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\tx\t"), "\tx\t");
}

TEST(Case, AsciiLettersOnly) {
    EXPECT_EQ(UCase("ibm.b é"), "IBM.B é");
    EXPECT_EQ(LCase("IBM"), "ibm");
}

TEST(Cp1252, RoundTripsEverythingItHas) {
    EXPECT_EQ(Utf8ToCp1252("é"), "\xE9");
    EXPECT_EQ(Utf8ToCp1252("€"), "\x80");
    EXPECT_EQ(Utf8ToCp1252("ABC"), "ABC");
    EXPECT_EQ(Utf8ToCp1252("中"), "?");
    EXPECT_EQ(Utf8ToCp1252("😀"), "?");
    EXPECT_EQ(Utf8ToCp1252("\xFF\xFE"), "??"); // broken UTF-8
    std::string all;
    for (int b = 1; b < 256; ++b) {
        all += static_cast<char>(b);
    }
    EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
    EXPECT_EQ(Cp1252ToUtf8("\x80\x99"), "€™");
}

TEST(Cp1252, RefusesOverlongAndSurrogateForms) {
    struct Row {
        const char* name;
        std::string utf8;
    };
    const Row rows[] = {
        {"overlong line feed", "a\xC0\x8A"
                               "b"},
        {"overlong NUL", "a\xC0\x80"
                         "b"},
        {"three-byte overlong slash", "a\xE0\x80\xAF"
                                      "b"},
        {"four-byte overlong", "a\xF0\x80\x80\xAF"
                               "b"},
        {"surrogate", "a\xED\xA0\x80"
                      "b"},
        {"past U+10FFFF", "a\xF4\x90\x80\x80"
                          "b"},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(Utf8ToCp1252(r.utf8), "a?b") << r.name;
    }
}

} // namespace
} // namespace wicker
