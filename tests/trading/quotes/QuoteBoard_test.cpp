#include "platform/PlatformEventQueue.h"
#include "trading/quotes/QuoteBoard.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

namespace F = QVXQuoteField;

QVXQuoteStruct Record(const std::string& symbol, uint32_t fields) {
    QVXQuoteStruct q;
    q.Symbol = symbol;
    q.Fields = fields;
    return q;
}

class QuoteBoardTest : public testing::Test {
protected:
    void Load(std::vector<std::string> symbols) {
        std::vector<StockLine> v;
        for (auto& s : symbols) {
            StockLine line;
            line.cells[stkSymbol] = s;
            v.push_back(line);
        }
        lines.Assign(std::move(v));
        board.SetLines(lines);
    }
    StockList lines;
    QuoteBoard board;
};

TEST_F(QuoteBoardTest, HandlersOnlyRecordTheTickWrites) {
    Load({"IBM"});
    QVXQuoteStruct q = Record("IBM", F::Bid | F::Ask);
    q.BidPrice = 10.5;
    q.AskPrice = 10.75;
    board.OnQVXQuoteSnap(q);
    EXPECT_EQ(lines.Cell(0, stkBid), "");
    EXPECT_EQ(board.Timer200ms(lines), 2);
    EXPECT_EQ(lines.Cell(0, stkBid), "10.50");
    EXPECT_EQ(lines.Cell(0, stkAsk), "10.75");
    EXPECT_EQ(board.Timer200ms(lines), 0); // flags cleared
}

TEST_F(QuoteBoardTest, PriceFormatFollowsTheDecimalsSetting) {
    struct Row {
        int16_t decimals;
        double price;
        const char* expected;
    };
    const Row rows[] = {{2, 1.5, "1.50"}, {3, 1.5, "1.500"},    {4, 1.5, "1.5000"},
                        {4, 0, "0.0000"}, {2, 12.345, "12.35"}, {5, 1.5, "1.5"},
                        {0, 2.25, "2.25"}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.decimals);
        board.setDisplay({r.decimals, false, 0});
        Load({"X"});
        QVXQuoteStruct q = Record("X", F::Last);
        q.LastPrice = r.price;
        board.OnQVXQuoteUpdate(q);
        board.Timer200ms(lines);
        EXPECT_EQ(lines.Cell(0, stkLast), r.expected);
    }
}

TEST_F(QuoteBoardTest, VolumeInThousandsAboveTheThreshold) {
    struct Row {
        const char* name;
        bool thousands;
        double threshold;
        int32_t volume;
        const char* expected;
    };
    const Row rows[] = {
        {"zero shows 0", true, 100000, 0, "0"},
        {"zero without the option", false, 0, 0, "0"},
        {"at the threshold in full", true, 100000, 100000, "100,000"},
        {"above the threshold in k", true, 100000, 250000, "250k"},
        {"k rounds", true, 100000, 1234567, "1,235k"},
        {"option off", false, 100000, 250000, "250,000"},
        {"small volume", true, 100000, 999, "999"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        board.setDisplay({2, r.thousands, r.threshold});
        Load({"X"});
        QVXQuoteStruct q = Record("X", F::CumVolume);
        q.CumVolume = r.volume;
        board.OnQVXQuoteUpdate(q);
        board.Timer200ms(lines);
        EXPECT_EQ(lines.Cell(0, stkVolume), r.expected);
    }
}

TEST(QuoteDisplayFrom, ReadsThePlatformKeys) {
    Settings s;
    s.volThousands = "1";
    s.volThreshold = "100000";
    s.numDecimals = 4;
    const QuoteDisplay d = QuoteDisplayFrom(s);
    EXPECT_TRUE(d.volThousands);
    EXPECT_EQ(d.volThreshold, 100000);
    EXPECT_EQ(d.numDecimals, 4);
    s.volThousands = "";
    s.volThreshold = "";
    EXPECT_FALSE(QuoteDisplayFrom(s).volThousands);
    EXPECT_EQ(QuoteDisplayFrom(s).volThreshold, 0);
}

TEST_F(QuoteBoardTest, TwoUpdatesInOneTickWriteOnceWithTheLaterValue) {
    Load({"IBM"});
    QVXQuoteStruct q = Record("IBM", F::Last);
    q.LastPrice = 10;
    board.OnQVXQuoteUpdate(q);
    q.LastPrice = 11;
    board.OnQVXQuoteUpdate(q);
    const uint64_t before = lines.CellWrites();
    // Last feeds Last, and the two change columns pairs: five cells, each written once.
    EXPECT_EQ(board.Timer200ms(lines), 5);
    EXPECT_EQ(lines.CellWrites() - before, 5u);
    EXPECT_EQ(lines.Cell(0, stkLast), "11.00");
}

TEST_F(QuoteBoardTest, NoValueMarksOfCarriedFieldsBecomeZero) {
    Load({"IBM"});
    QVXQuoteStruct q = Record("IBM", F::Bid | F::Ask | F::CumVolume | F::BidSize);
    q.BidPrice = kQVXNoPrice;
    q.AskPrice = std::numeric_limits<double>::infinity();
    q.CumVolume = kQVXNoValue;
    q.BidSize = kQVXNoValue;
    board.OnQVXQuoteSnap(q);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(0, stkBid), "0.00");
    EXPECT_EQ(lines.Cell(0, stkAsk), "0.00");
    EXPECT_EQ(lines.Cell(0, stkVolume), "0");
    const Quote* latest = board.Latest("IBM");
    ASSERT_NE(latest, nullptr);
    EXPECT_EQ(latest->m_nBidSize, 0);
}

TEST_F(QuoteBoardTest, FieldsNotCarriedKeepTheirValuesAndCells) {
    Load({"IBM"});
    QVXQuoteStruct snap = Record("IBM", F::All);
    snap.BidPrice = 9;
    snap.AskPrice = 11;
    snap.LastPrice = 10;
    snap.ClosePrice = 8;
    snap.OpenPrice = 12;
    snap.CumVolume = 500;
    board.OnQVXQuoteSnap(snap);
    board.Timer200ms(lines);

    // An update carrying only the bid; its other fields hold no-value marks.
    QVXQuoteStruct update = Record("IBM", F::Bid);
    update.BidPrice = 9.5;
    board.OnQVXQuoteUpdate(update);
    EXPECT_EQ(board.Timer200ms(lines), 1);
    EXPECT_EQ(lines.Cell(0, stkBid), "9.50");
    EXPECT_EQ(lines.Cell(0, stkAsk), "11.00");
    EXPECT_EQ(lines.Cell(0, stkLast), "10.00");
    EXPECT_EQ(lines.Cell(0, stkVolume), "500");
    const Quote* q = board.QuotesOf("IBM").at(0);
    EXPECT_EQ(q->m_fAskPrice, 11);
    EXPECT_EQ(q->m_nCumVolume, 500);
}

TEST_F(QuoteBoardTest, ChangeColumnsAreDerivedFromCloseAndOpen) {
    board.setDisplay({2, false, 0});
    Load({"IBM"});
    QVXQuoteStruct q = Record("IBM", F::Last | F::Close | F::Open);
    q.LastPrice = 105;
    q.ClosePrice = 100;
    q.OpenPrice = 110;
    board.OnQVXQuoteSnap(q);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(0, stkChange), "5.00");
    EXPECT_EQ(lines.Cell(0, stkPctChange), "5.00");
    EXPECT_EQ(lines.Cell(0, stkOpenChg), "-5.00");
    EXPECT_EQ(lines.Cell(0, stkPctOpenChg), "-4.55");

    // A new close alone moves the change columns too.
    QVXQuoteStruct close = Record("IBM", F::Close);
    close.ClosePrice = 50;
    board.OnQVXQuoteUpdate(close);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(0, stkChange), "55.00");
    EXPECT_EQ(lines.Cell(0, stkPctChange), "110.00");
}

TEST_F(QuoteBoardTest, WithoutATradeThereIsNoChange) {
    Load({"IBM"});
    QVXQuoteStruct q = Record("IBM", F::Last | F::Close);
    q.LastPrice = kQVXNoPrice;
    q.ClosePrice = 100;
    board.OnQVXQuoteSnap(q);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(0, stkChange), "0.00");
    EXPECT_EQ(lines.Cell(0, stkPctChange), "0.00");
}

TEST_F(QuoteBoardTest, SymbolOnTwoLinesUpdatesBothAndCaseDoesNotMatter) {
    Load({"IBM", "MSFT", "ibm"});
    QVXQuoteStruct q = Record("IBM", F::Last);
    q.LastPrice = 7;
    board.OnQVXQuoteUpdate(q);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(0, stkLast), "7.00");
    EXPECT_EQ(lines.Cell(1, stkLast), "");
    EXPECT_EQ(lines.Cell(2, stkLast), "7.00");
    q.Symbol = " msft ";
    board.OnQVXQuoteUpdate(q);
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(1, stkLast), "7.00");
    EXPECT_NE(board.Latest("Msft"), nullptr);
}

// The queue merges a symbol's updates before the board sees them: the cells must come out
// as if every update had been applied one by one.
TEST_F(QuoteBoardTest, ConflatedUpdatesShowWhatEveryUpdateWould) {
    Load({"AA", "BB", "CC", "aa"});
    StockList direct;
    direct.Assign(std::vector<StockLine>(lines.Lines().begin(), lines.Lines().end()));
    QuoteBoard directBoard;
    directBoard.SetLines(direct);
    PlatformEventQueue queue;
    queue.setQuoteConflation(true);
    struct ToBoard : QVXEvents, QVXQuoteEvents {
        QuoteBoard& board;
        explicit ToBoard(QuoteBoard& b) : board(b) {}
        void OnQVXOrderUpdate(const QVXOrderStruct&) override {}
        void OnQVXOrderReject(const QVXRejectStruct&) override {}
        void OnQVXOrderWarning(const QVXOrderWarning&) override {}
        void OnQVXShutdown() override {}
        void OnPlatformStatus(bool, const std::string&) override {}
        void OnQVXQuoteSnap(const QVXQuoteStruct& q) override { board.OnQVXQuoteSnap(q); }
        void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override { board.OnQVXQuoteUpdate(q); }
    } sink(board);
    const char* symbols[] = {"AA", "BB", "CC", "DD"};
    uint32_t x = 7;
    for (int tick = 0; tick < 20; ++tick) {
        for (int i = 0; i < 50; ++i) {
            x = x * 1664525u + 1013904223u;
            QVXQuoteStruct q = Record(symbols[(x >> 8) % 4], (x >> 12) & F::All);
            q.BidPrice = q.AskPrice = q.LastPrice = q.OpenPrice = q.ClosePrice =
                static_cast<double>((x >> 16) % 5000) / 100;
            q.CumVolume = static_cast<int32_t>(x >> 10);
            q.CompanyName = "Co " + std::to_string(x % 97);
            directBoard.OnQVXQuoteUpdate(q);
            queue.push(PlatformEventQueue::QuoteUpdate{q});
        }
        queue.drain(sink, sink);
        board.Timer200ms(lines);
        directBoard.Timer200ms(direct);
        for (int row = 0; row < lines.Count(); ++row) {
            ASSERT_EQ(lines.Line(row).cells, direct.Line(row).cells) << "tick " << tick;
            EXPECT_EQ(board.QuoteAt(row)->m_strCompanyName,
                      directBoard.QuoteAt(row)->m_strCompanyName);
        }
    }
    ASSERT_NE(board.Latest("DD"), nullptr);
    EXPECT_EQ(board.Latest("DD")->m_fLastPrice, directBoard.Latest("DD")->m_fLastPrice);
}

TEST_F(QuoteBoardTest, NewLinesStartFromTheLatestValues) {
    QVXQuoteStruct q = Record("IBM", F::Last);
    q.LastPrice = 7;
    board.OnQVXQuoteUpdate(q); // no line yet: only the latest values
    Load({"MSFT", "IBM"});
    board.Timer200ms(lines);
    EXPECT_EQ(lines.Cell(1, stkLast), "7.00");
    EXPECT_EQ(lines.Cell(0, stkLast), "");
}

TEST_F(QuoteBoardTest, ImportPriceGoesIntoPrice) {
    Load({"IBM"});
    board.SetImportPrice(0, 12.3);
    board.SetImportPrice(5, 1); // no such line: ignored
    EXPECT_EQ(board.Timer200ms(lines), 1);
    EXPECT_EQ(lines.Cell(0, stkPrice), "12.30");
}

TEST_F(QuoteBoardTest, QuotesOfUnknownSymbolsAreKeptOnlyAsLatest) {
    Load({"IBM"});
    QVXQuoteStruct q = Record("ZZZ", F::Last);
    q.LastPrice = 3;
    board.OnQVXQuoteUpdate(q);
    EXPECT_EQ(board.Timer200ms(lines), 0);
    ASSERT_NE(board.Latest("zzz"), nullptr);
    EXPECT_EQ(board.Latest("zzz")->m_fLastPrice, 3);
}

} // namespace
} // namespace wicker
