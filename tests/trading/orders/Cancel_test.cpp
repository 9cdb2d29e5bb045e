#include "support/RecordingMessageBoxes.h"
#include "support/TrackedOrders.h"
#include "trading/orders/BasketCancel.h"
#include "trading/orders/ExitWithOpenOrders.h"

#include <optional>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;
using test::TrackedOrder;

struct CancelCall {
    std::string text;
    int32_t number;
    std::string third;
    std::string fourth;
    int openWhenCalled; ///< open orders the tracker showed at the moment of the call
    bool operator==(const CancelCall&) const = default;
};

class RecordingMaintenance : public QVXOrderMaintenance {
public:
    explicit RecordingMaintenance(const OrderTracker& tracker) : m_tracker(tracker) {}
    void CancelOrder(const std::string& text, int32_t number, const std::string& third,
                     const std::string& fourth) override {
        int open = 0;
        for (const OrderUpdate& o : m_tracker.Orders()) {
            open += o.m_nLvsQuantity > 0 ? 1 : 0;
        }
        calls.push_back(CancelCall{text, number, third, fourth, open});
    }
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange&) override {
        replaces.emplace_back(clOrderId, orderRecordId);
        return 0;
    }
    std::vector<CancelCall> calls;
    std::vector<std::pair<std::string, int32_t>> replaces;

private:
    const OrderTracker& m_tracker;
};

class Cancel : public ::testing::Test {
protected:
    Cancel() : tracker(boxes, clock), maintenance(tracker), cancel(tracker, maintenance, boxes) {}

    void SendTwoBaskets() {
        tracker.OnQVXOrderUpdate(TrackedOrder(11, "Tech-10-57-/bskt", "ACC-57-1", 100));
        tracker.OnQVXOrderUpdate(TrackedOrder(12, "Tech-10-57-/bskt", "ACC-57-2", 0)); // filled
        tracker.OnQVXOrderUpdate(TrackedOrder(13, "Tech10-58-/bskt", "ACC-58-1", 40));
        tracker.OnQVXOrderUpdate(TrackedOrder(14, "Other-59-/bskt", "ACC-59-1", 5));
        tracker.OnQVXOrderUpdate(TrackedOrder(15, "Tech-10-57-/bskt", "ACC-57-3", 70));
    }

    RecordingMessageBoxes boxes;
    ManualClock clock;
    OrderTracker tracker;
    RecordingMaintenance maintenance;
    BasketCancel cancel;
};

TEST_F(Cancel, AllWithNothingOpenSaysSoAndSendsNothing) {
    tracker.OnQVXOrderUpdate(TrackedOrder(1, "A-1-/bskt", "C-1", 0));
    EXPECT_EQ(cancel.mnuCxlAll(true), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0],
              (MessageRequest{"There are no baskets with open orders.", "No Open Orders",
                              MsgButtons::Ok, MsgIcon::Exclamation}));
    EXPECT_TRUE(maintenance.calls.empty());
}

TEST_F(Cancel, AllWithoutConfirmationCancelsEveryOpenOrderInOrderAfterZeroingThem) {
    SendTwoBaskets();
    EXPECT_EQ(cancel.mnuCxlAll(false), 4);
    EXPECT_TRUE(boxes.shown().empty());
    const std::vector<CancelCall> expected{{"ACC-57-1", 11, "", "", 0},
                                           {"ACC-58-1", 13, "", "", 0},
                                           {"ACC-59-1", 14, "", "", 0},
                                           {"ACC-57-3", 15, "", "", 0}};
    EXPECT_EQ(maintenance.calls, expected);
}

TEST_F(Cancel, AllTwiceFindsNothingTheSecondTime) {
    SendTwoBaskets();
    cancel.mnuCxlAll(false);
    EXPECT_EQ(cancel.mnuCxlAll(false), 0);
    EXPECT_EQ(maintenance.calls.size(), 4u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "There are no baskets with open orders.");
    // The platform's next report brings the leaves back.
    tracker.OnQVXOrderUpdate(TrackedOrder(13, "", "", 40));
    EXPECT_EQ(cancel.mnuCxlAll(false), 1);
}

TEST_F(Cancel, AllAsksFirstWhenSetAndNoKeepsEverything) {
    SendTwoBaskets();
    boxes.answerNext(MsgAnswer::No);
    EXPECT_EQ(cancel.mnuCxlAll(true), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0], (MessageRequest{"Do you want to cancel all open basket orders?",
                                                "Cancel All Basket Orders", MsgButtons::YesNo,
                                                MsgIcon::Question, MsgDefault::Second}));
    EXPECT_TRUE(maintenance.calls.empty());
    EXPECT_EQ(tracker.Orders()[0].m_nLvsQuantity, 100);

    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_EQ(cancel.mnuCxlAll(true), 4);
}

TEST_F(Cancel, SelectedCancelsOnlyThatSendOfThatBasket) {
    SendTwoBaskets();
    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"57", "Tech10"}, true), 2);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0], (MessageRequest{"Do you want to cancel all orders for basket #57",
                                                "Cancel Selected Orders", MsgButtons::YesNo,
                                                MsgIcon::Question, MsgDefault::Second}));
    const std::vector<CancelCall> expected{{"ACC-57-1", 11, "", "", 2},
                                           {"ACC-57-3", 15, "", "", 2}};
    EXPECT_EQ(maintenance.calls, expected);
    EXPECT_EQ(tracker.Orders()[2].m_nLvsQuantity, 40); // send 58 of the same basket stays
}

TEST_F(Cancel, SelectedWithoutOpenOrdersOrWithoutSelection) {
    SendTwoBaskets();
    EXPECT_EQ(cancel.mnuCxlSel(std::nullopt, true), 0);
    EXPECT_TRUE(boxes.shown().empty());

    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"60", "Tech10"}, true), 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0],
              (MessageRequest{"That basket does not contain any open orders.", "No Open Orders",
                              MsgButtons::Ok, MsgIcon::Exclamation}));
    boxes.answerNext(MsgAnswer::No);
    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"59", "Other"}, true), 0);
    EXPECT_TRUE(maintenance.calls.empty());
    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"59", "Other"}, false), 1);
    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"59", "Other"}, false), 0);
}

struct ExitCase {
    const char* name;
    bool openOrders;
    bool askBeforeExit;
    std::optional<MsgAnswer> answer; ///< nothing: the trader presses Enter
    bool asked;
    bool mayEnd;
    size_t cancelsSent;
};

class ExitWithOpenOrders : public Cancel, public ::testing::WithParamInterface<ExitCase> {};

TEST_P(ExitWithOpenOrders, EachAnswerDoesWhatItSays) {
    const ExitCase& c = GetParam();
    if (c.openOrders) {
        SendTwoBaskets(); // four of five orders open
    } else {
        tracker.OnQVXOrderUpdate(TrackedOrder(1, "A-1-/bskt", "C-1", 0));
    }
    if (c.answer) {
        boxes.answerNext(*c.answer);
    }
    EXPECT_EQ(ConfirmExitWithOpenOrders(tracker, cancel, boxes, c.askBeforeExit), c.mayEnd);
    EXPECT_EQ(maintenance.calls.size(), c.cancelsSent);
    ASSERT_EQ(boxes.shown().size(), c.asked ? 1u : 0u);
    if (c.asked) {
        EXPECT_EQ(boxes.shown()[0],
                  (MessageRequest{"4 orders are still open.\r\n\r\nYes: cancel all 4 and exit.\r\n"
                                  "No: exit and leave them working.\r\nCancel: stay in Wicker.",
                                  "Exit Wicker", MsgButtons::YesNoCancel, MsgIcon::Question,
                                  MsgDefault::Second}));
    }
    EXPECT_EQ(OpenOrderCount(tracker), c.openOrders && c.cancelsSent == 0 ? 4u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ExitWithOpenOrders,
    ::testing::Values(ExitCase{"YesCancelsAllAndExits", true, true, MsgAnswer::Yes, true, true, 4},
                      ExitCase{"EnterExitsLeavingThemWorking", true, true, {}, true, true, 0},
                      ExitCase{"CancelStays", true, true, MsgAnswer::Cancel, true, false, 0},
                      ExitCase{"NothingOpenExitsUnasked", false, true, {}, false, true, 0},
                      ExitCase{"SettingOffExitsUnasked", true, false, {}, false, true, 0}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace wicker
