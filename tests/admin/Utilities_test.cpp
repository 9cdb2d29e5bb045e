#include "admin/AdminTestDb.h"
#include "admin/OpenLeaves.h"
#include "admin/RecordingTradingReset.h"
#include "admin/Utilities.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class Utilities : public testing::Test {
protected:
    AdminTestDb t;
    RecordingMessageBoxes boxes;
    RecordingTradingReset trading;
};

TEST_F(Utilities, TestConnectionReportsTheVersion) {
    EXPECT_TRUE(TestDbConnection(*t.db, boxes));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0], (MessageRequest{"Successfully connected to database.\r\nDatabase "
                                                "version 5010",
                                                "Database Test Successful!"}));
}

TEST_F(Utilities, TestConnectionWithoutAVersionRowOrTableIsADatabaseError) {
    for (const char* spoil : {"DELETE FROM tblConfig", "DROP TABLE tblConfig"}) {
        SCOPED_TRACE(spoil);
        boxes.clear();
        t.db->ExecuteSql(spoil);
        EXPECT_FALSE(TestDbConnection(*t.db, boxes));
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0].title, "Database Error.");
        EXPECT_FALSE(boxes.shown()[0].text.empty());
    }
}

TEST(CreateInitialDataTwice, GivesSixteenDestinationsAndTwoVersionRows) {
    AdminTestDb t(/*bare=*/true);
    CreateInitialDataAgain(*t.db);
    CreateInitialDataAgain(*t.db);
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest"), (Texts{"16"}));
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest WHERE intEnabled = 1"), (Texts{"16"}));
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest WHERE strDest = 'NY/AM'"), (Texts{"2"}));
    EXPECT_EQ(t.rows("SELECT strDbVersion FROM tblConfig"), (Texts{"1.2.0", "1.2.0"}));
}

TEST(CreateInitialDataTwice, TheVersionReadIsTheFirstRows) {
    AdminTestDb t; // at "5010"
    RecordingMessageBoxes boxes;
    CreateInitialDataAgain(*t.db);
    EXPECT_EQ(t.rows("SELECT strDbVersion FROM tblConfig"), (Texts{"5010", "1.2.0"}));
    EXPECT_EQ(GetDbVersion(*t.db, boxes), "5010");
    TestDbConnection(*t.db, boxes);
    EXPECT_EQ(boxes.texts().back(), "Successfully connected to database.\r\nDatabase version 5010");
}

TEST(CreateInitialDataTwice, AFailureAddsNothing) {
    AdminTestDb t(/*bare=*/true);
    t.db->ExecuteSql("DROP TABLE tblConfig");
    EXPECT_THROW(CreateInitialDataAgain(*t.db), DbError);
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest"), (Texts{"0"}));
}

TEST_F(Utilities, ClearTradingDataClearsAndSaysSo) {
    ClearTradingData(trading, boxes);
    EXPECT_EQ(trading.calls, (Texts{"ClearTradingData"}));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Trading data cleared.");
    EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
    EXPECT_EQ(t.rows("SELECT COUNT(*) FROM tblDest"), (Texts{"8"})); // nothing stored touched
}

TEST_F(Utilities, MarkAllClosedAsksWithNoAsTheDefault) {
    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_TRUE(MarkAllOrdersClosed(trading, boxes));
    ASSERT_EQ(boxes.shown().size(), 1u);
    const MessageRequest& asked = boxes.shown()[0];
    EXPECT_EQ(asked.text, "Do you want to mark all orders closed?");
    EXPECT_EQ(asked.title, "Order Maint.");
    EXPECT_EQ(asked.buttons, MsgButtons::YesNo);
    EXPECT_EQ(asked.defaultButton, MsgDefault::Second);
    EXPECT_EQ(trading.calls, (Texts{"MarkAllOrdersClosed"}));
}

TEST_F(Utilities, MarkAllClosedAnsweredNoChangesNothing) {
    boxes.answerNext(MsgAnswer::No);
    EXPECT_FALSE(MarkAllOrdersClosed(trading, boxes));
    EXPECT_TRUE(trading.calls.empty());
    // Enter takes the default button, which is No.
    EXPECT_FALSE(MarkAllOrdersClosed(trading, boxes));
    EXPECT_TRUE(trading.calls.empty());
}

QVXOrderStruct BasketOrder(int32_t id, int32_t quantity, int32_t leaves) {
    QVXOrderStruct r;
    r.OrderRecordId = id;
    r.Memo = "Tech-3-/bskt";
    r.ClOrderID = "C" + std::to_string(id);
    r.Side = "B";
    r.Symbol = r.Instrument = "IBM";
    r.Quantity = quantity;
    r.LvsQuantity = leaves;
    r.CumExecQuantity = quantity - leaves;
    return r;
}

TEST(ZeroOpenLeaves, ClosesOnlyOrdersWithLeaves) {
    RecordingMessageBoxes boxes;
    ManualClock clock;
    OrderTracker tracker(boxes, clock);
    tracker.OnQVXOrderUpdate(BasketOrder(1, 100, 100));
    tracker.OnQVXOrderUpdate(BasketOrder(2, 100, 0));
    tracker.OnQVXOrderUpdate(BasketOrder(3, 200, 50));
    ASSERT_EQ(tracker.Orders().size(), 3u);

    EXPECT_EQ(ZeroOpenLeaves(tracker), 2);
    for (const auto& order : tracker.Orders()) {
        EXPECT_EQ(order.m_nLvsQuantity, 0) << order.m_nOrderRecordId;
    }
    // Filled quantities stay as the platform reported them.
    EXPECT_EQ(tracker.Orders()[2].m_nCumExecQuantity, 150);
    EXPECT_EQ(ZeroOpenLeaves(tracker), 0);
}

} // namespace
} // namespace wicker
