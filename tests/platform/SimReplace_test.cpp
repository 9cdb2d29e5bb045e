#include "SimDesk.h"

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using std::chrono::milliseconds;

class SimReplace : public IbmDeskTest {
protected:
    // A buy limit far below the market: it rests for the length of any test.
    int32_t SendResting(int32_t quantity = 100) {
        resting.quantity = quantity;
        resting.priceType = 5;
        resting.price = quote().BidPrice - 5.00;
        return desk.send(resting);
    }
    static QVXOrderChange Change(int32_t quantity, int32_t priceType, double price,
                                 std::string newId = "ACCT01-20240315-57-1-M1") {
        return QVXOrderChange{std::move(newId), quantity, priceType, price};
    }

    OrderFields resting;
};

TEST_F(SimReplace, OpenOrderChangesInPlaceUnderItsRecordIdAndNewClientId) {
    const int32_t id = SendResting(100);
    const double newPrice = quote().BidPrice - 4.00;
    ASSERT_EQ(desk.platform.ReplaceOrder(resting.clOrderId, id, Change(300, 5, newPrice)), 0);
    desk.run(milliseconds(60'000));
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u) << "accepted, replaced; nothing fills far below the market";
    const QVXOrderStruct& u = updates[1];
    EXPECT_EQ(u.OrderStatus, QVXOrderStatus::Open);
    EXPECT_EQ(u.Quantity, 300);
    EXPECT_EQ(u.LvsQuantity, 300);
    EXPECT_EQ(u.CumExecQuantity, 0);
    EXPECT_EQ(u.LmtPrice, newPrice);
    EXPECT_EQ(u.PriceTypeCode, 5);
    EXPECT_EQ(u.ClOrderID, "ACCT01-20240315-57-1-M1");
    EXPECT_EQ(u.Memo, resting.memo) << "the memo keeps it in its basket";
    EXPECT_EQ(u.Symbol, "IBM");
    EXPECT_EQ(u.Side, "B");

    // Order tracking still knows the order by the id it was sent with.
    desk.platform.CancelOrder(resting.clOrderId, id, "", "");
    desk.drain();
    EXPECT_EQ(desk.events.of(id).back().OrderStatus, QVXOrderStatus::Cancelled);
}

TEST_F(SimReplace, EmptyNewIdIsNumberedFromTheCurrentOne) {
    const int32_t id = SendResting();
    const double price = resting.price;
    ASSERT_EQ(desk.platform.ReplaceOrder(resting.clOrderId, id, Change(200, 5, price, "")), 0);
    ASSERT_EQ(desk.platform.ReplaceOrder("", id, Change(250, 5, price, "")), 0);
    desk.drain();
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 3u);
    EXPECT_EQ(updates[1].ClOrderID, resting.clOrderId + "-R1");
    EXPECT_EQ(updates[2].ClOrderID, resting.clOrderId + "-R1-R2");
    EXPECT_EQ(updates[2].Quantity, 250);
}

TEST_F(SimReplace, PartlyFilledOrderKeepsItsFillsAndGetsNewLeaves) {
    OrderFields fields;
    fields.quantity = 5000; // a market order: one clip of 1000 fills on arrival
    const int32_t id = desk.send(fields);
    desk.drain();
    const QVXOrderStruct before = desk.events.of(id).back();
    ASSERT_EQ(before.CumExecQuantity, 1000);
    const double farBelow = quote().BidPrice - 5.00;
    ASSERT_EQ(desk.platform.ReplaceOrder(fields.clOrderId, id, Change(3000, 5, farBelow)), 0);
    desk.run(milliseconds(60'000));
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 3u) << "as a resting limit it stops filling";
    const QVXOrderStruct& u = updates[2];
    EXPECT_EQ(u.OrderStatus, QVXOrderStatus::PartiallyFilled);
    EXPECT_EQ(u.Quantity, 3000);
    EXPECT_EQ(u.CumExecQuantity, 1000);
    EXPECT_EQ(u.LvsQuantity, 2000);
    EXPECT_EQ(u.AvgExecPrice, before.AvgExecPrice);
    EXPECT_EQ(u.PriceTypeCode, 5);
}

TEST_F(SimReplace, RefusalsLeaveTheOrderAsItWas) {
    OrderFields partly; // 1000 of 5000 filled, the rest working in clips
    partly.quantity = 5000;
    partly.clOrderId = "P-1";
    const int32_t partlyId = desk.send(partly);
    OrderFields filled;
    filled.clOrderId = "F-1";
    const int32_t filledId = desk.send(filled);
    const int32_t restingId = SendResting();
    OrderFields cancelled = resting;
    cancelled.clOrderId = "C-1";
    const int32_t cancelledId = desk.send(cancelled);
    desk.platform.CancelOrder("C-1", cancelledId, "", "");
    desk.drain();
    ASSERT_EQ(desk.events.of(filledId).back().OrderStatus, QVXOrderStatus::Filled);

    struct Row {
        const char* name;
        std::string clOrderId;
        int32_t recordId;
        QVXOrderChange change;
        int32_t result;
    };
    const double price = resting.price;
    const Row rows[] = {
        {"filled order", "F-1", filledId, Change(200, 5, price), kReplaceOrderNotOpen},
        {"cancelled order", "C-1", cancelledId, Change(200, 5, price), kReplaceOrderNotOpen},
        {"unknown record", "X", 999, Change(200, 5, price), kReplaceOrderNotOpen},
        {"negative record", "X", -1, Change(200, 5, price), kReplaceOrderNotOpen},
        {"id of another order", "F-1", restingId, Change(200, 5, price), kReplaceOrderNotOpen},
        {"quantity equal to the filled", "P-1", partlyId, Change(1000, 5, price), -3},
        {"quantity below the filled", "P-1", partlyId, Change(999, 5, price), -3},
        {"zero quantity", resting.clOrderId, restingId, Change(0, 5, price), -3},
        {"negative quantity", resting.clOrderId, restingId, Change(-100, 5, price), -3},
        {"unknown price type", resting.clOrderId, restingId, Change(200, 3, price), -5},
        {"limit without a price", resting.clOrderId, restingId, Change(200, 5, 0), -5},
        {"limit with a negative price", resting.clOrderId, restingId, Change(200, 5, -1), -5},
    };
    const size_t updatesBefore = desk.events.updates.size();
    for (const Row& r : rows) {
        EXPECT_EQ(desk.platform.ReplaceOrder(r.clOrderId, r.recordId, r.change), r.result)
            << r.name;
    }
    desk.drain();
    for (size_t i = updatesBefore; i < desk.events.updates.size(); ++i) {
        EXPECT_NE(desk.events.updates[i].LogMessage, "Replaced")
            << "refused, yet order " << desk.events.updates[i].OrderRecordId << " changed";
    }
    EXPECT_EQ(desk.events.of(restingId).back().Quantity, 100);

    desk.platform.Stop();
    EXPECT_EQ(desk.platform.ReplaceOrder(resting.clOrderId, restingId, Change(200, 5, price)), -16);
}

TEST_F(SimReplace, LimitMadeMarketableFillsAtTheTouchAfterTheReplace) {
    const int32_t id = SendResting(100);
    desk.drain();
    const double ask = quote().AskPrice;
    ASSERT_EQ(desk.platform.ReplaceOrder(resting.clOrderId, id, Change(100, 5, ask + 0.50)), 0);
    desk.drain();
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 3u);
    EXPECT_EQ(updates[1].LogMessage, "Replaced");
    EXPECT_EQ(updates[1].CumExecQuantity, 0) << "the replace is reported before its fill";
    EXPECT_EQ(updates[2].OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(updates[2].AvgExecPrice, ask) << "a marketable limit trades at the touch";
    EXPECT_EQ(updates[2].ClOrderID, "ACCT01-20240315-57-1-M1");
}

TEST_F(SimReplace, MarketOnCloseTurnedIntoARestingLimitMissesTheAuction) {
    OrderFields moc;
    moc.priceType = 2;
    const int32_t id = desk.send(moc);
    ASSERT_EQ(
        desk.platform.ReplaceOrder(moc.clOrderId, id, Change(100, 5, quote().BidPrice - 5.00)), 0);
    desk.run(milliseconds(10'000)); // well past the fill delay
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u);
    EXPECT_EQ(updates[1].LvsQuantity, 100);
    EXPECT_FALSE(updates[1].Moc);
}

TEST_F(SimReplace, RestingLimitTurnedIntoMarketOnCloseFillsAfterTheDelayOnly) {
    const int32_t id = SendResting(100);
    ASSERT_EQ(desk.platform.ReplaceOrder(resting.clOrderId, id, Change(100, 2, 0)), 0);
    desk.run(milliseconds(2'000));
    ASSERT_EQ(desk.events.of(id).size(), 2u) << "waits for the auction";
    EXPECT_TRUE(desk.events.of(id).back().Moc);
    EXPECT_EQ(desk.events.of(id).back().LmtPrice, 0);
    desk.run(milliseconds(2'000));
    EXPECT_EQ(desk.events.of(id).back().OrderStatus, QVXOrderStatus::Filled);
}

} // namespace
} // namespace wicker::test
