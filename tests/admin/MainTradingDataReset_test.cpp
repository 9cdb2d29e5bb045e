// Clearing and closing the desk's tracked orders from the utilities screen.

#include "admin/MainTradingDataReset.h"
#include "support/TrackedOrders.h"
#include "trading/DeskFixture.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::TrackedOrder;

class MainReset : public test::DeskFixture {
protected:
    MainReset() {
        Start();
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
