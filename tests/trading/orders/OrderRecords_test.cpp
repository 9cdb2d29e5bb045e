// The day's orders kept on disk: every change tracking learns reaches the ledger, so that a
// restart shows each order as it last was.

#include "platform/TicketOrder.h"
#include "storage/SqliteFile.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "support/TrackedOrders.h"
#include "trading/FakePlatform.h"
#include "trading/orders/OrderRecords.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

constexpr const char* Memo = "Tech-57-/bskt";
constexpr const char* ClOrderId = "ACCT01-20240315-57-1";

class Records : public testing::Test {
protected:
    Records() {
        order.setMemo(Memo);
        order.setAccount("ACCT01");
        order.setSymbol("IBM");
        order.setQuantity(100);
        order.setDestination("NYSE");
        order.setSide("B");
        order.setPriceType(OrderPriceType::Limit);
        order.setLmtPrice(10);
        order.setTif("D");
        order.setClOrderID(ClOrderId);
        records.setLedger(Ledger());
    }
    std::unique_ptr<OrderLedger> Ledger() {
        return std::make_unique<OrderLedger>(dir / "orders.db", clock);
    }
    /// Today's orders as a restarted program reads them.
    std::vector<LedgerOrder> Kept() { return Ledger()->TodaysOrders(); }
    void WriteTheSend() {
        const QVXOrder* orders[] = {&order};
        records.SendBegins(57, "Tech", orders, "");
    }

    test::TempDir dir;
    ManualClock clock{FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})};
    test::RecordingMessageBoxes boxes;
    OrderTracker tracker{boxes, clock};
    OrderRecords records{tracker, boxes};
    TicketOrder order{[](const OrderTicket&) { return 0; }};
};

TEST_F(Records, EveryReportOfAnOrderIsKeptWithItsMemo) {
    WriteTheSend();
    records.Submitted(7);
    const std::unique_ptr<QVXOrder> handed[] = {std::make_unique<TicketOrder>(order)};
    records.Handed(handed);
    records.SendEnds(57);
    for (const int32_t leaves : {40, 0}) {
        QVXOrderStruct r = test::TrackedOrder(7, Memo, ClOrderId, leaves);
        r.AvgExecPrice = 10.1;
        r.ExecPriceLmt = 10.25;
        r.OrderStatus = leaves > 0 ? QVXOrderStatus::PartiallyFilled : QVXOrderStatus::Filled;
        records.Reported(r);
        tracker.OnQVXOrderUpdate(r);
        records.SaveChanges();
    }
    const auto kept = Kept();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].tracked.state.Memo, Memo);
    EXPECT_EQ(kept[0].tracked.state.LvsQuantity, 0);
    EXPECT_EQ(kept[0].tracked.state.CumExecQuantity, 100);
    EXPECT_EQ(kept[0].tracked.state.AvgExecPrice, 10.1);
    EXPECT_EQ(kept[0].tracked.state.ExecPriceLmt, 10.25);
}

TEST_F(Records, AnOrderThatNeverLeftIsKeptAsNotSentAfterARestart) {
    WriteTheSend(); // the program stops here
    OrderTracker restarted(boxes, clock);
    OrderRecords again(restarted, boxes);
    again.setLedger(Ledger());
    test::FakePlatform platform; // the broker does not know the order
    const RestoreReport report = again.RestoreToday(platform);
    EXPECT_EQ(report.notSent, 1u);
    const auto kept = Kept();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].tracked.note, "Not sent (program stopped)");
    EXPECT_EQ(kept[0].tracked.state.LvsQuantity, 0);
}

// A send is kept as one record whose repeated fields are written once: each order must still
// read back field for field, also after an order the platform refused, and whatever
// characters a field holds.
TEST_F(Records, EveryOrderOfASendReadsBackFieldForField) {
    struct Line {
        std::string clOrderId, account, symbol, destination, memo;
        int32_t quantity;
        double price;
        int32_t result; ///< below 0: refused
    };
    // The ids of a send are kept as what differs from the id before: after its last '-', or
    // whole when the part before differs, the rest holds a '-', or a separator character.
    const std::vector<Line> lines = {
        {"ACCT01-20240315-57-1", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 7},
        {"ACCT01-20240315-57-2", "ACCT01", "MSFT", "ARCA", Memo, 200, 10.5, -2},
        {"ACCT01-20240315-57-3-4", "", "A\x1d\x1f\x1e\x1b", "ARCA", "\x1d", 200, 0.1, 8},
        {"ACCT01-20240315-57-3-5", "ACCT01", "A\x1d\x1f\x1e\x1b", "NYSE-ARCA-EXTRA\x1e", "\x1d",
         200, 0.1, 9},
        {"B-7", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 10},
        {"B-\x1d", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 11},
        {"B-", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 12},
        {"\x1d-8", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 13},
        {"\x1d-9", "ACCT01", "IBM", "NYSE", Memo, 100, 10, 14},
    };
    std::vector<std::unique_ptr<QVXOrder>> orders;
    std::vector<const QVXOrder*> view;
    for (const Line& line : lines) {
        QVXOrder& o = *orders.emplace_back(std::make_unique<TicketOrder>(order));
        o.setAccount(line.account);
        o.setSymbol(line.symbol);
        o.setDestination(line.destination);
        o.setMemo(line.memo);
        o.setQuantity(line.quantity);
        o.setLmtPrice(line.price);
        o.setClOrderID(line.clOrderId);
        view.push_back(&o);
    }
    records.SendBegins(57, "Tech", view, "");
    for (const Line& line : lines) {
        records.Submitted(line.result);
    }
    records.Handed(orders);
    records.SendEnds(57);
    const auto kept = Kept();
    ASSERT_EQ(kept.size(), lines.size() - 1); // the refused order never left
    size_t next = 0;
    for (const Line& line : lines) {
        if (line.result < 0) {
            continue;
        }
        const QVXOrderStruct& k = kept[next++].tracked.state;
        SCOPED_TRACE(line.clOrderId);
        EXPECT_EQ(k.ClOrderID, line.clOrderId);
        EXPECT_EQ(k.Account, line.account);
        EXPECT_EQ(k.Symbol, line.symbol);
        EXPECT_EQ(k.Destination, line.destination);
        EXPECT_EQ(k.Memo, line.memo);
        EXPECT_EQ(k.Quantity, line.quantity);
        EXPECT_EQ(k.LmtPrice, line.price);
        EXPECT_EQ(k.OrderRecordId, line.result);
    }
}

// A large send's record is written in parts, each field against the order before also across
// them, the last parts past midnight: every order reads back, in order.
TEST_F(Records, ASendWrittenInPartsReadsBackWhole) {
    constexpr int Orders = 4001;
    std::vector<TicketOrder> orders(Orders, order);
    std::vector<const QVXOrder*> view;
    for (int i = 0; i < Orders; ++i) {
        orders[i].setSymbol("S" + std::to_string(i % 7));
        orders[i].setDestination(i % 3 == 0 ? "ARCA" : "NYSE");
        orders[i].setQuantity(100 + i % 5);
        orders[i].setLmtPrice(10 + (i % 4) * 0.25);
        orders[i].setClOrderID("ACCT01-20240315-57-" + std::to_string(i + 1));
        view.push_back(&orders[i]);
    }
    const std::span<const QVXOrder* const> all(view);
    records.SendBegins(57, "Tech", all.first(64), "");
    const auto started = clock.now();
    for (size_t from = 64, size = 64; from < all.size(); from += size, size *= 2) {
        if (from > 1000) {
            clock.set(FromLocal(LocalDateTime{2024, 3, 16, 0, 0, 1, 0}));
        }
        records.SendContinues(57, all.subspan(from, std::min(size, all.size() - from)));
    }
    clock.set(started);
    const auto kept = Kept();
    ASSERT_EQ(kept.size(), static_cast<size_t>(Orders));
    for (int i = 0; i < Orders; ++i) {
        const QVXOrderStruct& k = kept[i].tracked.state;
        SCOPED_TRACE(i);
        ASSERT_EQ(k.ClOrderID, orders[i].ClOrderID());
        ASSERT_EQ(k.Account, "ACCT01");
        ASSERT_EQ(k.Memo, Memo);
        ASSERT_EQ(k.Symbol, orders[i].Symbol());
        ASSERT_EQ(k.Destination, orders[i].Destination());
        ASSERT_EQ(k.Quantity, orders[i].Quantity());
        ASSERT_EQ(k.LmtPrice, orders[i].LmtPrice());
    }
}

// A journal written before the answers had a table of their own keeps them in the send's row.
TEST_F(Records, AnEarlierJournalsAnswersAreStillRead) {
    WriteTheSend();
    {
        SqliteFile file(dir / "orders.db");
        file.exec("UPDATE sends SET results = '7' || char(30), handedAt = '10:00:00'");
    }
    const auto kept = Kept();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].handOff, HandOffState::Taken);
    EXPECT_EQ(kept[0].tracked.state.OrderRecordId, 7);
}

} // namespace
} // namespace wicker
