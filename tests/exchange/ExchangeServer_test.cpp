#include "exchange/ExchangeFixture.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/GatewayFixture.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::Options;
using test::RecordingGatewayEvents;
using test::RunningExchange;

// The last update of each record id.
std::map<int32_t, FixOrderState> Latest(const RecordingGatewayEvents& events) {
    std::map<int32_t, FixOrderState> out;
    for (const FixOrderState& u : events.updates()) {
        out[u.recordId] = u;
    }
    return out;
}

OrderTicket Ticket(const std::string& id, const std::string& side, int32_t priceType, double price,
                   int32_t qty = 300, const std::string& symbol = "IBM") {
    return test::Ticket({.side = side,
                         .symbol = symbol,
                         .quantity = qty,
                         .lmtPrice = price,
                         .priceType = priceType,
                         .clOrderID = id,
                         .memo = "B-1-/bskt"});
}

class ExchangeServerTest : public test::GatewayFixtureOn<SystemClock> {};

TEST_F(ExchangeServerTest, MarketAndMarketableOrdersFillInClipsBothVersions) {
    for (const FixVersion v : {FixVersion::Fix42, FixVersion::Fix44}) {
        SCOPED_TRACE(BeginStringOf(v));
        test::TempDir own;
        ExchangeOptions o = Options(own);
        o.clipSize = 100;
        RunningExchange exchange(o);
        RecordingGatewayEvents ev;
        FixPlatformSettings s;
        s.port = exchange.port();
        s.version = v;
        FixGateway g(s, own / "wicker", clock, ev);
        ASSERT_TRUE(test::LogOn(g));

        const double mid = exchange.midPrice("IBM");
        const int32_t market = g.SubmitOrder(Ticket("M-1", "B", 1, 0));
        const int32_t limit = g.SubmitOrder(Ticket("L-1", "S", 5, mid - 1, 250));
        const int32_t resting = g.SubmitOrder(Ticket("R-1", "B", 5, mid - 5));
        ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
            std::map<int32_t, FixOrderState> last = Latest(ev);
            return last.size() == 3 && last[market].status == "Filled" &&
                   last[limit].status == "Filled";
        }));
        std::map<int32_t, FixOrderState> last = Latest(ev);
        int fills = 0;
        for (const FixOrderState& u : ev.updates()) {
            fills += u.lastShares > 0;
        }
        EXPECT_EQ(fills, 3 + 3) << "300 and 250 shares in clips of 100";
        EXPECT_EQ(last[market].cum, 300);
        EXPECT_NEAR(last[market].avgPx, mid + 0.005, 1e-9);
        EXPECT_EQ(last[limit].cum, 250);
        EXPECT_EQ(last[limit].leaves, 0);
        EXPECT_EQ(last[resting].status, "New");
        EXPECT_EQ(last[resting].leaves, 300);

        EXPECT_EQ(g.CancelOrder("R-1", resting), 0);
        ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
            const std::vector<FixOrderState> u = ev.updates();
            return !u.empty() && u.back().recordId == resting && u.back().status == "Canceled";
        }));
        // Cancelling a filled order: too late.
        EXPECT_EQ(g.CancelOrder("M-1", market), 0);
        ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return ev.rejects().size() == 1; }));
        EXPECT_EQ(ev.rejects()[0].clOrdID, "M-1");
        EXPECT_EQ(ev.rejects()[0].reason, 0);
    }
}

TEST_F(ExchangeServerTest, RefusedOrdersComeBackAsRejectsWithTheirReason) {
    ExchangeOptions o = Options(dir);
    o.halted = {"HALT"};
    RunningExchange exchange(o);
    auto g = Start(exchange.port());
    g->SubmitOrder(Ticket("A-1", "B", 1, 0, 100, "HALT"));
    g->SubmitOrder(Ticket("A-2", "B", 5, 1.0));
    g->SubmitOrder(Ticket("A-2", "S", 5, 1.0)); // the same ClOrdID again
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.rejects().size() == 2; }));
    const std::vector<FixOrderReject> r = events.rejects();
    EXPECT_EQ(r[0].clOrdID, "A-1");
    EXPECT_EQ(r[0].reason, OrdRejExchangeClosed);
    EXPECT_EQ(r[1].clOrdID, "A-2");
    EXPECT_EQ(r[1].reason, OrdRejDuplicateOrder);
}

TEST_F(ExchangeServerTest, JournalHoldsEveryOrderWithItsTags) {
    RunningExchange exchange(Options(dir));
    auto g = Start(exchange.port());
    OrderTicket t = Ticket("J-1", "T", 2, 0, 500, "MSFT");
    t.destination = "NYSE";
    g->SubmitOrder(t);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !events.updates().empty(); }));
    const std::string journal = test::ReadFile(dir / "orders.txt");
    for (const char* tag :
         {"1=ACCT01|", "11=J-1|", "38=500|", "40=5|", "54=5|", "55=MSFT|", "59=0|", "100=NYSE|"}) {
        EXPECT_NE(journal.find(tag), std::string::npos) << tag << " in " << journal;
    }
}

TEST_F(ExchangeServerTest, SubscribedSymbolsGetASnapshot) {
    RunningExchange exchange(Options(dir));
    auto g = Start(exchange.port());
    g->RegisterSymbol("AAPL");
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !events.quotes().empty(); }));
    const FixQuoteFields q = events.quotes()[0];
    EXPECT_EQ(q.symbol, "AAPL");
    EXPECT_TRUE(q.snapshot);
    EXPECT_NEAR(*q.bid, exchange.midPrice("AAPL") - 0.005, 1e-9);
    EXPECT_EQ(q.volume, 0);
    // A fill moves the volume, and the change is streamed.
    g->SubmitOrder(Ticket("Q-1", "B", 1, 0, 100, "AAPL"));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
        const std::vector<FixQuoteFields> all = events.quotes();
        return all.back().volume == 100 && !all.back().snapshot;
    }));
}

TEST_F(ExchangeServerTest, RestartedExchangeStillKnowsItsOpenOrders) {
    ExchangeOptions o = Options(dir);
    o.dataDir = (dir / "exchange").string();
    auto exchange = std::make_unique<RunningExchange>(o);
    o.port = exchange->port();
    auto g = Start(o.port);
    const double mid = exchange->midPrice("IBM");
    const int32_t id = g->SubmitOrder(Ticket("R-1", "B", 5, mid - 5));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    exchange.reset();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !g->isLoggedOn(); }));
    exchange = std::make_unique<RunningExchange>(o);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return g->isLoggedOn(); }, 20s));
    EXPECT_EQ(g->CancelOrder("R-1", id), 0);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
        const std::vector<FixOrderState> u = events.updates();
        return u.back().status == "Canceled";
    }));
    EXPECT_TRUE(events.rejects().empty());
}

} // namespace
} // namespace wicker
