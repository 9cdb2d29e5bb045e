#include "SimDesk.h"
#include "support/TempDir.h"

#include <cmath>

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using std::chrono::milliseconds;

bool OnPennyGrid(double price) {
    return std::fabs(price * 100 - std::round(price * 100)) < 1e-6;
}

// One execution, worked out from two consecutive updates of the same order.
struct Fill {
    int32_t quantity = 0;
    double price = 0;
};

std::vector<Fill> FillsOf(const std::vector<QVXOrderStruct>& updates) {
    std::vector<Fill> fills;
    int32_t cum = 0;
    double notional = 0;
    for (const QVXOrderStruct& u : updates) {
        if (u.CumExecQuantity != cum) {
            const double now = u.AvgExecPrice * u.CumExecQuantity;
            fills.push_back(
                {u.CumExecQuantity - cum, (now - notional) / (u.CumExecQuantity - cum)});
            cum = u.CumExecQuantity;
            notional = now;
        }
    }
    return fills;
}

// Every update of an order keeps its books: order quantity = open + filled, and the fills
// it reports add up to its average price.
void ExpectConsistent(const std::vector<QVXOrderStruct>& updates) {
    ASSERT_FALSE(updates.empty());
    int32_t lastCum = 0;
    for (const QVXOrderStruct& u : updates) {
        const bool done = u.OrderStatus == QVXOrderStatus::Filled ||
                          u.OrderStatus == QVXOrderStatus::Cancelled ||
                          u.OrderStatus == QVXOrderStatus::Rejected;
        if (done) {
            EXPECT_EQ(u.LvsQuantity, 0);
        } else {
            EXPECT_EQ(u.LvsQuantity + u.CumExecQuantity, u.Quantity);
        }
        EXPECT_GE(u.CumExecQuantity, lastCum) << "filled quantity never goes back";
        EXPECT_EQ(u.Action, QVXOrderStatusText(u.OrderStatus));
        lastCum = u.CumExecQuantity;
    }
}

class SimFills : public IbmDeskTest {
protected:
    // Moves time on in steps until the order is done; false if it never is.
    bool RunUntilDone(int32_t id, int maxSeconds = 4 * 3600) {
        for (int i = 0; i < maxSeconds; ++i) {
            const auto updates = desk.events.of(id);
            if (!updates.empty() && updates.back().LvsQuantity == 0) {
                return true;
            }
            desk.run(milliseconds(1000));
        }
        return false;
    }
};

TEST_F(SimFills, MarketBuyFillsAtOnceAtTheAskAndEchoesTheOrder) {
    const double ask = quote().AskPrice;
    OrderFields fields;
    fields.side = "BUY";
    fields.quantity = 300;
    const int32_t id = desk.send(fields);
    ASSERT_GT(id, 0);
    desk.drain();
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u);
    EXPECT_EQ(updates[0].OrderStatus, QVXOrderStatus::Open);
    EXPECT_EQ(updates[0].LvsQuantity, 300);
    EXPECT_EQ(updates[0].CumExecQuantity, 0);
    EXPECT_EQ(updates[1].OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(updates[1].CumExecQuantity, 300);
    EXPECT_EQ(updates[1].AvgExecPrice, ask);
    for (const QVXOrderStruct& u : updates) {
        EXPECT_EQ(u.Side, "B") << "reported with one letter";
        EXPECT_EQ(u.Memo, "Tech10-57-/bskt");
        EXPECT_EQ(u.ClOrderID, "ACCT01-20240315-57-1");
        EXPECT_EQ(u.Symbol, "IBM");
        EXPECT_EQ(u.Destination, "NASDAQ");
        EXPECT_EQ(u.Account, "ACCT01");
        EXPECT_EQ(u.Quantity, 300);
        EXPECT_EQ(u.OrderRecordId, id);
    }
    ExpectConsistent(updates);
}

TEST_F(SimFills, MarketSellAndShortFillAtTheBid) {
    const double bid = quote().BidPrice;
    for (const char* side : {"S", "T"}) {
        OrderFields fields;
        fields.side = side;
        const int32_t id = desk.send(fields);
        desk.drain();
        const auto updates = desk.events.of(id);
        ASSERT_EQ(updates.size(), 2u) << side;
        EXPECT_EQ(updates.back().Side, side);
        EXPECT_EQ(updates.back().AvgExecPrice, bid) << side;
    }
}

TEST_F(SimFills, LargeOrderFillsInClipsAtTheTouchOfEachTick) {
    OrderFields fields;
    fields.side = "S";
    fields.quantity = 3500;
    const int32_t id = desk.send(fields);
    desk.drain();
    auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u) << "Open, then the first clip at once";
    EXPECT_EQ(updates[1].OrderStatus, QVXOrderStatus::PartiallyFilled);
    EXPECT_EQ(updates[1].CumExecQuantity, 1000);
    EXPECT_EQ(updates[1].LvsQuantity, 2500);

    ASSERT_TRUE(RunUntilDone(id));
    updates = desk.events.of(id);
    ExpectConsistent(updates);
    EXPECT_EQ(updates.back().OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(updates.back().CumExecQuantity, 3500);

    const std::vector<Fill> fills = FillsOf(updates);
    ASSERT_EQ(fills.size(), 4u);
    const int32_t expected[] = {1000, 1000, 1000, 500};
    double notional = 0;
    for (size_t i = 0; i < fills.size(); ++i) {
        EXPECT_EQ(fills[i].quantity, expected[i]);
        EXPECT_TRUE(OnPennyGrid(fills[i].price)) << fills[i].price;
        notional += fills[i].quantity * fills[i].price;
    }
    EXPECT_NEAR(updates.back().AvgExecPrice * 3500, notional, 1e-6);
    // Each clip sold at the bid of the moment it filled.
    for (size_t i = 0; i < updates.size(); ++i) {
        if (i > 0 && updates[i].CumExecQuantity != updates[i - 1].CumExecQuantity) {
            const double price = (updates[i].AvgExecPrice * updates[i].CumExecQuantity -
                                  updates[i - 1].AvgExecPrice * updates[i - 1].CumExecQuantity) /
                                 (updates[i].CumExecQuantity - updates[i - 1].CumExecQuantity);
            EXPECT_NEAR(price, desk.events.marketAtUpdate[i].BidPrice, 1e-9);
        }
    }
}

TEST_F(SimFills, MarketableLimitFillsAtTheTouchNotWorse) {
    OrderFields buy;
    buy.priceType = 5;
    buy.price = quote().AskPrice + 0.50;
    const double ask = quote().AskPrice;
    const int32_t buyId = desk.send(buy);
    OrderFields sell;
    sell.side = "S";
    sell.priceType = 5;
    sell.price = quote().BidPrice - 0.50;
    const double bid = quote().BidPrice;
    const int32_t sellId = desk.send(sell);
    desk.drain();
    EXPECT_EQ(desk.events.of(buyId).back().OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(desk.events.of(buyId).back().AvgExecPrice, ask);
    EXPECT_EQ(desk.events.of(buyId).back().LmtPrice, buy.price);
    EXPECT_EQ(desk.events.of(sellId).back().OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(desk.events.of(sellId).back().AvgExecPrice, bid);
}

TEST_F(SimFills, RestingLimitWaitsForTheMarketAndFillsAtItsLimit) {
    OrderFields buy;
    buy.priceType = 5;
    buy.price = quote().BidPrice; // below the ask: not marketable
    const int32_t id = desk.send(buy);
    desk.drain();
    ASSERT_EQ(desk.events.of(id).size(), 1u);
    EXPECT_EQ(desk.events.of(id)[0].OrderStatus, QVXOrderStatus::Open);

    ASSERT_TRUE(RunUntilDone(id)) << "the walk must reach the bid within hours";
    const auto updates = desk.events.of(id);
    ExpectConsistent(updates);
    EXPECT_EQ(updates.back().OrderStatus, QVXOrderStatus::Filled);
    EXPECT_NEAR(updates.back().AvgExecPrice, buy.price, 1e-9);
    // It filled only once the ask came down to the limit.
    EXPECT_LE(desk.events.marketAtUpdate.back().AskPrice, buy.price + 1e-9);
}

TEST_F(SimFills, RestingLimitOfAnUnregisteredSymbolStillFills) {
    const double bid = quote().BidPrice;
    desk.platform.DeregisterSymbol("IBM", "*");
    OrderFields buy;
    buy.priceType = 5;
    buy.price = bid;
    const int32_t id = desk.send(buy);
    const size_t quotesBefore = desk.events.quotes.size();
    ASSERT_TRUE(RunUntilDone(id)) << "working orders keep their symbol's market moving";
    EXPECT_EQ(desk.events.quotes.size(), quotesBefore) << "but no quotes are sent for it";
}

TEST_F(SimFills, SubPennyLimitFillsOnTheGridWithinTheLimit) {
    OrderFields buy;
    buy.priceType = 5;
    buy.price = quote().BidPrice + 0.005; // as the screen's modifier may make it
    const int32_t id = desk.send(buy);
    ASSERT_TRUE(RunUntilDone(id));
    const double avg = desk.events.of(id).back().AvgExecPrice;
    EXPECT_TRUE(OnPennyGrid(avg)) << avg;
    EXPECT_LE(avg, buy.price);
}

struct AuctionRow {
    const char* name;
    int32_t priceType;
    const char* tif;
    bool moo;
};

class SimAuction : public SimFills, public ::testing::WithParamInterface<AuctionRow> {};

TEST_P(SimAuction, FillsWholeAfterTheDelayAtTheThenLastPrice) {
    OrderFields fields;
    fields.priceType = GetParam().priceType;
    fields.tif = GetParam().tif;
    fields.quantity = 5000; // above the clip size: an auction fills it whole
    const int32_t id = desk.send(fields);
    desk.run(milliseconds(2999));
    ASSERT_EQ(desk.events.of(id).size(), 1u) << "nothing before the delay";
    desk.run(milliseconds(1));
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u);
    ExpectConsistent(updates);
    EXPECT_EQ(updates[1].OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(updates[1].CumExecQuantity, 5000);
    EXPECT_EQ(updates[1].AvgExecPrice, desk.events.marketAtUpdate[1].LastPrice);
    EXPECT_EQ(updates[1].Moo, GetParam().moo);
    EXPECT_EQ(updates[1].Moc, !GetParam().moo);
}

INSTANTIATE_TEST_SUITE_P(Rows, SimAuction,
                         ::testing::Values(AuctionRow{"MarketOnOpen", 1, "O", true},
                                           AuctionRow{"MarketOnClose", 2, "D", false}),
                         [](const auto& row) { return std::string(row.param.name); });

// An immediate order is decided at once: an IOC that cannot trade is cancelled, a FOK
// above the clip size fills whole.
TEST_F(SimFills, ImmediateOrdersAreDecidedAtOnce) {
    struct Row {
        const char* tif;
        int32_t quantity;
        bool limitAtTheBid;
        int32_t status;
        int32_t filled;
    };
    const Row rows[] = {{"I", 300, true, QVXOrderStatus::Cancelled, 0},
                        {"F", 2500, false, QVXOrderStatus::Filled, 2500}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.tif);
        OrderFields fields;
        fields.clOrderId += r.tif;
        fields.quantity = r.quantity;
        fields.tif = r.tif;
        if (r.limitAtTheBid) {
            fields.priceType = 5;
            fields.price = quote().BidPrice;
        }
        const int32_t id = desk.send(fields);
        desk.drain();
        const auto updates = desk.events.of(id);
        ASSERT_EQ(updates.size(), 2u);
        EXPECT_EQ(updates[1].OrderStatus, r.status);
        EXPECT_EQ(updates[1].LvsQuantity, 0);
        EXPECT_EQ(updates[1].CumExecQuantity, r.filled);
    }
}

TEST_F(SimFills, CancelOfAnOpenOrderReportsItCancelledWithNothingLeft) {
    OrderFields fields;
    fields.priceType = 5;
    fields.price = quote().BidPrice - 5.00;
    const int32_t id = desk.send(fields);
    desk.platform.CancelOrder(fields.clOrderId, id, "", "");
    desk.run(milliseconds(60'000));
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 2u) << "no fill after the cancel";
    EXPECT_EQ(updates[1].OrderStatus, QVXOrderStatus::Cancelled);
    EXPECT_EQ(updates[1].LvsQuantity, 0);
    EXPECT_EQ(updates[1].CumExecQuantity, 0);
}

TEST_F(SimFills, CancelOfAPartlyFilledOrderKeepsWhatFilled) {
    OrderFields fields;
    fields.quantity = 5000;
    const int32_t id = desk.send(fields);
    desk.platform.CancelOrder(fields.clOrderId, id, "", "");
    desk.run(milliseconds(10'000));
    const auto updates = desk.events.of(id);
    ASSERT_EQ(updates.size(), 3u);
    ExpectConsistent(updates);
    EXPECT_EQ(updates[2].OrderStatus, QVXOrderStatus::Cancelled);
    EXPECT_EQ(updates[2].CumExecQuantity, 1000);
    EXPECT_EQ(updates[2].AvgExecPrice, updates[1].AvgExecPrice);
}

TEST_F(SimFills, CancelOfADoneUnknownOrMismatchedOrderDoesNothing) {
    OrderFields filled;
    const int32_t filledId = desk.send(filled);
    OrderFields resting;
    resting.priceType = 5;
    resting.price = quote().BidPrice - 5.00;
    resting.clOrderId = "ACCT01-20240315-57-2";
    const int32_t restingId = desk.send(resting);
    desk.drain();
    const size_t before = desk.events.updates.size();

    desk.platform.CancelOrder(filled.clOrderId, filledId, "", "");
    desk.platform.CancelOrder("nobody", 999, "", "");
    desk.platform.CancelOrder("x", -1, "", "");
    desk.platform.CancelOrder(filled.clOrderId, restingId, "", ""); // id of another order
    desk.drain();
    EXPECT_EQ(desk.events.updates.size(), before);
    EXPECT_EQ(desk.events.of(restingId).back().OrderStatus, QVXOrderStatus::Open);

    desk.platform.CancelOrder(resting.clOrderId, restingId, "", "");
    desk.platform.CancelOrder(resting.clOrderId, restingId, "", ""); // twice: one report
    desk.drain();
    EXPECT_EQ(desk.events.updates.size(), before + 1);
}

// What a broker takes and then refuses, with its words; a good ticker with a class suffix
// is worked as usual.
TEST_F(SimFills, BrokerRefusalsAreAcceptedThenRejectedWithAReason) {
    struct Row {
        const char* symbol;
        const char* destination;
        int32_t code; ///< 0 = worked
        const char* text;
    };
    const Row rows[] = {
        {"HALT", "NASDAQ", kSimRejectHalted, "Symbol halted"},
        {"FOO BAR", "NASDAQ", kSimRejectSymbol, "Symbol \"FOO BAR\" is not a ticker"},
        {"msft", "NASDAQ", kSimRejectSymbol, "Symbol \"msft\" is not a ticker"},
        {"TOOLONG", "NASDAQ", kSimRejectSymbol, "Symbol \"TOOLONG\" is not a ticker"},
        {"IBM", "", kSimRejectDestination, "No destination"},
        {"IBM", "moon", kSimRejectDestination, "Unknown destination MOON"},
        {"BRK.B", "nyse", 0, ""},
    };
    int n = 0;
    for (const Row& r : rows) {
        OrderFields fields;
        fields.symbol = r.symbol;
        fields.destination = r.destination;
        fields.side = "BUY";
        fields.quantity = 200;
        fields.clOrderId = "ACCT01-20240315-57-" + std::to_string(++n);
        const size_t rejectsBefore = desk.events.rejects.size();
        const int32_t id = desk.send(fields);
        ASSERT_GT(id, 0) << r.symbol;
        desk.drain();
        if (r.code == 0) {
            EXPECT_EQ(desk.events.rejects.size(), rejectsBefore) << r.symbol;
            continue;
        }
        const std::vector<std::string> expected = {"update " + std::to_string(id) + " Open",
                                                   "reject " + fields.clOrderId,
                                                   "update " + std::to_string(id) + " Rejected"};
        ASSERT_GE(desk.events.journal.size(), 3u);
        EXPECT_EQ(
            std::vector<std::string>(desk.events.journal.end() - 3, desk.events.journal.end()),
            expected)
            << r.symbol;
        ASSERT_EQ(desk.events.rejects.size(), rejectsBefore + 1) << r.symbol;
        const QVXRejectStruct& reject = desk.events.rejects.back();
        EXPECT_EQ(reject.RejectReason, r.code) << r.symbol;
        EXPECT_EQ(reject.ReasonText, r.text) << r.symbol;
        EXPECT_EQ(reject.Symbol, r.symbol);
        EXPECT_EQ(desk.events.of(id).back().LvsQuantity, 0) << r.symbol;
    }
    desk.run(milliseconds(60'000));
    EXPECT_EQ(desk.events.of(1).size(), 2u) << "a rejected order never fills";
}

TEST_F(SimFills, ShutdownStopsFillsAndQuotes) {
    OrderFields fields;
    fields.quantity = 5000;
    const int32_t id = desk.send(fields);
    desk.platform.TriggerShutdown();
    desk.drain();
    const size_t updates = desk.events.of(id).size();
    const size_t quotes = desk.events.quotes.size();
    desk.run(milliseconds(60'000));
    EXPECT_EQ(desk.events.shutdowns, 1);
    EXPECT_EQ(desk.events.of(id).size(), updates);
    EXPECT_EQ(desk.events.quotes.size(), quotes);
    EXPECT_FALSE(desk.platform.online());
}

// The broker's book kept in the data folder: the next run of the program finds the day's
// orders as the last run reported them, and the working ones still work. An order the
// trader was never told about is not in it.
TEST_F(SimFills, AKeptBookBringsBackTheDaysOrdersAndKeepsTheRestingOnesWorking) {
    TempDir dir;
    ASSERT_TRUE(desk.platform.KeepBook(dir / kSimBookFileName).ok());
    OrderFields filled;
    filled.clOrderId = "A-1";
    OrderFields resting;
    resting.priceType = 5;
    resting.price = quote().BidPrice - 5.00;
    resting.clOrderId = "A-2";
    OrderFields replaced = resting;
    replaced.clOrderId = "A-3";
    OrderFields auction;
    auction.priceType = 2;
    auction.clOrderId = "A-4";
    const int32_t ids[] = {desk.send(filled), desk.send(resting), desk.send(replaced),
                           desk.send(auction)};
    QVXOrderChange change;
    change.quantity = 300;
    change.priceType = 5;
    change.lmtPrice = resting.price;
    change.newClOrderID = "A-3b";
    ASSERT_EQ(desk.platform.ReplaceOrder("A-3", ids[2], change), 0);
    desk.drain(); // written before this drain delivered a word of it
    OrderFields late;
    late.clOrderId = "A-5";
    ASSERT_GT(desk.send(late), 0);
    // The program dies here: the files as they are now, before the next drain wrote A-5.
    TempDir crashed;
    for (const char* suffix : {"", "-wal"}) {
        std::filesystem::copy_file(dir / (std::string(kSimBookFileName) + suffix),
                                   crashed / (std::string(kSimBookFileName) + suffix));
    }

    SimDesk again(Settings());
    ASSERT_TRUE(again.platform.KeepBook(crashed / kSimBookFileName).ok());
    const std::pair<std::string, int32_t> known[] = {{"A-1", ids[0]}, {"A-2", ids[1]},
                                                     {"A-3", ids[2]}, {"A-3b", ids[2]},
                                                     {"A-4", ids[3]}, {"A-5", 0}};
    for (const auto& [clOrderId, recordId] : known) {
        KnownOrder order;
        order.ticket.clOrderID = clOrderId;
        EXPECT_EQ(again.platform.AdoptOrder(order), recordId) << clOrderId;
    }
    again.drain();
    for (const int32_t id : ids) {
        const QVXOrderStruct was = desk.events.of(id).back();
        const QVXOrderStruct is = again.events.of(id).back();
        EXPECT_EQ(is.ClOrderID, was.ClOrderID);
        EXPECT_EQ(std::tie(is.OrderStatus, is.Quantity, is.CumExecQuantity, is.LvsQuantity),
                  std::tie(was.OrderStatus, was.Quantity, was.CumExecQuantity, was.LvsQuantity));
        EXPECT_EQ(is.AvgExecPrice, was.AvgExecPrice);
        EXPECT_EQ(is.LmtPrice, was.LmtPrice);
    }
    // A cancel reaches the resting order, the auction fills after the delay, and new orders
    // take the record ids after the kept ones.
    again.platform.CancelOrder("A-2", ids[1], "", "");
    again.run(milliseconds(4000));
    EXPECT_EQ(again.events.of(ids[1]).back().OrderStatus, QVXOrderStatus::Cancelled);
    EXPECT_EQ(again.events.of(ids[3]).back().OrderStatus, QVXOrderStatus::Filled);
    OrderFields next;
    next.clOrderId = "B-1";
    EXPECT_EQ(again.send(next), ids[3] + 1);
}

TEST(SimKeptBookFile, AFileThatIsNoBookIsReportedAndLeftAsItIs) {
    TempDir dir;
    const std::string bytes = "the trader's own notes, not a database\n";
    WriteFile(dir / kSimBookFileName, bytes);
    SimDesk sim;
    const Result<void> kept = sim.platform.KeepBook(dir / kSimBookFileName);
    ASSERT_FALSE(kept.ok());
    EXPECT_NE(kept.error().message.find("cannot be used"), std::string::npos);
    EXPECT_EQ(ReadFile(dir / kSimBookFileName), bytes);
    EXPECT_GT(sim.send(OrderFields{}), 0) << "the simulator still trades, in memory";
}

} // namespace
} // namespace wicker::test
