#include "storage/BasketDatabase.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "support/TestDatabase.h"
#include "trading/basket/PasteInput.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;
using Table = std::optional<PasteTable>;

struct ParseCase {
    const char* name;
    std::string text;
    Table table;
};

class ProcessInputTextRows : public testing::TestWithParam<ParseCase> {};

TEST_P(ProcessInputTextRows, Parses) {
    EXPECT_EQ(ProcessInputText(GetParam().text), GetParam().table);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ProcessInputTextRows,
    testing::Values(
        ParseCase{"SpreadsheetWithFinalBreak", "IBM\t100\r\nMSFT\t200\r\n",
                  PasteTable{{"IBM", "100", ""}, {"MSFT", "200", ""}}},
        ParseCase{"MissingFinalBreakLosesTheLastLine", "IBM\t100\r\nMSFT\t200",
                  PasteTable{{"IBM", "100", ""}}},
        ParseCase{"SingleLineRefused", "IBM\t100", std::nullopt},
        ParseCase{"SingleLineWithItsBreakKept", "IBM\t100\r\n", PasteTable{{"IBM", "100", ""}}},
        ParseCase{"LineFeedsAloneReadAsSpreadsheet", "IBM\t100\nMSFT\t200\n",
                  PasteTable{{"IBM", "100", "NYSE"}, {"MSFT", "200", "ARCA"}}},
        ParseCase{"CommasQuotesAndHeader", "Symbol,Qty,Route\nibm,\"1,000\",arca\nKO,5\n",
                  PasteTable{{"IBM", "1000", "ARCA"}, {"KO", "5", "NYSE"}}},
        ParseCase{"TabHeaderIsNotALine", "Symbol\tQty\r\nIBM\t100\r\n",
                  PasteTable{{"IBM", "100", "NYSE"}}},
        ParseCase{"SpreadsheetWithABadLineRefused", "IBM;100\r\nKO;x\r\n", std::nullopt},
        ParseCase{"SingleCommaLineRefused", "IBM,100", std::nullopt},
        ParseCase{"CarriageReturnsAloneRefused", "IBM\t100\rMSFT\t200\r", std::nullopt},
        ParseCase{"NoTabRefused", "IBM 100\r\nMSFT 200\r\n", std::nullopt},
        ParseCase{"Empty", "", std::nullopt},
        ParseCase{"ThirdPieceIsTheDestination", "IBM\t100\tarca\r\n",
                  PasteTable{{"IBM", "100", "arca"}}},
        ParseCase{"FurtherPiecesIgnored", "IBM\t100\tNYSE\t12.5\tx\r\n",
                  PasteTable{{"IBM", "100", "NYSE"}}},
        ParseCase{"OneLineWithoutTabFailsAll", "IBM\t100\r\nMSFT 200\r\n", std::nullopt},
        ParseCase{"BlankLineSkippedAsInSpreadsheet", "IBM\t100\r\n\r\nMSFT\t200\r\n",
                  PasteTable{{"IBM", "100", "NYSE"}, {"MSFT", "200", "ARCA"}}},
        ParseCase{"DroppedLastPieceIsNotChecked", "IBM\t100\r\nnot a line",
                  PasteTable{{"IBM", "100", ""}}},
        ParseCase{"CarriageReturnsInsideLinesRemoved", "I\rBM\t1\r00\r\n",
                  PasteTable{{"IBM", "100", ""}}},
        ParseCase{"EmptyPiecesKept", "\t\t\r\n", PasteTable{{"", "", ""}}},
        ParseCase{"BlanksKeptForTheLoader", " IBM \t 100 \t nyse\r\n",
                  PasteTable{{" IBM ", " 100 ", " nyse"}}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(WithCrLf, PutsACarriageReturnBeforeEveryLoneLineFeed) {
    EXPECT_EQ(WithCrLf("A\t1\nB\t2\n"), "A\t1\r\nB\t2\r\n");
    EXPECT_EQ(WithCrLf("A\t1\r\nB\t2\n"), "A\t1\r\nB\t2\r\n");
    EXPECT_EQ(WithCrLf("\n\n"), "\r\n\r\n");
    EXPECT_EQ(WithCrLf("A\t1"), "A\t1");
    // The parse keeps its rules: still no last line without a break, no single line.
    EXPECT_EQ(ProcessInputText(WithCrLf("A\t1\nB\t2")), (Table{PasteTable{{"A", "1", ""}}}));
    EXPECT_EQ(ProcessInputText(WithCrLf("A\t1")), std::nullopt);
}

struct LineCase {
    const char* name;
    PasteRow row;
    const char* symbol;
    const char* quantity;
    const char* destination;
};

class PastedLineRows : public testing::TestWithParam<LineCase> {};

TEST_P(PastedLineRows, Loads) {
    const LineCase& c = GetParam();
    const auto lines = PastedLines({c.row});
    ASSERT_EQ(lines.size(), 1u);
    const StockLine& line = lines[0];
    EXPECT_EQ(line.cells[stkSymbol], c.symbol);
    EXPECT_EQ(line.cells[stkBasketQty], c.quantity);
    EXPECT_EQ(line.cells[stkDest], c.destination);
    EXPECT_TRUE(line.checked);
    EXPECT_EQ(line.recordNum, -1);
    for (int column = 0; column < StockColumnCount; ++column) {
        if (column != stkSymbol && column != stkBasketQty && column != stkDest) {
            EXPECT_EQ(line.cells[static_cast<size_t>(column)], "") << column;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PastedLineRows,
    testing::Values(
        LineCase{"ListedSymbolGoesToNyse", {"IBM", "100", ""}, "IBM", "100", "NYSE"},
        LineCase{"ShortSymbol", {"F", "5", ""}, "F", "5", "NYSE"},
        LineCase{"OtcSymbolGoesToArca", {"MSFT", "200", ""}, "MSFT", "200", "ARCA"},
        LineCase{"GivenDestinationUpperCase", {"IBM", "1", "inet"}, "IBM", "1", "INET"},
        LineCase{"SymbolAndQuantityTrimmed", {" ibm ", " 7 ", "Arca"}, "ibm", "7", "ARCA"},
        // The length is that of the symbol as pasted, blanks included.
        LineCase{"LengthCountsBlanks", {" IBM", "1", ""}, "IBM", "1", "ARCA"},
        LineCase{"LengthCountsCharacters", {"\xC3\x89TF", "1", ""}, "\xC3\x89TF", "1", "NYSE"},
        LineCase{"QuantityKeptAsText", {"IBM", "1,000", ""}, "IBM", "1,000", "NYSE"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PastedLines, ASymbolPastedTwiceGivesTwoLinesInOrder) {
    const auto table = ProcessInputText("IBM\t100\r\nMSFT\t5\r\nIBM\t300\tINET\r\n");
    ASSERT_TRUE(table);
    const auto lines = PastedLines(*table);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].cells[stkSymbol], "IBM");
    EXPECT_EQ(lines[0].cells[stkBasketQty], "100");
    EXPECT_EQ(lines[2].cells[stkSymbol], "IBM");
    EXPECT_EQ(lines[2].cells[stkBasketQty], "300");
    EXPECT_EQ(lines[2].cells[stkDest], "INET");
}

TEST(PasteInputText, HandsTheLinesToTheScreen) {
    RecordingMessageBoxes boxes;
    std::vector<StockLine> loaded;
    const PasteTable table{{"IBM", "100", ""}, {"GOOGL", "3", ""}};
    EXPECT_TRUE(PasteInputText(
        table, [&](std::vector<StockLine> lines) { loaded = std::move(lines); }, boxes));
    ASSERT_EQ(loaded.size(), 2u);
    EXPECT_EQ(loaded[1].cells[stkDest], "ARCA");
    EXPECT_TRUE(boxes.shown().empty());
}

TEST(PasteInputText, AnErrorWhileLoadingShowsTheMessage) {
    RecordingMessageBoxes boxes;
    size_t taken = 0;
    EXPECT_FALSE(PasteInputText(
        {{"IBM", "x", ""}},
        [&](std::vector<StockLine> lines) {
            taken = lines.size();
            throw std::runtime_error("Type mismatch");
        },
        boxes));
    EXPECT_EQ(taken, 1u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "The data you wish to paste is not formatted correctly.");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
}

// Hostile input ---------------------------------------------------------------------------

std::string RandomBytes(size_t size, uint32_t seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string out(size, '\0');
    for (auto& c : out) {
        c = static_cast<char>(byte(random));
    }
    return out;
}

TEST(HostilePaste, OneMegabyteOfRandomBytesIsRefused) {
    for (uint32_t seed : {1u, 2u, 3u}) {
        const std::string bytes = RandomBytes(1 << 20, seed);
        // Thousands of line breaks with lines of ~256 bytes: some line has no tab.
        EXPECT_EQ(ProcessInputText(bytes), std::nullopt) << seed;
    }
}

TEST(HostilePaste, RandomBytesInEveryFieldLoadWithoutHarm) {
    // Random bytes without line breaks or tabs, cut into lines of random fields.
    std::string bytes = RandomBytes(300 * 1024, 7);
    for (auto& c : bytes) {
        if (c == '\r' || c == '\n' || c == '\t') {
            c = 'x';
        }
    }
    std::mt19937 random(11);
    std::string text;
    size_t expected = 0;
    for (size_t at = 0; at < bytes.size(); ++expected) {
        const size_t a = std::min<size_t>(random() % 40, bytes.size() - at);
        const size_t b = std::min<size_t>(random() % 40, bytes.size() - at - a);
        text += bytes.substr(at, a) + "\t" + bytes.substr(at + a, b) + "\r\n";
        at += a + b;
    }
    const auto table = ProcessInputText(text);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->size(), expected);
    const auto lines = PastedLines(*table);
    ASSERT_EQ(lines.size(), expected);
    for (const auto& line : lines) {
        EXPECT_FALSE(line.cells[stkDest].empty());
    }
}

TEST(HostilePaste, MoreLinesThanABasketHoldsAreRefusedWithTheLimit) {
    struct Row {
        const char* name;
        size_t lines;
        bool loads;
    };
    const Row rows[] = {{"at the limit", kMaxPasteLines, true},
                        {"one more", kMaxPasteLines + 1, false},
                        {"a hundred thousand", 100000, false}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        std::string text;
        for (size_t i = 0; i < r.lines; ++i) {
            text += "S" + std::to_string(i) + "\t" + std::to_string(i) + "\r\n";
        }
        const auto table = ProcessInputText(text);
        ASSERT_TRUE(table);
        // Parsing stops just past the limit, so a huge paste never sits in memory whole.
        EXPECT_EQ(table->size(), std::min(r.lines, kMaxPasteLines + 1));
        RecordingMessageBoxes boxes;
        size_t loaded = 0;
        EXPECT_EQ(PasteInputText(
                      *table, [&](std::vector<StockLine> lines) { loaded = lines.size(); }, boxes),
                  r.loads);
        EXPECT_EQ(loaded, r.loads ? r.lines : 0u);
        if (!r.loads) {
            ASSERT_EQ(boxes.texts(), std::vector<std::string>{PasteTooLongMessage()});
            EXPECT_NE(boxes.texts()[0].find("at most 10000 lines"), std::string::npos);
        }
    }
}

TEST(HostilePaste, QuotesAndSqlStayTextAndNeverReachTheDatabaseAsSql) {
    const std::string text = "O'NEIL\t100\r\n"
                             "'); DELETE FROM tblBaskets; --\t1\tNY'SE\r\n"
                             "IBM\t1); DROP TABLE tblDest; --\r\n"
                             "\"MSFT\"\t\"5\"\t\"arca\"\r\n"
                             "GOOD\t10\tinet\r\n";
    const auto table = ProcessInputText(text);
    ASSERT_TRUE(table);
    const auto lines = PastedLines(*table);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0].cells[stkSymbol], "O'NEIL");
    EXPECT_EQ(lines[1].cells[stkSymbol], "'); DELETE FROM tblBaskets; --");
    EXPECT_EQ(lines[1].cells[stkDest], "NY'SE");
    EXPECT_EQ(lines[2].cells[stkBasketQty], "1); DROP TABLE tblDest; --");
    EXPECT_EQ(lines[3].cells[stkDest], "\"ARCA\"");

    // Saving such a basket stores only the lines the database can hold as values.
    test::TempDir dir;
    auto db = test::CreateTestDatabase(dir / "baskets.mdb");
    db->ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                   "VALUES('Pasted','P',0,'B')");
    std::vector<BasketLine> stored;
    for (const auto& line : lines) {
        stored.push_back({line.cells[stkSymbol], line.cells[stkBasketQty], line.cells[stkDest]});
    }
    EXPECT_EQ(SaveBasketDetails(*db, 1, "Pasted", stored), 1);
    auto rs = db->OpenRecordset("SELECT strSym FROM tblBasketDetails ORDER BY intRecordNum");
    std::vector<std::string> symbols;
    for (; !rs.IsEOF(); rs.MoveNext()) {
        symbols.push_back(rs.Field("strSym").text());
    }
    EXPECT_EQ(symbols, (std::vector<std::string>{"GOOD"}));
    EXPECT_EQ(db->OpenRecordset("SELECT COUNT(*) AS n FROM tblBaskets").Field("n").toLong(), 1);
    EXPECT_EQ(db->OpenRecordset("SELECT COUNT(*) AS n FROM tblDest").Field("n").toLong(), 8);
}

} // namespace
} // namespace wicker
