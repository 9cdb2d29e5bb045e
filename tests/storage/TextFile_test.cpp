#include "common/RuntimeError.h"
#include "storage/TextFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

TEST(ReadTextLines, LineEndsAndEncoding) {
    test::TempDir d;
    const std::pair<const char*, Strings> cases[] = {
        {"", Strings{}},
        {"a", Strings{"a"}},
        {"a\r\nb\r\n", Strings{"a", "b"}},
        {"a\nb", Strings{"a", "b"}},
        {"a\r\n\r\nb", Strings{"a", "", "b"}},
        {"a\rb\n", Strings{"a\rb"}},
        {"caf\xE9\r\n", Strings{"café"}},
    };
    for (const auto& [bytes, lines] : cases) {
        test::WriteFile(d / "f.txt", bytes);
        EXPECT_EQ(ReadTextLines(d / "f.txt"), lines) << bytes;
    }
}

TEST(ReadTextLines, MissingFileIsError53) {
    test::TempDir d;
    try {
        ReadTextLines(d / "nope.txt");
        FAIL();
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::FileNotFound);
    }
    EXPECT_THROW(ReadTextLines(d.path()), RuntimeError); // a folder
}

TEST(WriteTextLines, CrLfWindows1252AndReplace) {
    test::TempDir d;
    test::WriteFile(d / "out.txt", "old content that is longer");
    WriteTextLines(d / "out.txt", {"café,1", "€"});
    EXPECT_EQ(test::ReadFile(d / "out.txt"), "caf\xE9,1\r\n\x80\r\n");
    EXPECT_EQ(ReadTextLines(d / "out.txt"), (Strings{"café,1", "€"}));
    EXPECT_THROW(WriteTextLines(d / "no-such-folder" / "x.txt", {"a"}), RuntimeError);
}

} // namespace
} // namespace wicker
