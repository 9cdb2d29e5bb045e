// Clearing and closing the tracked orders from the utilities screen.

#include "admin/MainTradingDataReset.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "support/TrackedOrders.h"
#include "trading/FakePlatform.h"
#include "trading/TradingDesk.h"
#include "trading/orders/OrderTracker.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;
using test::TrackedOrder;

QVXRejectStruct Reject(const std::string& clOrderId) {
    QVXRejectStruct r;
    r.ClOrderID = clOrderId;
    r.Side = "B";
    r.Quantity = 100;
    r.Symbol = "IBM";
    r.RejectReason = 3;
    return r;
}

class TrackerClear : public testing::Test {
protected:
    TrackerClear()
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 14, 5, 9, 0})), tracker(boxes, clock) {}

    RecordingMessageBoxes boxes;
    ManualClock clock;
    OrderTracker tracker;
};

TEST_F(TrackerClear, ForgetsOrdersRejectsAndRowsAndRefreshesOpenSummaries) {
    tracker.OnQVXOrderUpdate(TrackedOrder(1, "Tech-1-/bskt", "A1", 100));
    tracker.OnQVXOrderUpdate(TrackedOrder(2, "Oil-2-/bskt", "A2", 0));
    tracker.OnQVXOrderReject(Reject("A1"));
    ASSERT_TRUE(tracker.Timer1sec());
    boxes.clear();
    tracker.OnQVXOrderReject(Reject("A2"));
    int refills = 0;
    tracker.AddOrderSummaryWindow([&] { ++refills; });

    tracker.Clear();
    EXPECT_TRUE(tracker.Orders().empty());
    EXPECT_TRUE(tracker.Rows().empty());
    EXPECT_TRUE(tracker.BasketListLines().empty());
    EXPECT_TRUE(tracker.Symbols().empty());
    EXPECT_TRUE(tracker.PendingRejects().empty());
    EXPECT_EQ(tracker.FindOrder(1), nullptr);

    // The queued reject is gone; the open summary window is refilled, with nothing.
    EXPECT_TRUE(tracker.Timer1sec());
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(refills, 1);

    // The same ids later are new orders of a new list.
    EXPECT_EQ(tracker.OnQVXOrderUpdate(TrackedOrder(1, "Tech-3-/bskt", "A1", 100)),
              OrderTracker::UpdateOutcome::Added);
    tracker.Timer1sec();
    ASSERT_EQ(tracker.BasketListLines().size(), 1u);
    EXPECT_EQ(tracker.Rows()[0].m_nBasketNum, 3);
}

class MainReset : public testing::Test {
protected:
    MainReset() : clock(FromLocal(LocalDateTime{2024, 3, 15, 9, 30, 0, 0})) {
        desk = std::make_unique<TradingDesk>(platform, boxes, clock, dir.path());
        desk->setScreenChanged([this](uint32_t parts) { changed |= parts; });
        EXPECT_TRUE(desk->FormLoad().ok());
        desk->OnQVXOrderUpdate(TrackedOrder(1, "Tech-1-/bskt", "A1", 100));
        desk->OnQVXOrderUpdate(TrackedOrder(2, "Tech-1-/bskt", "A2", 40));
        desk->OnQVXOrderUpdate(TrackedOrder(3, "Tech-1-/bskt", "A3", 0));
        desk->Timer1sec();
        changed = 0;
        boxes.clear();
    }

    std::string Cell(int column) const {
        return desk->BasketListLines().at(0)[static_cast<size_t>(column)];
    }

    test::TempDir dir;
    test::FakePlatform platform;
    RecordingMessageBoxes boxes;
    ManualClock clock;
    std::unique_ptr<TradingDesk> desk;
    uint32_t changed = 0;
};

TEST_F(MainReset, ClearTradingDataEmptiesTheSentBasketsListAtOnce) {
    MainTradingDataReset reset(*desk);
    reset.ClearTradingData();
    EXPECT_TRUE(desk->BasketListLines().empty());
    EXPECT_TRUE(desk->Tracker().Orders().empty());
    EXPECT_TRUE(changed & ScreenPart::BasketTotals);
    EXPECT_TRUE(platform.cancels.empty());
}

TEST_F(MainReset, MarkAllClosedZeroesTheOpenOrdersAndShowsItAtOnce) {
    ASSERT_EQ(Cell(colOpenOrders), "2");
    ASSERT_EQ(Cell(colOpenQty), "140");
    MainTradingDataReset reset(*desk);
    reset.MarkAllOrdersClosed();
    EXPECT_EQ(Cell(colOpenOrders), "0");
    EXPECT_EQ(Cell(colOpenQty), "0");
    EXPECT_EQ(Cell(colTotalOrders), "3");
    EXPECT_TRUE(changed & ScreenPart::BasketTotals);
    EXPECT_TRUE(platform.cancels.empty()); // nothing asked of the platform
}

} // namespace
} // namespace wicker
