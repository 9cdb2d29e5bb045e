#include "baskets/BasketFileReader.h"
#include "common/RuntimeError.h"
#include "support/TempDir.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::TempDir;
using test::WriteFile;

std::vector<std::string> Symbols(const std::filesystem::path& p) {
    BasketFileReader reader(p);
    std::vector<std::string> out;
    BasketFileLine line;
    while (reader.next(line)) {
        out.push_back(line.fields.symbol + "|" + line.fields.quantity);
    }
    return out;
}

struct ReadCase {
    const char* name;
    std::string bytes;
    std::vector<std::string> expected;
};

class BasketFileReaderLines : public testing::TestWithParam<ReadCase> {};

TEST_P(BasketFileReaderLines, SplitsLinesLikeTheTextReader) {
    TempDir dir;
    WriteFile(dir / "b.txt", GetParam().bytes);
    EXPECT_EQ(Symbols(dir / "b.txt"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Files, BasketFileReaderLines,
    testing::Values(ReadCase{"CrLf", "A,1\r\nB,2\r\n", {"A|1", "B|2"}},
                    ReadCase{"Lf", "A,1\nB,2\n", {"A|1", "B|2"}},
                    ReadCase{"LastLineWithoutBreak", "A,1\r\nB,2", {"A|1", "B|2"}},
                    ReadCase{"EmptyLineInside", "A,1\r\n\r\nB,2\r\n", {"A|1", "|", "B|2"}},
                    ReadCase{"LoneCrStays", "A\rX,1\r\n", {"A\rX|1"}},
                    ReadCase{"CrAtEndOfFileStays", "A,1\r", {"A|1\r"}},
                    ReadCase{"EmptyFile", "", {}}, ReadCase{"OnlyBreak", "\r\n", {"|"}},
                    ReadCase{"Windows1252", "\xC9TE,1\r\n", {"\xC3\x89TE|1"}},
                    ReadCase{"Utf8BomSkipped", "\xEF\xBB\xBFIBM,1\r\n", {"IBM|1"}},
                    ReadCase{"OnlyBom", "\xEF\xBB\xBF", {}},
                    ReadCase{"ShorterThanBom", "A", {"A|"}},
                    ReadCase{"BomLaterIsText",
                             "A,1\r\n\xEF\xBB\xBF"
                             "B,2\r\n",
                             {"A|1", "\xC3\xAF\xC2\xBB\xC2\xBF"
                                     "B|2"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(BasketFileReaderTest, OnlyRegularFilesOpen) {
    TempDir dir;
    struct Row {
        const char* name;
        std::filesystem::path path;
        int number;
    };
    const Row rows[] = {{"missing", dir / "none.txt", 53},
                        {"a folder", dir.path(), 75},
                        {"a device that never ends", "/dev/zero", 75}};
    for (const Row& r : rows) {
        try {
            BasketFileReader reader(r.path);
            ADD_FAILURE() << r.name << ": no error";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), r.number) << r.name;
        }
    }
}

TEST(BasketFileReaderTest, StopsWithAClearErrorPastTheSizeLimit) {
    TempDir dir;
    WriteFile(dir / "b.txt", std::string(1100 * 1024, 'A') + "\r\n");
    BasketFileReader reader(dir / "b.txt", BasketFileReader::kMaxFieldBytes, 1024 * 1024);
    BasketFileLine line;
    try {
        reader.next(line);
        FAIL() << "no error";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()),
                  "The file is larger than 1 MB; no basket file is that large.");
    }
}

TEST(BasketFileReaderTest, NumbersLinesAndCountsBytes) {
    TempDir dir;
    const std::string bytes = "A,1\r\nB,2\r\nC,3";
    WriteFile(dir / "b.txt", bytes);
    BasketFileReader reader(dir / "b.txt");
    EXPECT_EQ(reader.totalBytes(), bytes.size());
    BasketFileLine line;
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line.number, 1u);
    EXPECT_EQ(reader.bytesRead(), 5u);
    ASSERT_TRUE(reader.next(line));
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line.number, 3u);
    EXPECT_EQ(line.fields.symbol, "C");
    EXPECT_FALSE(reader.next(line));
    EXPECT_EQ(reader.bytesRead(), bytes.size());
}

TEST(BasketFileReaderTest, LineLongerThanTheBufferIsReadWholeAndCut) {
    TempDir dir;
    const std::string longSymbol(200000, 'Q');
    WriteFile(dir / "b.txt", longSymbol + ",5,NYSE\r\nOK,1,ARCA\r\n");
    BasketFileReader reader(dir / "b.txt", 100);
    BasketFileLine line;
    ASSERT_TRUE(reader.next(line));
    EXPECT_TRUE(line.overlong);
    EXPECT_EQ(line.fields.symbol, std::string(100, 'Q'));
    EXPECT_EQ(line.fields.quantity, "5");
    ASSERT_TRUE(reader.next(line));
    EXPECT_FALSE(line.overlong);
    EXPECT_EQ(line.fields.destination, "ARCA");
}

} // namespace
} // namespace wicker
