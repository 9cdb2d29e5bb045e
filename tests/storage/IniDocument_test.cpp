#include "storage/IniDocument.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

IniDocument Parsed(std::string_view bytes) {
    auto doc = IniDocument::Parse(bytes);
    EXPECT_TRUE(doc.ok());
    return doc ? std::move(doc).value() : IniDocument();
}

struct GetRow {
    const char* name;
    std::string file;
    const char* section;
    const char* key;
    std::optional<std::string> want;
};

TEST(IniDocumentGet, ReadsAsWindowsDoes) {
    const GetRow rows[] = {
        {"plain", "[A]\r\nk=v\r\n", "A", "k", "v"},
        {"names without case", "[Sequence]\nBasketNum=1\n", "sEQUENCE", "basketnum", "1"},
        {"blanks around names and value", "  [ A ]  \n  k  = \t v w \t\n", "A", " k ", "v w"},
        {"quotes dropped after trimming", "[A]\nk= \"  x \" \n", "A", "k", "  x "},
        {"single quotes dropped", "[A]\nk='x'\n", "A", "k", "x"},
        {"unmatched quotes kept", "[A]\nk=\"x'\n", "A", "k", "\"x'"},
        {"a lone quote kept", "[A]\nk=\"\n", "A", "k", "\""},
        {"equals sign in value", "[A]\nk=a=b\n", "A", "k", "a=b"},
        {"empty value is not missing", "[A]\nk=\n", "A", "k", ""},
        {"first of two keys", "[A]\nk=1\nK=2\n", "A", "k", "1"},
        {"first of two sections", "[A]\nk=1\n[a]\nk=2\nj=3\n", "A", "k", "1"},
        {"second section not searched", "[A]\nk=1\n[a]\nk=2\nj=3\n", "A", "j", std::nullopt},
        {"comment is no key", "[A]\n;k=1\n", "A", ";k", std::nullopt},
        {"key before any section", "k=1\n[A]\n", "A", "k", std::nullopt},
        {"missing section", "[A]\nk=1\n", "B", "k", std::nullopt},
        {"missing key", "[A]\nk=1\n", "A", "j", std::nullopt},
        {"empty key name", "[A]\n=5\n", "A", "", std::nullopt},
        {"last line without break", "[A]\nk=1", "A", "k", "1"},
        {"CR of an unbroken last line", "[A]\nk=1\r", "A", "k", "1"},
        {"text after the bracket", "[A] ; note\nk=1\n", "A", "k", "1"},
        {"unclosed bracket is junk", "[A]\n[B\nk=1\n", "A", "k", "1"},
        {"line with NUL is damage", std::string("[A]\nk=1\0\n", 8), "A", "k", std::nullopt},
        {"Windows-1252 bytes", "[A]\nk=caf\xE9 \x80\n", "A", "k", "caf\xC3\xA9 \xE2\x82\xAC"},
        {"UTF-8 file with mark", "\xEF\xBB\xBF[A]\nk=caf\xC3\xA9\n", "A", "k", "caf\xC3\xA9"},
        {"non-ASCII names", "[Caf\xE9]\nk=1\n", "Caf\xC3\xA9", "k", "1"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Parsed(row.file).Get(row.section, row.key), row.want) << row.name;
    }
}

TEST(IniDocumentNames, FileOrderEachOnceWithoutCommentsOrJunk) {
    const IniDocument doc = Parsed("k=0\n[B]\nz=1\n; c=2\njunk\na=3\nZ=4\n=5\n[]\nx=6\n"
                                   "[A]\nq=7\n[b]\ny=8\n");
    EXPECT_EQ(doc.SectionNames(), (Strings{"B", "A"}));
    EXPECT_EQ(doc.KeyNames("b"), (Strings{"z", "a"}));
    EXPECT_TRUE(doc.KeyNames("missing").empty());
    EXPECT_TRUE(doc.HasSection(" a "));
    EXPECT_FALSE(doc.HasSection(""));
}

TEST(IniDocumentText, UnknownLinesSurviveAndLinesEndCrLf) {
    const std::string file = "; header\r\nk=before sections\r\n[A]\r\n  k = v \r\njunk\r\n\r\n"
                             "[B\r\n\tindented=1\r\n";
    EXPECT_EQ(Parsed(file).Serialize(), file);
    EXPECT_EQ(Parsed("[A]\nk=1\n\n").Serialize(), "[A]\r\nk=1\r\n\r\n");
    EXPECT_EQ(Parsed("").Serialize(), "");
    EXPECT_EQ(Parsed("\xEF\xBB\xBF[A]\n").Serialize(), "\xEF\xBB\xBF[A]\r\n");
}

TEST(IniDocumentText, Utf16IsRefused) {
    EXPECT_FALSE(IniDocument::Parse(std::string_view("\xFF\xFE[\0A\0]\0", 8)).ok());
    EXPECT_FALSE(IniDocument::Parse(std::string_view("\xFE\xFF\0[\0A\0]", 8)).ok());
}

struct SetRow {
    const char* name;
    std::string before;
    const char* section;
    const char* key;
    const char* value;
    std::string after;
};

TEST(IniDocumentSet, PlacesLinesWhereAPersonWould) {
    const SetRow rows[] = {
        {"new file", "", "A", "k", "v", "[A]\r\nk=v\r\n"},
        {"new section after a blank line", "[A]\r\nk=1\r\n", "B", "j", "2",
         "[A]\r\nk=1\r\n\r\n[B]\r\nj=2\r\n"},
        {"no second blank line", "[A]\r\nk=1\r\n\r\n", "B", "j", "2",
         "[A]\r\nk=1\r\n\r\n[B]\r\nj=2\r\n"},
        {"key keeps the file's spelling", "[Seq]\r\n BasketNum = 7 \r\n", "seq", "BASKETNUM", "9",
         "[Seq]\r\nBasketNum=9\r\n"},
        {"new key after the last setting", "[A]\r\nk=1\r\n\r\n; about B\r\n[B]\r\n", "A", "j", "2",
         "[A]\r\nk=1\r\nj=2\r\n\r\n; about B\r\n[B]\r\n"},
        {"new key in a section without keys", "[A]\r\n; note\r\n[B]\r\n", "A", "k", "1",
         "[A]\r\nk=1\r\n; note\r\n[B]\r\n"},
        {"first of two keys", "[A]\r\nk=1\r\nk=2\r\n", "A", "k", "3", "[A]\r\nk=3\r\nk=2\r\n"},
        {"first of two sections", "[A]\r\n[B]\r\n[A]\r\nk=1\r\n", "A", "k", "2",
         "[A]\r\nk=2\r\n[B]\r\n[A]\r\nk=1\r\n"},
        {"names trimmed", "", " A ", " k ", " v ", "[A]\r\nk= v \r\n"},
        {"Windows-1252 on disk", "", "A", "k", "caf\xC3\xA9", "[A]\r\nk=caf\xE9\r\n"},
        {"UTF-8 kept in a marked file", "\xEF\xBB\xBF", "A", "k", "caf\xC3\xA9",
         "\xEF\xBB\xBF[A]\r\nk=caf\xC3\xA9\r\n"},
    };
    for (const auto& row : rows) {
        IniDocument doc = Parsed(row.before);
        EXPECT_TRUE(doc.Set(row.section, row.key, row.value)) << row.name;
        EXPECT_EQ(doc.Serialize(), row.after) << row.name;
    }
}

TEST(IniDocumentSet, RefusesWhatWouldBreakTheFile) {
    const std::tuple<const char*, std::string, std::string, std::string> rows[] = {
        {"blank section", " ", "k", "v"},
        {"bracket in section", "A]", "k", "v"},
        {"line break in section", "A\nB", "k", "v"},
        {"blank key", "A", " ", "v"},
        {"equals in key", "A", "k=x", "v"},
        {"key like a section", "A", "[B]", "v"},
        {"key like a comment", "A", ";k", "v"},
        {"LF in value", "A", "k", "a\nb=1"},
        {"CR in value", "A", "k", "a\rb"},
        {"NUL in value", "A", "k", std::string("a\0b", 3)},
    };
    const std::string before = "[A]\r\nk=1\r\n";
    for (const auto& [name, section, key, value] : rows) {
        IniDocument doc = Parsed(before);
        EXPECT_FALSE(doc.Set(section, key, value)) << name;
        EXPECT_EQ(doc.Serialize(), before) << name;
    }
}

TEST(IniDocumentSet, MalformedUtf8NeverBecomesALineBreak) {
    // Overlong forms of LF and NUL: whatever the conversion makes of them, no second key
    // and no damaged line may appear.
    IniDocument doc;
    doc.Set("A", "k",
            "x\xC0\x8A"
            "b=1");
    doc.Set("A", "k\xC0\x80", "1");
    doc.Set("A\xE0\x80\x8A", "k", "1");
    EXPECT_FALSE(doc.Get("A", "b").has_value());
    const std::string text = doc.Serialize();
    EXPECT_EQ(text.find('\0'), std::string::npos);
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
        EXPECT_EQ(text[at - 1], '\r');
    }
}

TEST(IniDocumentRemove, KeyGoesEverywhereItCounts) {
    IniDocument doc = Parsed("[A]\r\nk=1\r\n; k=c\r\nK = 2\r\nj=3\r\n[a]\r\nk=4\r\n[B]\r\nk=5\r\n");
    EXPECT_TRUE(doc.RemoveKey("a", "K"));
    EXPECT_EQ(doc.Serialize(), "[A]\r\n; k=c\r\nj=3\r\n[a]\r\n[B]\r\nk=5\r\n");
    EXPECT_FALSE(doc.RemoveKey("A", "k"));
    EXPECT_FALSE(doc.RemoveKey("C", "k"));
}

TEST(IniDocumentRemove, SectionGoesWithEveryCopyAndItsLines) {
    IniDocument doc =
        Parsed("; top\r\n[A]\r\nk=1\r\n\r\n[B]\r\nj=2\r\n; about A\r\n[a]\r\nk=3\r\n");
    EXPECT_TRUE(doc.RemoveSection("A"));
    EXPECT_EQ(doc.Serialize(), "; top\r\n[B]\r\nj=2\r\n; about A\r\n");
    EXPECT_FALSE(doc.HasSection("a"));
    EXPECT_FALSE(doc.RemoveSection("A"));
}

} // namespace
} // namespace wicker
