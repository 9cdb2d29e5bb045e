#include "platform/TicketOrder.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/orders/ClOrderIdIndex.h"
#include "trading/orders/OrderTracker.h"
#include "trading/orders/RecordIdIndex.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;
using Outcome = OrderTracker::UpdateOutcome;

QVXOrderStruct Record(int32_t id, std::string memo, std::string clOrderId = "",
                      std::string side = "B", int32_t quantity = 100, int32_t leaves = 100,
                      int32_t filled = 0, double avgPrice = 0, std::string symbol = "IBM") {
    QVXOrderStruct r;
    r.OrderRecordId = id;
    r.Memo = std::move(memo);
    r.ClOrderID = std::move(clOrderId);
    r.Side = std::move(side);
    r.Quantity = quantity;
    r.LvsQuantity = leaves;
    r.CumExecQuantity = filled;
    r.AvgExecPrice = avgPrice;
    r.Symbol = symbol;
    r.Instrument = std::move(symbol);
    return r;
}

QVXRejectStruct Reject(std::string clOrderId, std::string side, int32_t quantity,
                       std::string symbol, int32_t reason) {
    QVXRejectStruct r;
    r.ClOrderID = std::move(clOrderId);
    r.Side = std::move(side);
    r.Quantity = quantity;
    r.Symbol = std::move(symbol);
    r.RejectReason = reason;
    return r;
}

class Tracking : public ::testing::Test {
protected:
    Tracking() : clock(FromLocal(LocalDateTime{2024, 3, 15, 14, 5, 9, 0})), tracker(boxes, clock) {}

    RecordingMessageBoxes boxes;
    ManualClock clock;
    OrderTracker tracker;
};

TEST_F(Tracking, BasketOrdersAreRecognisedByTheirMemo) {
    struct Row {
        const char* memo;
        Outcome outcome;
        const char* basket;
        int16_t seq;
    };
    const Row rows[] = {
        {"A-1-/bskt", Outcome::Added, "A", 1},
        {"Tech-10-57-/bskt", Outcome::Added, "Tech10", 57},
        {"A-/bskt", Outcome::NotABasketOrder, "", 0},
        {"A-1-bskt", Outcome::NotABasketOrder, "", 0},
        {"", Outcome::NotABasketOrder, "", 0},
        {"-3-/bskt", Outcome::NotABasketOrder, "", 0},
        {"A-x-/bskt", Outcome::BadMemo, "", 0},
    };
    int32_t id = 1;
    for (const Row& r : rows) {
        const size_t before = tracker.Orders().size();
        EXPECT_EQ(tracker.OnQVXOrderUpdate(Record(id, r.memo)), r.outcome) << r.memo;
        if (r.outcome == Outcome::Added) {
            ASSERT_EQ(tracker.Orders().size(), before + 1) << r.memo;
            EXPECT_EQ(tracker.Orders().back().m_strBasketId, r.basket);
            EXPECT_EQ(tracker.Orders().back().m_nBasketSeq, r.seq);
            EXPECT_EQ(tracker.FindOrder(id), &tracker.Orders().back());
        } else {
            EXPECT_EQ(tracker.Orders().size(), before) << r.memo;
            EXPECT_EQ(tracker.FindOrder(id), nullptr) << r.memo;
        }
        ++id;
    }
}

TEST_F(Tracking, LaterUpdatesGoToTheOrderWithTheRecordIdWhateverTheirMemo) {
    tracker.OnQVXOrderUpdate(Record(7, "A-1-/bskt", "ACC-20240315-1-1", "B", 100, 100));
    tracker.OnQVXOrderUpdate(Record(8, "A-1-/bskt", "ACC-20240315-1-2", "B", 50, 50));
    EXPECT_EQ(tracker.OnQVXOrderUpdate(Record(7, "", "other", "B", 100, 40, 60, 10.5)),
              Outcome::Updated);
    ASSERT_EQ(tracker.Orders().size(), 2u);
    const OrderUpdate& o = tracker.Orders()[0];
    EXPECT_EQ(o.m_nLvsQuantity, 40);
    EXPECT_EQ(o.m_nCumExecQuantity, 60);
    EXPECT_EQ(o.m_fAvgExecPrice, 10.5);
    EXPECT_EQ(o.m_strBasketId, "A");                 // kept from the first sight
    EXPECT_EQ(o.m_strClOrderId, "ACC-20240315-1-1"); // kept from the first sight
    EXPECT_EQ(tracker.Orders()[1].m_nLvsQuantity, 50);
}

void ExpectEveryField(const OrderUpdate& o) {
    EXPECT_EQ(o.m_strAccount, "v0");
    EXPECT_EQ(o.m_strAction, "v1");
    EXPECT_EQ(o.Extras().m_strBatchId, "v2");
    EXPECT_EQ(o.m_strDestination, "v3");
    EXPECT_EQ(o.m_strExchClOrderId, "v4");
    EXPECT_EQ(o.m_strExchOrderId, "v5");
    EXPECT_EQ(o.Extras().m_strExecBroker, "v6");
    EXPECT_EQ(o.Extras().m_strExecInst, "v7");
    EXPECT_EQ(o.m_strInstrument, "v8");
    EXPECT_EQ(o.m_strLogMessage, "v9");
    EXPECT_EQ(o.m_strOrderTime, "v10");
    EXPECT_EQ(o.Extras().m_strPairId, "v11");
    EXPECT_EQ(o.m_strPriceType, "v12");
    EXPECT_EQ(o.m_strSide, "v13");
    EXPECT_EQ(o.Extras().m_fTrailInc, 14.5);
    EXPECT_EQ(o.Extras().m_strSorPreference, "v15");
    EXPECT_EQ(o.Extras().m_strStrategy, "v16");
    EXPECT_EQ(o.Extras().m_strStartTime, "v17");
    EXPECT_EQ(o.Extras().m_strEndTime, "v18");
    EXPECT_EQ(o.m_strTif, "v19");
    EXPECT_EQ(o.m_strUpdateTime, "v20");
    EXPECT_EQ(o.Extras().m_strUser, "v21");
    EXPECT_EQ(o.Extras().m_strUserId, "v22");
    EXPECT_EQ(o.m_fAvgExecPrice, 23.5);
    EXPECT_EQ(o.Extras().m_fAvgPriceLmt, 24.5);
    EXPECT_EQ(o.Extras().m_fCashComponent, 25.5);
    EXPECT_EQ(o.Extras().m_fDiscretion, 26.5);
    EXPECT_EQ(o.m_fExecPriceLmt, 27.5);
    EXPECT_EQ(o.m_fLmtPrice, 28.5);
    EXPECT_EQ(o.Extras().m_fMaxHighPctDeviation, 29.5);
    EXPECT_EQ(o.Extras().m_fMaxLowPctDeviation, 30.5);
    EXPECT_EQ(o.Extras().m_fPctPerSlice, 31.5);
    EXPECT_EQ(o.Extras().m_fPegDiff, 32.5);
    EXPECT_EQ(o.Extras().m_fPremium, 33.5);
    EXPECT_EQ(o.Extras().m_fRatio, 34.5);
    EXPECT_EQ(o.Extras().m_fReactPrice, 35.5);
    EXPECT_EQ(o.Extras().m_fStpPrice, 36.5);
    EXPECT_EQ(o.Extras().m_fTargetPctVolume, 37.5);
    EXPECT_EQ(o.Extras().m_fTargetPrice, 38.5);
    EXPECT_EQ(o.Extras().m_fTilt, 39.5);
    EXPECT_EQ(o.Extras().m_fTrailAmt, 40.5);
    EXPECT_EQ(o.Extras().m_fUrStpdPrice, 41.5);
    EXPECT_EQ(o.m_nSeqNum, 1042);
    EXPECT_EQ(o.Extras().m_nAuction, 1043);
    EXPECT_EQ(o.m_nCumExecQuantity, 1044);
    EXPECT_EQ(o.Extras().m_nDbsNo, 1045);
    EXPECT_EQ(o.m_nDisplay, 1046);
    EXPECT_EQ(o.Extras().m_nDuration, 1047);
    EXPECT_EQ(o.Extras().m_nExecAggression, 1048);
    EXPECT_EQ(o.m_nLvsQuantity, 1049);
    EXPECT_EQ(o.Extras().m_nMarketStructure, 1050);
    EXPECT_EQ(o.Extras().m_nMaxPctVolume, 1051);
    EXPECT_EQ(o.Extras().m_nMinPctVolume, 1052);
    EXPECT_EQ(o.Extras().m_nMinQuantity, 1053);
    EXPECT_EQ(o.Extras().m_nOrderCompletion, 1054);
    EXPECT_EQ(o.m_nOrderRecordId, 1055);
    EXPECT_EQ(o.m_nOrderStatus, 1056);
    EXPECT_EQ(o.Extras().m_nPingInterval, 1057);
    EXPECT_EQ(o.Extras().m_nPriceTolerance, 1058);
    EXPECT_EQ(o.m_nPriceType, 1059);
    EXPECT_EQ(o.m_nQuantity, 1060);
    EXPECT_EQ(o.Extras().m_nQtyTolerancePct, 1061);
    EXPECT_EQ(o.Extras().m_nQtyToleranceSize, 1062);
    EXPECT_EQ(o.Extras().m_nRefresh, 1063);
    EXPECT_EQ(o.Extras().m_nRefreshInterval, 1064);
    EXPECT_EQ(o.Extras().m_nSeqNo, 1065);
    EXPECT_EQ(o.Extras().m_nSizeLow, 1066);
    EXPECT_EQ(o.Extras().m_nSizeMax, 1067);
    EXPECT_EQ(o.Extras().m_nTrailId, 1068);
    EXPECT_TRUE(o.m_bMoo);
    EXPECT_TRUE(o.m_bMoc);
    EXPECT_TRUE(o.Extras().m_bOpportunisticTrade);
    EXPECT_TRUE(o.Extras().m_bSvrStpReleased);
    EXPECT_TRUE(o.Extras().m_bTakeLiquidity);
}

TEST_F(Tracking, UpdateCopiesEveryKeptFieldAndSetAllMembersCopiesThemOn) {
    QVXOrderStruct r;
    r.Account = "v0";
    r.Action = "v1";
    r.BatchId = "v2";
    r.Destination = "v3";
    r.ExchClOrderId = "v4";
    r.ExchOrderId = "v5";
    r.ExecBroker = "v6";
    r.ExecInst = "v7";
    r.Instrument = "v8";
    r.LogMessage = "v9";
    r.OrderTime = "v10";
    r.PairId = "v11";
    r.PriceType = "v12";
    r.Side = "v13";
    r.TrailInc = 14.5;
    r.SorPreference = "v15";
    r.Strategy = "v16";
    r.StartTime = "v17";
    r.EndTime = "v18";
    r.Tif = "v19";
    r.UpdateTime = "v20";
    r.User = "v21";
    r.UserId = "v22";
    r.AvgExecPrice = 23.5;
    r.AvgPriceLmt = 24.5;
    r.CashComponent = 25.5;
    r.Discretion = 26.5;
    r.ExecPriceLmt = 27.5;
    r.LmtPrice = 28.5;
    r.MaxHighPctDeviation = 29.5;
    r.MaxLowPctDeviation = 30.5;
    r.PctPerSlice = 31.5;
    r.PegDiff = 32.5;
    r.Premium = 33.5;
    r.Ratio = 34.5;
    r.ReactPrice = 35.5;
    r.StpPrice = 36.5;
    r.TargetPctVolume = 37.5;
    r.TargetPrice = 38.5;
    r.Tilt = 39.5;
    r.TrailAmt = 40.5;
    r.UrStpdPrice = 41.5;
    r.SeqNum = 1042;
    r.Auction = 1043;
    r.CumExecQuantity = 1044;
    r.DbsNo = 1045;
    r.Display = 1046;
    r.Duration = 1047;
    r.ExecAggression = 1048;
    r.LvsQuantity = 1049;
    r.MarketStructure = 1050;
    r.MaxPctVolume = 1051;
    r.MinPctVolume = 1052;
    r.MinQuantity = 1053;
    r.OrderCompletion = 1054;
    r.OrderRecordId = 1055;
    r.OrderStatus = 1056;
    r.PingInterval = 1057;
    r.PriceTolerance = 1058;
    r.PriceTypeCode = 1059;
    r.Quantity = 1060;
    r.QtyTolerancePct = 1061;
    r.QtyToleranceSize = 1062;
    r.Refresh = 1063;
    r.RefreshInterval = 1064;
    r.SeqNo = 1065;
    r.SizeLow = 1066;
    r.SizeMax = 1067;
    r.TrailId = 1068;
    r.Moo = true;
    r.Moc = true;
    r.OpportunisticTrade = true;
    r.SvrStpReleased = true;
    r.TakeLiquidity = true;
    r.Memo = "Basket-9-/bskt";
    r.ClOrderID = "ACC-20240315-9-1";
    OrderUpdate o;
    o.UpdateOrder(r, true);
    ExpectEveryField(o);
    EXPECT_EQ(o.m_strBasketId, "Basket");
    EXPECT_EQ(o.m_nBasketSeq, 9);
    EXPECT_EQ(o.m_strClOrderId, "ACC-20240315-9-1");

    OrderUpdate copy;
    copy.SetAllMembers(o);
    ExpectEveryField(copy);
    EXPECT_EQ(copy.m_strBasketId, "Basket");
    EXPECT_EQ(copy.m_nBasketSeq, 9);
    EXPECT_EQ(copy.m_strClOrderId, "ACC-20240315-9-1");

    // Each report is taken whole: one that carries a single rare field clears the others.
    QVXOrderStruct plain;
    plain.Tilt = 1.5;
    o.UpdateOrder(plain, false);
    OrderExtras onlyTilt;
    onlyTilt.m_fTilt = 1.5;
    EXPECT_EQ(o.Extras(), onlyTilt);
    o.UpdateOrder(QVXOrderStruct{}, false);
    EXPECT_EQ(o.Extras(), OrderExtras{});
    EXPECT_EQ(copy.Extras().m_strStrategy, "v16"); // the copy keeps its own
}

// A report that carries a single rare field, whichever, keeps it.
TEST_F(Tracking, EachRareFieldAloneIsKept) {
#define RARE(field, value) [](QVXOrderStruct& r) { r.field = value; }
    using Set = void (*)(QVXOrderStruct&);
    // clang-format off
    const Set sets[] = {
        RARE(BatchId, "x"), RARE(EndTime, "x"), RARE(ExecBroker, "x"), RARE(ExecInst, "x"),
        RARE(PairId, "x"), RARE(SorPreference, "x"), RARE(StartTime, "x"), RARE(Strategy, "x"),
        RARE(User, "x"), RARE(UserId, "x"), RARE(TrailInc, 1), RARE(AvgPriceLmt, 1),
        RARE(CashComponent, 1), RARE(Discretion, 1), RARE(MaxHighPctDeviation, 1),
        RARE(MaxLowPctDeviation, 1), RARE(PctPerSlice, 1), RARE(PegDiff, 1), RARE(Premium, 1),
        RARE(Ratio, 1), RARE(ReactPrice, 1), RARE(StpPrice, 1), RARE(TargetPctVolume, 1),
        RARE(TargetPrice, 1), RARE(Tilt, 1), RARE(TrailAmt, 1), RARE(UrStpdPrice, 1),
        RARE(Auction, 1), RARE(DbsNo, 1), RARE(Duration, 1), RARE(ExecAggression, 1),
        RARE(MarketStructure, 1), RARE(MaxPctVolume, 1), RARE(MinPctVolume, 1),
        RARE(MinQuantity, 1), RARE(OrderCompletion, 1), RARE(PingInterval, 1),
        RARE(PriceTolerance, 1), RARE(QtyTolerancePct, 1), RARE(QtyToleranceSize, 1),
        RARE(Refresh, 1), RARE(RefreshInterval, 1), RARE(SeqNo, 1), RARE(SizeLow, 1),
        RARE(SizeMax, 1), RARE(TrailId, 1), RARE(OpportunisticTrade, true),
        RARE(SvrStpReleased, true), RARE(TakeLiquidity, true),
    };
    // clang-format on
#undef RARE
    for (size_t i = 0; i < std::size(sets); ++i) {
        QVXOrderStruct r;
        sets[i](r);
        OrderUpdate o;
        o.UpdateOrder(r, false);
        EXPECT_NE(o.Extras(), OrderExtras{}) << "rare field " << i;
    }
}

TEST_F(Tracking, NewOrderOfNoBasketFillsNothing) {
    OrderUpdate o;
    o.UpdateOrder(Record(5, "A-1-bskt", "X", "S", 10, 10), true);
    EXPECT_EQ(o.m_strBasketId, "");
    EXPECT_EQ(o.m_nOrderRecordId, 0);
    EXPECT_EQ(o.m_strSide, "");
}

TEST_F(Tracking, RejectsOfOneSecondShowInOneMessage) {
    tracker.OnQVXOrderUpdate(Record(1, "A-1-/bskt", "C-1", "B", 100, 100));
    tracker.OnQVXOrderUpdate(Record(2, "A-1-/bskt", "C-2", "S", 200, 200));
    tracker.OnQVXOrderUpdate(Record(3, "A-1-/bskt", "C-2", "S", 300, 300)); // same id again
    tracker.Timer1sec();
    ASSERT_TRUE(boxes.shown().empty());

    tracker.OnQVXOrderReject(Reject("C-2", "S", 200, "MSFT", 7));
    tracker.OnQVXOrderReject(Reject("unknown", "BUY", 5, "XYZ", -3));
    EXPECT_EQ(tracker.Orders()[0].m_nLvsQuantity, 100);
    EXPECT_EQ(tracker.Orders()[1].m_nLvsQuantity, 0);
    EXPECT_EQ(tracker.Orders()[2].m_nLvsQuantity, 0);
    EXPECT_TRUE(boxes.shown().empty()); // nothing before the tick

    tracker.Timer1sec();
    ASSERT_EQ(boxes.shown().size(), 1u);
    const MessageRequest& m = boxes.shown()[0];
    EXPECT_EQ(m.text, "Order: S 200 MSFT was rejected. Code:  7\r\n"
                      "Order: BUY 5 XYZ was rejected. Code:  -3\r\n");
    EXPECT_EQ(m.title, "Rejection Notification");
    EXPECT_EQ(m.icon, MsgIcon::Exclamation);
    EXPECT_EQ(m.buttons, MsgButtons::Ok);
    EXPECT_TRUE(tracker.PendingRejects().empty());
    // The open counts follow the reject at once.
    ASSERT_EQ(tracker.Rows().size(), 1u);
    EXPECT_EQ(tracker.Rows()[0].m_nOpenOrders, 1);

    tracker.Timer1sec();
    EXPECT_EQ(boxes.shown().size(), 1u);
}

// A reject arriving while the box is open (the box runs its own event loop) is shown by
// the next tick, never dropped; a tick fired inside the box does nothing.
TEST_F(Tracking, RejectArrivingWhileTheBoxIsOpenWaitsForTheNextTick) {
    struct ReentrantBoxes : RecordingMessageBoxes {
        using MessageBoxes::show;
        std::function<void()> whileOpen;
        MsgAnswer show(const MessageRequest& request) override {
            if (whileOpen) {
                auto f = std::move(whileOpen);
                whileOpen = nullptr;
                f();
            }
            return RecordingMessageBoxes::show(request);
        }
    } reentrant;
    OrderTracker t(reentrant, clock);
    t.OnQVXOrderReject(Reject("C-1", "B", 1, "A", 1));
    bool nestedRebuilt = true;
    reentrant.whileOpen = [&] {
        t.OnQVXOrderReject(Reject("C-2", "B", 2, "B", 2));
        nestedRebuilt = t.Timer1sec();
    };
    t.Timer1sec();
    EXPECT_FALSE(nestedRebuilt);
    ASSERT_EQ(reentrant.shown().size(), 1u);
    t.Timer1sec();
    ASSERT_EQ(reentrant.shown().size(), 2u);
    EXPECT_EQ(reentrant.shown()[1].text, "Order: B 2 B was rejected. Code:  2\r\n");
}

TEST_F(Tracking, TickRebuildsOnlyAfterAChangeAndRefreshesSummaryWindows) {
    int fills = 0;
    int removedFills = 0;
    tracker.AddOrderSummaryWindow([&] { ++fills; });
    const int closed = tracker.AddOrderSummaryWindow([&] { ++removedFills; });
    tracker.RemoveOrderSummaryWindow(closed);

    EXPECT_FALSE(tracker.Timer1sec());
    tracker.OnQVXOrderUpdate(Record(1, "A-1-/bskt"));
    tracker.OnQVXOrderUpdate(Record(1, "A-1-/bskt"));
    EXPECT_TRUE(tracker.OrdersChanged());
    EXPECT_TRUE(tracker.Timer1sec());
    EXPECT_FALSE(tracker.OrdersChanged());
    EXPECT_EQ(fills, 1);
    EXPECT_FALSE(tracker.Timer1sec());
    // An update that changes nothing still costs one refresh.
    tracker.OnQVXOrderUpdate(Record(1, "A-1-/bskt"));
    EXPECT_TRUE(tracker.Timer1sec());
    EXPECT_EQ(fills, 2);
    EXPECT_EQ(removedFills, 0);
    // Orders of no basket change nothing.
    tracker.OnQVXOrderUpdate(Record(2, "manual"));
    EXPECT_FALSE(tracker.Timer1sec());
}

TEST_F(Tracking, FillOrderListGivesOneLinePerSendWithItsTotals) {
    // Tech10 send 57: buy 300 (fully filled at 10.00), buy 200 (50 at 20.10), sell 100 open.
    tracker.OnQVXOrderUpdate(Record(1, "Tech10-57-/bskt", "A-1", "B", 300, 0, 300, 10.0, "IBM"));
    tracker.OnQVXOrderUpdate(Record(2, "Tech10-57-/bskt", "A-2", "B", 200, 150, 50, 20.1, "MSFT"));
    clock.advance(std::chrono::hours(1));
    // Tech10 send 58 seen an hour later, shorts (fill at 3.333).
    tracker.OnQVXOrderUpdate(Record(3, "Tech10-58-/bskt", "A-3", "T", 30, 27, 3, 3.333, "IBM"));
    tracker.OnQVXOrderUpdate(Record(4, "Tech10-57-/bskt", "A-4", "S", 100, 100, 0, 0, "ORCL"));
    tracker.FillOrderList();

    ASSERT_EQ(tracker.BasketListLines().size(), 2u);
    EXPECT_EQ(tracker.BasketListLines()[0],
              (BasketListLine{"57", "Tech10", "02:05:09 PM", "3", "2", "600", "250", "350",
                              "4,005.00", "0.00", "58.33", "", "Sell"}));
    EXPECT_EQ(tracker.BasketListLines()[1],
              (BasketListLine{"58", "Tech10", "03:05:09 PM", "1", "1", "30", "27", "3", "0.00",
                              "10.00", "10.00", "", "Short"}));
    ASSERT_EQ(tracker.Rows().size(), 2u);
    EXPECT_EQ(tracker.Rows()[0].m_strListKey, "Basket 57");
    EXPECT_EQ(tracker.Rows()[0].m_cOrders.size(), 3u);
    EXPECT_EQ(tracker.Rows()[0].m_cOrders[2]->m_nOrderRecordId, 4);
    EXPECT_EQ(tracker.Symbols(), (std::vector<std::string>{"IBM", "MSFT", "ORCL"}));
}

TEST_F(Tracking, SidesAndEmptyTotals) {
    struct Row {
        const char* side;
        bool buys;
        const char* shown;
    };
    const Row rows[] = {{"B", true, "Buy"},   {"M", true, "M"},      {"C", true, "C"},
                        {"S", false, "Sell"}, {"T", false, "Short"}, {"BUY", false, "BUY"},
                        {"b", false, "b"}};
    for (const Row& r : rows) {
        OrderTracker t(boxes, clock);
        t.OnQVXOrderUpdate(Record(1, "Empty-1-/bskt", "", r.side, 0, 0, 0));
        t.OnQVXOrderUpdate(Record(2, "Filled-2-/bskt", "", r.side, 10, 0, 10, 2.5));
        t.FillOrderList();
        ASSERT_EQ(t.BasketListLines().size(), 2u);
        const BasketListLine& empty = t.BasketListLines()[0];
        EXPECT_EQ(empty[colSide], r.shown) << r.side;
        EXPECT_EQ(empty[colPercentFilled], "100.00"); // nothing to fill
        const BasketListLine& filled = t.BasketListLines()[1];
        EXPECT_EQ(filled[colDlrsBot], r.buys ? "25.00" : "0.00") << r.side;
        EXPECT_EQ(filled[colDlrsSld], r.buys ? "0.00" : "25.00") << r.side;
    }
}

TEST_F(Tracking, LiveColumnsTakeTheIndexText) {
    tracker.setIndexText([](const OrderRow& row) {
        return row.m_strBasketName + "#" + std::to_string(row.m_nBasketNum);
    });
    tracker.OnQVXOrderUpdate(Record(1, "A-1-/bskt", "", "B", 100, 100, 0));
    tracker.FillOrderList();
    EXPECT_EQ(tracker.BasketListLines()[0][colIndex], "A#1");
    EXPECT_EQ(tracker.BasketListLines()[0][colPercentFilled], "0.00");
    tracker.setIndexText([](const OrderRow&) { return std::string("123.4567"); });
    tracker.UpdateLiveColumns();
    EXPECT_EQ(tracker.BasketListLines()[0][colIndex], "123.4567");
}

} // namespace
} // namespace wicker

namespace wicker {
namespace {

std::unique_ptr<QVXOrder> HandedOff(std::string clOrderId, std::string side = "BUY") {
    auto order = std::make_unique<TicketOrder>([](const OrderTicket&) { return 0; });
    order->setMemo("Tech-57-/bskt");
    order->setAccount("ACCT01");
    order->setSymbol("IBM");
    order->setQuantity(300);
    order->setDestination("NYSE");
    order->setSide(std::move(side));
    order->setPriceType(OrderPriceType::Limit);
    order->setLmtPrice(101.25);
    order->setTif("D");
    order->setClOrderID(std::move(clOrderId));
    return order;
}

TEST_F(Tracking, AHandedOffOrderCountsAtOnceAndWaitsForItsFirstAnswer) {
    tracker.OnOrderHandedOff(*HandedOff("ACCT01-20240315-57-1"), 7);
    ASSERT_EQ(tracker.Orders().size(), 1u);
    EXPECT_EQ(tracker.StatusText(0), "Pending New");
    EXPECT_EQ(tracker.Orders()[0].m_strSide, "B");
    tracker.FillOrderList();
    ASSERT_EQ(tracker.Rows().size(), 1u);
    EXPECT_EQ(tracker.Rows()[0].m_nOpenOrders, 1);
    EXPECT_EQ(tracker.Rows()[0].m_nOpenQty, 300);

    clock.advance(std::chrono::milliseconds(9999));
    tracker.Timer1sec();
    EXPECT_EQ(tracker.NoAnswerCount(), 0u);
    clock.advance(std::chrono::milliseconds(1));
    tracker.Timer1sec();
    EXPECT_EQ(tracker.NoAnswerCount(), 1u);
    EXPECT_EQ(tracker.StatusText(0), "No answer");

    QVXOrderStruct open = Record(7, "Tech-57-/bskt", "ACCT01-20240315-57-1", "B", 300, 300);
    open.OrderStatus = QVXOrderStatus::Open;
    EXPECT_EQ(tracker.OnQVXOrderUpdate(open), Outcome::Updated);
    EXPECT_EQ(tracker.Orders().size(), 1u);
    EXPECT_EQ(tracker.NoAnswerCount(), 0u);
    EXPECT_EQ(tracker.StatusText(0), "Open");
}

TEST_F(Tracking, ARejectIsTheAnswerOfAnOrderNoReportReached) {
    tracker.OnOrderHandedOff(*HandedOff("ACCT01-20240315-57-1", "S"), 7);
    QVXRejectStruct reject = Reject("ACCT01-20240315-57-1", "S", 300, "IBM", 5);
    reject.ReasonText = "Unknown symbol";
    tracker.OnQVXOrderReject(reject);
    clock.advance(std::chrono::seconds(30));
    tracker.Timer1sec();
    EXPECT_EQ(tracker.NoAnswerCount(), 0u);
    EXPECT_EQ(tracker.StatusText(0), "Rejected");
    EXPECT_EQ(tracker.Orders()[0].m_nLvsQuantity, 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "Order: S 300 IBM was rejected. Code:  5 - Unknown symbol\r\n");
}

TEST_F(Tracking, AWarningNotesItsOrderAndJoinsTheRejectionNotification) {
    tracker.OnQVXOrderUpdate(Record(7, "Tech-57-/bskt", "ACCT01-20240315-57-1"));
    tracker.OnQVXOrderWarning({7, "ACCT01-20240315-57-1", "IBM", "Filled 200 of 100 shares"});
    tracker.OnQVXOrderWarning({0, "NOT-OURS-1", "MSFT", "Unreadable report"});
    EXPECT_EQ(tracker.StatusText(0), "Filled 200 of 100 shares");
    tracker.Timer1sec();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "Warning: order ACCT01-20240315-57-1 IBM: Filled 200 of 100 shares\r\n"
              "Warning: order NOT-OURS-1 MSFT: Unreadable report\r\n");
}

} // namespace
} // namespace wicker

namespace wicker {
namespace {

// The index behind "the first order whose record id matches": growth, clustering of
// consecutive and colliding ids, and the ids at the ends of the range.
TEST(RecordIdIndex, FindsEveryIdAtItsFirstPosition) {
    RecordIdIndex index;
    std::vector<int32_t> ids = {0, -1, INT32_MIN, INT32_MAX};
    for (int32_t i = 1; i <= 5000; ++i) {
        ids.push_back(i);          // what platforms hand out
        ids.push_back(i << 18);    // same low bits
        ids.push_back(-i * 65536); // same high bits
    }
    for (size_t p = 0; p < ids.size(); ++p) {
        ASSERT_TRUE(index.emplace(ids[p], static_cast<uint32_t>(p))) << ids[p];
    }
    EXPECT_FALSE(index.emplace(7, 99)); // a second order under an id is not indexed
    EXPECT_EQ(index.size(), ids.size());
    for (size_t p = 0; p < ids.size(); ++p) {
        ASSERT_EQ(index.find(ids[p]), std::optional<uint32_t>(static_cast<uint32_t>(p)));
    }
    EXPECT_EQ(index.find(5001), std::nullopt);
    index.clear();
    EXPECT_EQ(index.find(0), std::nullopt);
}

TEST_F(Tracking, ClearForgetsOrdersRejectsRowsAndWatchesAndRefreshesOpenSummaries) {
    tracker.OnQVXOrderUpdate(Record(1, "Tech-1-/bskt", "A1"));
    tracker.OnQVXOrderUpdate(Record(2, "Oil-2-/bskt", "A2", "B", 100, 0, 100));
    tracker.OnQVXOrderReject(Reject("A1", "B", 100, "IBM", 3));
    ASSERT_TRUE(tracker.Timer1sec());
    boxes.clear();
    tracker.OnQVXOrderReject(Reject("A2", "B", 100, "IBM", 3));
    tracker.OnOrderHandedOff(*HandedOff("ACCT01-20240315-57-1"), 7);
    int refills = 0;
    tracker.AddOrderSummaryWindow([&] { ++refills; });

    tracker.Clear();
    EXPECT_TRUE(tracker.Orders().empty());
    EXPECT_TRUE(tracker.Rows().empty());
    EXPECT_TRUE(tracker.BasketListLines().empty());
    EXPECT_TRUE(tracker.Symbols().empty());
    EXPECT_TRUE(tracker.PendingRejects().empty());
    EXPECT_EQ(tracker.FindOrder(1), nullptr);

    // The queued reject and the unanswered order are gone; the open summary window is
    // refilled, with nothing.
    clock.advance(std::chrono::seconds(30));
    EXPECT_TRUE(tracker.Timer1sec());
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(tracker.NoAnswerCount(), 0u);
    EXPECT_EQ(refills, 1);

    // The same record id later is a new order of a new list; a reject of a forgotten client
    // order id touches none of the new orders.
    EXPECT_EQ(tracker.OnQVXOrderUpdate(Record(1, "Tech-3-/bskt", "B1")), Outcome::Added);
    tracker.OnQVXOrderReject(Reject("A1", "B", 100, "IBM", 3));
    EXPECT_EQ(tracker.Orders()[0].m_nLvsQuantity, 100);
    tracker.Timer1sec();
    ASSERT_EQ(tracker.BasketListLines().size(), 1u);
    EXPECT_EQ(tracker.Rows()[0].m_nBasketNum, 3);
    // An order tracked after the lookups is found by its id too.
    tracker.OnOrderHandedOff(*HandedOff("ACCT01-20240315-57-1"), 8);
    tracker.OnQVXOrderReject(Reject("ACCT01-20240315-57-1", "B", 100, "IBM", 3));
    EXPECT_EQ(tracker.Orders()[1].m_nLvsQuantity, 0);
}

// The index behind "every order sent under a client order id, the first sent first": each id
// held by three orders added far apart, so the table grows between them.
TEST(ClOrderIdIndex, FindsEveryOrderOfAnIdInTheOrderAdded) {
    constexpr uint32_t Ids = 1000;
    const auto idOf = [](uint32_t i) { return "ACCT01-20240315-1-" + std::to_string(i); };
    std::vector<std::string> ids;
    for (uint32_t p = 0; p < 3 * Ids; ++p) {
        ids.push_back(idOf(p % Ids));
    }
    const auto keyAt = [&](uint32_t p) -> const std::string& { return ids[p]; };
    ClOrderIdIndex index;
    for (uint32_t p = 0; p < ids.size(); ++p) {
        index.add(ids[p], p);
    }
    for (uint32_t i = 0; i < Ids; ++i) {
        std::vector<uint32_t> found;
        index.forEach(idOf(i), keyAt, [&](uint32_t p) { found.push_back(p); });
        ASSERT_EQ(found, (std::vector<uint32_t>{i, i + Ids, i + 2 * Ids})) << idOf(i);
        ASSERT_EQ(index.first(idOf(i), keyAt), std::optional<uint32_t>(i));
    }
    EXPECT_EQ(index.first(idOf(Ids), keyAt), std::nullopt);
    index.clear();
    EXPECT_EQ(index.first(ids[0], keyAt), std::nullopt);
}

} // namespace
} // namespace wicker
