// wicker-exchange's answers to OrderCancelReplaceRequest, on both venues and in both FIX
// versions, seen from a FIX client that writes its requests by hand; and a replaced order
// that survives an exchange restart.

#include "exchange/ExchangeFixture.h"
#include "exchange/SimVenue.h"
#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/GatewayFixture.h"
#include "platform/fix/RecordingSessionListener.h"
#include "platform/fix/engine/FixInitiator.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::RecordingGatewayEvents;
using test::RunningExchange;
using test::Tag;

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

// A FIX client whose messages a test writes as "35=G|11=...".
class HandClient {
public:
    HandClient(int port, FixVersion v) {
        m_engine = std::make_unique<FixInitiator>(test::ClientSide(port, v), listener);
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
    RunningExchange exchange(test::Options(dir), MakeVenue(c.venue));
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

class ExchangeReplaceRestart : public test::GatewayFixtureOn<SystemClock> {};

TEST_F(ExchangeReplaceRestart, ReplacedOrderIsKnownByItsNewIdAfterARestart) {
    ExchangeOptions o = test::Options(dir);
    o.dataDir = (dir / "exchange").string();
    auto exchange = std::make_unique<RunningExchange>(o, MakeVenue(VenueKind::Basic));
    o.port = exchange->port();
    auto g = Start(o.port);
    const int32_t id = g->SubmitOrder(
        test::Ticket({.lmtPrice = 1, .priceType = 5, .clOrderID = "R-1", .memo = ""}));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    ASSERT_EQ(g->ReplaceOrder("R-1", id, QVXOrderChange{"R-1-M1", 400, 5, 1.25}), 0);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 2; }));

    exchange.reset();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !g->isLoggedOn(); }));
    exchange = std::make_unique<RunningExchange>(o, MakeVenue(VenueKind::Basic));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return g->isLoggedOn(); }, 20s));
    // The exchange rebuilt one order from its reports, not one per ClOrdID.
    ASSERT_EQ(g->ReplaceOrder("R-1", id, QVXOrderChange{"R-1-M2", 450, 5, 1.3}), 0);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
        const auto u = events.updates();
        return u.back().clOrdID == "R-1-M2";
    }));
    EXPECT_EQ(events.updates().back().quantity, 450);
    EXPECT_EQ(g->CancelOrder("R-1", id), 0);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor(
        [&] { return events.updates().back().status == "Canceled"; }));
    EXPECT_TRUE(events.rejects().empty());
}

} // namespace
} // namespace wicker
