// One order of a basket changed in place at the broker: sent to the real wicker-exchange as
// a resting limit, replaced to a marketable price through the platform's ReplaceOrder, and
// filled; order tracking follows it under the same record throughout.

#include "exchange/BasicVenue.h"
#include "exchange/ExchangeProcess.h"
#include "integration/FixTradingDesk.h"
#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"

#include <fstream>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

class NullStore : public SequenceStore {
public:
    Result<void> SaveBasketNum(int16_t) override { return {}; }
};

TEST(FixReplace, RestingOrderReplacedToANewPriceFillsAndTheTotalsFollow) {
    test::TempDir dir;
    ManualClock clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0}));
    test::RecordingMessageBoxes boxes;
    OrderTracker tracker(boxes, clock);
    TradingEvents events(tracker, [] {});
    test::QueuedGatewayEvents queue;
    ExchangeProcess exchange(WICKER_EXCHANGE_PROGRAM, dir / "exchange");
    ASSERT_TRUE(
        exchange.start({"--market", "steady", "--journal", (dir / "journal.txt").string()}).ok());
    FixPlatformSettings s;
    s.port = exchange.port();
    s.reconnectInterval = 1;
    FixGateway gateway(s, dir / "wicker", clock, queue);
    ASSERT_TRUE(gateway.start().ok());
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] { return gateway.isLoggedOn(); }, 20s));
    test::GatewayOrders orders(gateway);
    SendSequence sequence{1, 1};
    NullStore store;
    BasketExecution execution(orders, sequence, store, boxes, clock);
    const auto tickUntil = [&](auto pred) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        for (;;) {
            queue.pump(events);
            tracker.FillOrderList();
            if (pred()) {
                return true;
            }
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(10ms);
        }
    };

    // "BUY BID" with a bid two dollars under the exchange's market: the order rests.
    const double mid = BasicVenue(1, 0, 0ms).midPrice("IBM");
    ExecutionLine line;
    line.checked = true;
    line.symbol = "IBM";
    line.bid = FormatFixPrice(mid - 2.005);
    line.ask = FormatFixPrice(mid + 0.005);
    line.last = FormatFixPrice(mid);
    line.quantity = "300";
    line.destination = "NASDAQ";
    line.modifier = "0";
    line.tif = "DAY";
    const std::vector<ExecutionLine> lines{line};
    const ExecuteReport sent = execution.cmdExecuteBasket_Click(
        0, lines, ExecutionInputs{"acct01", "1", "Tech"}, ExecutionSettings{});
    ASSERT_EQ(sent.ordersSubmitted, 1);
    ASSERT_TRUE(tickUntil(
        [&] { return tracker.Orders().size() == 1 && tracker.Orders()[0].m_strAction == "New"; }));
    const OrderUpdate resting = tracker.Orders()[0];
    EXPECT_EQ(resting.m_nLvsQuantity, 300);
    ASSERT_EQ(tracker.Rows().size(), 1u);
    EXPECT_EQ(tracker.Rows()[0].m_nOpenOrders, 1);

    // Up to the offer, and 100 more: the broker changes the order in one step.
    const double ask = std::stod(line.ask);
    ASSERT_EQ(orders.ReplaceOrder(resting.m_strClOrderId, resting.m_nOrderRecordId,
                                  QVXOrderChange{"", 400, 5, ask}),
              0);
    ASSERT_TRUE(tickUntil([&] {
        return tracker.Rows().size() == 1 && tracker.Rows()[0].m_nFilledQty == 400;
    })) << "the replaced order fills at its new price";

    ASSERT_EQ(tracker.Orders().size(), 1u) << "still one order, under its first record";
    const OrderUpdate& done = tracker.Orders()[0];
    EXPECT_EQ(done.m_nOrderRecordId, resting.m_nOrderRecordId);
    EXPECT_EQ(done.m_nQuantity, 400);
    EXPECT_EQ(done.m_nCumExecQuantity, 400);
    EXPECT_EQ(done.m_nLvsQuantity, 0);
    EXPECT_NEAR(done.m_fLmtPrice, ask, 1e-9);
    EXPECT_NEAR(done.m_fAvgExecPrice, ask, 1e-9);
    const OrderRow& row = tracker.Rows()[0];
    EXPECT_EQ(row.m_nTotalQty, 400);
    EXPECT_EQ(row.m_nOpenOrders, 0);
    EXPECT_NEAR(row.m_fDlrsBot, 400 * ask, 0.005);
    EXPECT_TRUE(queue.rejects().empty());
    EXPECT_TRUE(boxes.shown().empty());

    // The exchange took one order and one replace naming it.
    std::ifstream journal(dir / "journal.txt");
    std::vector<std::string> received;
    for (std::string l; std::getline(journal, l);) {
        received.push_back(l);
    }
    ASSERT_EQ(received.size(), 2u);
    EXPECT_NE(received[1].find("41=" + resting.m_strClOrderId + "|"), std::string::npos)
        << received[1];
    EXPECT_NE(received[1].find("38=400|"), std::string::npos) << received[1];
}

} // namespace
} // namespace wicker
