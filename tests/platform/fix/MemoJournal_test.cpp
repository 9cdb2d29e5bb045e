#include "platform/fix/MemoJournal.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

TEST(MemoJournal, EntriesSurviveReopening) {
    test::TempDir dir;
    const auto file = dir / "fix/memos.txt";
    {
        Result<MemoJournal> j = MemoJournal::Open(file);
        ASSERT_TRUE(j.ok()) << j.error().message;
        j.value().append("A-20240315-57-1", "Tech10-57-/bskt");
        j.value().append("A-20240315-57-2", "Tech10-57-/bskt");
        EXPECT_TRUE(j.value().flush());
        EXPECT_EQ(MemoJournal::Read(file).size(), 2u) << "on file once flushed";
    }
    {
        Result<MemoJournal> j = MemoJournal::Open(file);
        ASSERT_TRUE(j.ok());
        j.value().append("A-20240315-58-1", "Bio-58-/bskt");
    }
    EXPECT_EQ(MemoJournal::Read(file), (Entries{{"A-20240315-57-1", "Tech10-57-/bskt"},
                                                {"A-20240315-57-2", "Tech10-57-/bskt"},
                                                {"A-20240315-58-1", "Bio-58-/bskt"}}));
}

TEST(MemoJournal, BrokenAndForeignLinesAreSkipped) {
    test::TempDir dir;
    const auto file = dir / "memos.txt";
    test::WriteFile(file, "A-1\tM-1-/bskt\r\n"
                          "no tab here\n"
                          "\tmemo without id\n"
                          "A-2\t\n"
                          "A-3\tM-3-/bs"); // cut short by a crash
    EXPECT_EQ(MemoJournal::Read(file), (Entries{{"A-1", "M-1-/bskt"}, {"A-2", ""}}));
    EXPECT_TRUE(MemoJournal::Read(dir / "missing.txt").empty());
    // The next run's first entry is not swallowed by the line the crash cut short.
    {
        Result<MemoJournal> j = MemoJournal::Open(file);
        ASSERT_TRUE(j.ok());
        j.value().append("A-4", "M-4-/bskt");
    }
    EXPECT_EQ(MemoJournal::Read(file),
              (Entries{{"A-1", "M-1-/bskt"}, {"A-2", ""}, {"A-4", "M-4-/bskt"}}));
}

TEST(MemoJournal, SeparatorsInsideTextCannotSplitALine) {
    test::TempDir dir;
    const auto file = dir / "memos.txt";
    Result<MemoJournal> j = MemoJournal::Open(file);
    ASSERT_TRUE(j.ok());
    j.value().append("A\t1", "two\nlines\r-/bskt");
    ASSERT_TRUE(j.value().flush());
    EXPECT_EQ(MemoJournal::Read(file), (Entries{{"A 1", "two lines -/bskt"}}));
}

TEST(MemoJournal, UnwritableFolderIsAnError) {
    test::TempDir dir;
    test::WriteFile(dir / "file", "x");
    const Result<MemoJournal> j = MemoJournal::Open(dir / "file" / "memos.txt");
    ASSERT_FALSE(j.ok());
    EXPECT_NE(j.error().message.find("memo journal"), std::string::npos);
}

} // namespace
} // namespace wicker
