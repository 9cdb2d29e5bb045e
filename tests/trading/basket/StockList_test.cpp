#include "common/RuntimeError.h"
#include "trading/basket/StockList.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

/// Writes down every notification as text, in order.
class RecordingObserver : public StockListObserver {
public:
    void StockListAboutToBeReset() override { log.push_back("about to reset"); }
    void StockListReset() override { log.push_back("reset"); }
    void StockLinesAboutToBeInserted(int first, int last) override {
        log.push_back("insert " + std::to_string(first) + "-" + std::to_string(last));
    }
    void StockLinesInserted() override { log.push_back("inserted"); }
    void StockLinesAboutToBeRemoved(int first, int last) override {
        log.push_back("remove " + std::to_string(first) + "-" + std::to_string(last));
    }
    void StockLinesRemoved() override { log.push_back("removed"); }
    void StockCellsChanged(std::span<const StockCellRange> r) override {
        ranges.insert(ranges.end(), r.begin(), r.end());
        log.push_back("cells");
    }
    std::vector<std::string> log;
    std::vector<StockCellRange> ranges;
};

std::vector<StockLine> Lines(int n) {
    std::vector<StockLine> lines(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        lines[static_cast<size_t>(i)].cells[stkSymbol] = "S" + std::to_string(i);
    }
    return lines;
}

class StockListTest : public testing::Test {
protected:
    StockListTest() {
        list.Assign(Lines(6));
        list.setObserver(&observer);
    }
    StockList list;
    RecordingObserver observer;
};

TEST_F(StockListTest, CellChangesAreGatheredIntoRunsUntilFlushed) {
    list.SetCell(3, stkLast, "10.00");
    list.SetCell(1, stkBid, "9.99");
    list.SetCell(1, stkAsk, "10.01");
    list.SetCell(2, stkBid, "9.98");
    list.SetCell(2, stkAsk, "10.02");
    list.SetCell(4, stkLast, "11.00");
    EXPECT_TRUE(observer.ranges.empty());
    list.FlushChanges();
    // Rows 1 and 2 changed the same columns: one range; rows 3 and 4 likewise.
    const std::vector<StockCellRange> expected{{1, 2, stkBid, stkAsk, false},
                                               {3, 4, stkLast, stkLast, false}};
    EXPECT_EQ(observer.ranges, expected);
    observer.ranges.clear();
    list.FlushChanges();
    EXPECT_TRUE(observer.ranges.empty());
}

TEST_F(StockListTest, SameTextIsNoChangeButCountsAsAWrite) {
    list.SetCell(0, stkLast, "1");
    list.FlushChanges();
    observer.ranges.clear();
    const uint64_t writes = list.CellWrites();
    list.SetCell(0, stkLast, "1");
    list.FlushChanges();
    EXPECT_TRUE(observer.ranges.empty());
    EXPECT_EQ(list.CellWrites(), writes + 1);
}

TEST_F(StockListTest, CheckStateChangeCoversColumnZero) {
    list.SetChecked(5, false);
    list.SetChecked(4, true); // already checked: no change
    list.FlushChanges();
    const std::vector<StockCellRange> expected{{5, 5, 0, 0, true}};
    EXPECT_EQ(observer.ranges, expected);
    EXPECT_FALSE(list.Checked(5));
}

TEST_F(StockListTest, StructuralChangesComeInPairsAndFlushFirst) {
    list.SetCell(5, stkLast, "1");
    list.RemoveLines(1, 2);
    EXPECT_EQ((std::vector<std::string>{"cells", "remove 1-2", "removed"}), observer.log);
    EXPECT_EQ(list.Count(), 4);
    EXPECT_EQ(list.Cell(3, stkSymbol), "S5");
    EXPECT_EQ(list.Cell(3, stkLast), "1");

    observer.log.clear();
    StockLine line;
    line.cells[stkSymbol] = "NEW";
    EXPECT_EQ(list.AddLine(line), 4);
    EXPECT_EQ((std::vector<std::string>{"insert 4-4", "inserted"}), observer.log);

    observer.log.clear();
    list.SetCell(0, stkLast, "2");
    list.Clear();
    list.FlushChanges();
    // Changes of the old lines die with them.
    EXPECT_EQ((std::vector<std::string>{"about to reset", "reset"}), observer.log);
    EXPECT_TRUE(list.Empty());
}

TEST_F(StockListTest, BadPositionsAreErrorsNotCrashes) {
    EXPECT_THROW(list.SetCell(0, StockColumnCount, "x"), RuntimeError);
    EXPECT_THROW(list.SetCell(0, -1, "x"), RuntimeError);
    EXPECT_THROW(list.SetCell(6, stkLast, "x"), std::out_of_range);
    EXPECT_THROW(list.RemoveLines(5, 6), RuntimeError);
    EXPECT_THROW(list.RemoveLines(2, 1), RuntimeError);
    EXPECT_EQ(list.Count(), 6);
}

TEST_F(StockListTest, ExecutionLinesCarryTheSubItemsASendReads) {
    list.SetCell(0, stkBid, "1");
    list.SetCell(0, stkAsk, "2");
    list.SetCell(0, stkLast, "3");
    list.SetCell(0, stkOrderQty, "100");
    list.SetCell(0, stkDest, "ARCA");
    list.SetCell(0, stkMod, "0.01");
    list.SetCell(0, stkTif, "DAY");
    list.SetCell(0, stkPrice, "4");
    list.SetChecked(0, false);
    const ExecutionLine e = list.ExecutionLines().at(0);
    EXPECT_FALSE(e.checked);
    EXPECT_EQ(e.symbol, "S0");
    EXPECT_EQ(e.bid + e.ask + e.last + e.price, "1234");
    EXPECT_EQ(e.quantity, "100");
    EXPECT_EQ(e.destination, "ARCA");
    EXPECT_EQ(e.modifier, "0.01");
    EXPECT_EQ(e.tif, "DAY");

    // As a send takes them: a quote value stands for its cell, an unchecked line is not read,
    // a text the same as the line before's is kept once.
    list.SetChecked(0, true);
    list.SetChecked(1, false);
    list.SetCell(2, stkDest, "ARCA");
    list.SetCell(2, stkPrice, "n/a");
    const auto values = [](int) { return ExecutionQuoteValues{1.005, NAN, 3.25, NAN}; };
    const SendLines sent = list.LinesToSend(values);
    ASSERT_EQ(sent.size(), 6u);
    EXPECT_EQ(sent[0].bid, 1.005);
    EXPECT_EQ(sent[0].ask, 2);
    EXPECT_EQ(sent[0].last, 3.25);
    EXPECT_EQ(sent[0].price, 4);
    EXPECT_EQ(
        std::string(sent.text(sent[0].symbol)) + "|" + std::string(sent.text(sent[0].quantity)) +
            "|" + std::string(sent.text(sent[0].destination)) + "|" +
            std::string(sent.text(sent[0].modifier)) + "|" + std::string(sent.text(sent[0].tif)),
        "S0|100|ARCA|0.01|DAY");
    EXPECT_FALSE(sent[1].checked);
    EXPECT_EQ(sent.text(sent[1].symbol), "");
    EXPECT_EQ(sent.text(sent[2].symbol), "S2");
    EXPECT_EQ(sent[2].destination.offset, sent[0].destination.offset);
    EXPECT_EQ(sent[2].ask, 0); // no quote
    EXPECT_TRUE(std::isnan(sent[2].price));
}

} // namespace
} // namespace wicker
