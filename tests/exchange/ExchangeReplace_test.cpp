// wicker-exchange's answers to OrderCancelReplaceRequest, on both venues and in both FIX
// versions, seen from a FIX client that writes its requests by hand; and a replaced order
// that survives an exchange restart.

#include "exchange/BasicVenue.h"
#include "exchange/ExchangeServer.h"
#include "exchange/SimVenue.h"
#include "platform/fix/FixGateway.h"
#include "platform/fix/FixMessageText.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "platform/fix/RecordingSessionListener.h"
#include "platform/fix/engine/FixInitiator.h"
#include "support/TempDir.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

enum class VenueKind { Basic, Sim };

std::unique_ptr<ExchangeVenue> MakeVenue(VenueKind kind) {
    if (kind == VenueKind::Basic) {
        return std::make_unique<BasicVenue>(1, 0, 200ms);
    }
    SimSettings s;
    s.seed = 7;
    s.clipSize = 100;
    return std::make_unique<SimVenue>(s, std::chrono::steady_clock::now());
}

// The exchange in this process, polled on its own thread.
class RunningExchange {
public:
    RunningExchange(const ExchangeOptions& o, VenueKind kind)
        : m_venue(MakeVenue(kind)), m_server(o, *m_venue) {
        const Result<void> started = m_server.start();
        EXPECT_TRUE(started.ok()) << (started.ok() ? "" : started.error().message);
        m_thread = std::thread([this] {
            while (!m_stop.load()) {
                m_server.runOnce(5);
            }
        });
    }
    ~RunningExchange() {
        m_stop.store(true);
        m_thread.join();
    }
    int port() const { return m_server.port(); }

private:
    std::unique_ptr<ExchangeVenue> m_venue;
    ExchangeServer m_server;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

// A FIX client whose messages a test writes as "35=G|11=...".
class HandClient {
public:
    HandClient(int port, FixVersion v) {
        FixSessionConfig c;
        c.beginString = BeginStringOf(v);
        c.senderCompID = "WICKER";
        c.targetCompID = "EXCH";
        c.port = port;
        c.reconnectInterval = 1;
        m_engine = std::make_unique<FixInitiator>(c, listener);
        m_engine->start();
        EXPECT_TRUE(listener.waitFor([&] { return listener.logons > 0; }));
    }
    ~HandClient() { m_engine->stop(); }

    // Sends and waits for the answer naming `clOrdID` in ClOrdID(11) that `pred` accepts.
    template <class Pred> std::optional<FixMessage> ask(const std::string& body, Pred pred) {
        FixMessage m = test::Fix(body);
        m.add(60, "20240315-14:30:00.000");
        EXPECT_GT(m_engine->send(m), 0);
        return await(pred);
    }
    template <class Pred> std::optional<FixMessage> await(Pred pred) {
        std::optional<FixMessage> found;
        listener.waitFor([&] {
            for (const FixMessage& r : listener.messages) {
                if (pred(r)) {
                    found = r;
                    return true;
                }
            }
            return false;
        });
        return found;
    }

    test::RecordingSessionListener listener;

private:
    std::unique_ptr<FixInitiator> m_engine;
};

std::string Tag(const FixMessage& m, int tag) {
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : "<none>";
}

auto Report(const std::string& clOrdID, const std::string& execType) {
    return [=](const FixMessage& m) {
        return m.msgType == "8" && Tag(m, 11) == clOrdID && Tag(m, 150) == execType;
    };
}
auto CancelReject(const std::string& clOrdID) {
    return [=](const FixMessage& m) { return m.msgType == "9" && Tag(m, 11) == clOrdID; };
}

struct Case {
    VenueKind venue;
    FixVersion version;
};

class ExchangeReplace : public ::testing::TestWithParam<Case> {};

TEST_P(ExchangeReplace, ReplacedThenRefusedThenMarketableFillsUnderTheNewId) {
    const Case c = GetParam();
    test::TempDir dir;
    ExchangeOptions o;
    o.port = 0;
    o.journalFile = (dir / "orders.txt").string();
    RunningExchange exchange(o, c.venue);
    HandClient client(exchange.port(), c.version);
    const bool fix42 = c.version == FixVersion::Fix42;

    // A buy far below any price the venues make: it rests.
    const auto ack = client.ask("35=D|11=A-1|1=ACCT01|21=1|38=300|40=2|44=1|54=1|55=IBM|59=0",
                                Report("A-1", "0"));
    ASSERT_TRUE(ack);
    const std::string orderID = Tag(*ack, 37);

    const auto replaced = client.ask(
        "35=G|11=A-1-M1|41=A-1|1=ACCT01|21=1|38=500|40=2|44=1.5|54=1|55=IBM|59=0|37=" + orderID,
        Report("A-1-M1", "5"));
    ASSERT_TRUE(replaced);
    EXPECT_EQ(Tag(*replaced, 41), "A-1");
    EXPECT_EQ(Tag(*replaced, 37), orderID) << "the same order at the exchange";
    EXPECT_EQ(Tag(*replaced, 39), fix42 ? "5" : "0");
    EXPECT_EQ(Tag(*replaced, 38), "500");
    EXPECT_EQ(Tag(*replaced, 151), "500");
    EXPECT_EQ(Tag(*replaced, 14), "0");
    EXPECT_EQ(Tag(*replaced, 44), "1.5");
    EXPECT_EQ(Tag(*replaced, 20), fix42 ? "0" : "<none>");

    struct Refusal {
        const char* name;
        std::string newID;
        std::string body;
        std::string cxlRejReason;
    };
    const std::string rest = "|1=ACCT01|21=1|40=2|44=1.5|55=IBM|59=0";
    const Refusal refusals[] = {
        {"unknown order", "X-1", "35=G|11=X-1|41=NOPE|38=500|54=1" + rest, "1"},
        {"id in use", "A-1", "35=G|11=A-1|41=A-1-M1|38=500|54=1" + rest, "2"},
        {"side changed", "X-2", "35=G|11=X-2|41=A-1-M1|38=500|54=2" + rest, "2"},
        {"no quantity", "X-3", "35=G|11=X-3|41=A-1-M1|38=0|54=1" + rest, "2"},
    };
    for (const Refusal& r : refusals) {
        const auto reject = client.ask(r.body, CancelReject(r.newID));
        ASSERT_TRUE(reject) << r.name;
        EXPECT_EQ(Tag(*reject, 434), "2") << r.name;
        EXPECT_EQ(Tag(*reject, 102), r.cxlRejReason) << r.name;
    }

    // Made marketable: the replace is reported first, then the fills under the new id.
    const auto toMarket =
        client.ask("35=G|11=A-1-M2|41=A-1-M1|1=ACCT01|21=1|38=500|40=1|54=1|55=IBM|59=0",
                   Report("A-1-M2", "5"));
    ASSERT_TRUE(toMarket);
    EXPECT_EQ(Tag(*toMarket, 40), "1");
    const auto filled = client.await([](const FixMessage& m) {
        return m.msgType == "8" && Tag(m, 11) == "A-1-M2" && Tag(m, 39) == "2";
    });
    ASSERT_TRUE(filled);
    EXPECT_EQ(Tag(*filled, 14), "500");
    EXPECT_EQ(Tag(*filled, 151), "0");
    {
        std::lock_guard lock(client.listener.mutex);
        bool replaceSeen = false;
        for (const FixMessage& m : client.listener.messages) {
            if (Tag(m, 11) == "A-1-M2") {
                replaceSeen = replaceSeen || Tag(m, 150) == "5";
                EXPECT_TRUE(replaceSeen || Tag(m, 32) == "<none>") << "a fill before the replace";
            }
        }
    }

    const auto late =
        client.ask("35=G|11=A-1-M3|41=A-1-M2|1=ACCT01|21=1|38=600|40=1|54=1|55=IBM|59=0",
                   CancelReject("A-1-M3"));
    ASSERT_TRUE(late);
    EXPECT_EQ(Tag(*late, 102), "0") << "too late";
    EXPECT_EQ(Tag(*late, 39), "2");
    EXPECT_EQ(Tag(*late, 434), "2");
}

INSTANTIATE_TEST_SUITE_P(VenuesAndVersions, ExchangeReplace,
                         ::testing::Values(Case{VenueKind::Basic, FixVersion::Fix42},
                                           Case{VenueKind::Basic, FixVersion::Fix44},
                                           Case{VenueKind::Sim, FixVersion::Fix42},
                                           Case{VenueKind::Sim, FixVersion::Fix44}),
                         [](const ::testing::TestParamInfo<Case>& row) {
                             return std::string(row.param.venue == VenueKind::Basic ? "Basic"
                                                                                    : "Sim") +
                                    (row.param.version == FixVersion::Fix42 ? "42" : "44");
                         });

TEST(ExchangeReplaceRestart, ReplacedOrderIsKnownByItsNewIdAfterARestart) {
    test::TempDir dir;
    ExchangeOptions o;
    o.port = 0;
    o.dataDir = (dir / "exchange").string();
    auto exchange = std::make_unique<RunningExchange>(o, VenueKind::Basic);
    o.port = exchange->port();
    test::RecordingGatewayEvents events;
    SystemClock clock;
    FixPlatformSettings s;
    s.port = o.port;
    s.reconnectInterval = 1;
    FixGateway g(s, dir / "wicker", clock, events);
    ASSERT_TRUE(g.start().ok());
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] { return g.isLoggedOn(); }));
    OrderTicket t;
    t.account = "ACCT01";
    t.side = "B";
    t.symbol = "IBM";
    t.quantity = 300;
    t.lmtPrice = 1;
    t.priceType = 5;
    t.clOrderID = "R-1";
    t.tif = "D";
    const int32_t id = g.SubmitOrder(t);
    ASSERT_TRUE(
        test::RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    ASSERT_EQ(g.ReplaceOrder("R-1", id, QVXOrderChange{"R-1-M1", 400, 5, 1.25}), 0);
    ASSERT_TRUE(
        test::RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 2; }));

    exchange.reset();
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] { return !g.isLoggedOn(); }));
    exchange = std::make_unique<RunningExchange>(o, VenueKind::Basic);
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] { return g.isLoggedOn(); }, 20s));
    // The exchange rebuilt one order from its reports, not one per ClOrdID.
    ASSERT_EQ(g.ReplaceOrder("R-1", id, QVXOrderChange{"R-1-M2", 450, 5, 1.3}), 0);
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor([&] {
        const auto u = events.updates();
        return u.back().clOrdID == "R-1-M2";
    }));
    EXPECT_EQ(events.updates().back().quantity, 450);
    EXPECT_EQ(g.CancelOrder("R-1", id), 0);
    ASSERT_TRUE(test::RecordingGatewayEvents::waitFor(
        [&] { return events.updates().back().status == "Canceled"; }));
    EXPECT_TRUE(events.rejects().empty());
}

} // namespace
} // namespace wicker
