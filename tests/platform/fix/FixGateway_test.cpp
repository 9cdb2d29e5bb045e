#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/FixTestPeer.h"
#include "platform/fix/GatewayFixture.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::Fix;
using test::NewOrderAck;
using test::PeerSide;
using test::RecordingGatewayEvents;
using test::Tag;

OrderTicket Ticket(const std::string& clOrdID, int32_t qty = 100) {
    return test::LimitTicket(clOrdID, "BUY", qty);
}

// Acknowledges every order; confirms every cancel.
void AckOrdersAndCancels(FixAcceptor& a, const FixMessage& in) {
    const std::string id = Tag(in, 11);
    const std::string orig = Tag(in, 41);
    if (in.msgType == "D") {
        FixMessage ack = NewOrderAck(in);
        a.send(0, ack);
    } else if (in.msgType == "F") {
        FixMessage done = Fix("35=8|37=O-" + orig + "|11=" + id + "|41=" + orig + "|17=C-" + id +
                              "|20=0|150=4|39=4|55=IBM|54=1|151=0|14=0|6=0");
        a.send(0, done);
    }
}

class FixGatewayTest : public test::GatewayFixture {};

TEST_F(FixGatewayTest, OrderArrivesWithItsTagsAndItsReportsComeBackAsUpdates) {
    for (const FixVersion v : {FixVersion::Fix42, FixVersion::Fix44}) {
        SCOPED_TRACE(BeginStringOf(v));
        test::FixTestPeer peer({PeerSide(v)});
        peer.setReply(AckOrdersAndCancels);
        test::TempDir own;
        FixPlatformSettings s;
        s.port = peer.port();
        s.version = v;
        RecordingGatewayEvents ev;
        FixGateway g(s, own / "fix", clock, ev);
        ASSERT_TRUE(test::LogOn(g));
        // The status event follows the flag from the session's thread.
        EXPECT_TRUE(RecordingGatewayEvents::waitFor([&] { return ev.loggedOn(); }));

        OrderTicket t = Ticket("ACCT01-20240315-57-1");
        t.maxFloor = 100;
        const int32_t id = g.SubmitOrder(t);
        EXPECT_GT(id, 0);
        ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 1; }, 15s));
        const FixMessage d = peer.received()[0];
        const std::pair<int, const char*> expected[] = {
            {1, "ACCT01"},   {11, "ACCT01-20240315-57-1"},
            {21, "1"},       {38, "100"},
            {40, "2"},       {44, "101.25"},
            {54, "1"},       {55, "IBM"},
            {59, "0"},       {60, "20240315-14:30:00.000"},
            {100, "NASDAQ"}, {111, "100"},
        };
        for (const auto& [tag, value] : expected) {
            ASSERT_NE(d.find(tag), nullptr) << tag;
            EXPECT_EQ(*d.find(tag), value) << tag;
        }
        EXPECT_EQ(d.find(58), nullptr) << "the memo stays local";

        ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return ev.updates().size() == 1; }));
        const FixOrderState u = ev.updates()[0];
        EXPECT_EQ(u.recordId, id);
        EXPECT_EQ(u.memo, "Tech10-57-/bskt");
        EXPECT_EQ(u.status, "New");
        EXPECT_EQ(u.orderID, "O-ACCT01-20240315-57-1");
    }
}

TEST_F(FixGatewayTest, LocalRefusalsAndOfflineNeverReachTheWire) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    // Not started yet: offline.
    FixPlatformSettings s;
    s.port = peer.port();
    FixGateway g(s, dir / "fix", clock, events);
    EXPECT_EQ(g.SubmitOrder(Ticket("A-1")), -16);
    ASSERT_TRUE(test::LogOn(g));
    struct Row {
        const char* name;
        void (*change)(OrderTicket&);
        int32_t result;
    };
    const Row rows[] = {
        {"no account", [](OrderTicket& t) { t.account = ""; }, -1},
        {"bad side", [](OrderTicket& t) { t.side = "SELL"; }, -2},
        {"zero quantity", [](OrderTicket& t) { t.quantity = 0; }, -3},
        {"negative quantity", [](OrderTicket& t) { t.quantity = -5; }, -3},
        {"no symbol", [](OrderTicket& t) { t.symbol = ""; }, -4},
        {"bad price type", [](OrderTicket& t) { t.priceType = 3; }, -5},
        {"tif without a mapping", [](OrderTicket& t) { t.tif = "N"; }, -6},
    };
    for (const Row& r : rows) {
        OrderTicket t = Ticket("A-2");
        r.change(t);
        EXPECT_EQ(g.SubmitOrder(t), r.result) << r.name;
    }
    // The platform's own checks come after the fields' and before the wire.
    g.setPreTradeCheck([](const OrderTicket& t) {
        return t.destination == "BAD" ? -7 : t.quantity > 10000 ? -8 : 0;
    });
    OrderTicket bad = Ticket("A-3");
    bad.destination = "BAD";
    EXPECT_EQ(g.SubmitOrder(bad), -7);
    EXPECT_EQ(g.SubmitOrder(Ticket("A-4", 20000)), -8);
    bad.side = "X";
    EXPECT_EQ(g.SubmitOrder(bad), -2) << "the fields are checked first";
    std::this_thread::sleep_for(100ms);
    EXPECT_TRUE(peer.received().empty());
    EXPECT_EQ(g.book().size(), 0u);
}

FixMessage Ack(const std::string& clOrdID) {
    FixMessage ack;
    ack.msgType = "8";
    ack.add(11, clOrdID);
    ack.add(17, "E-" + clOrdID);
    ack.add(150, "0");
    ack.add(39, "0");
    ack.add(151, "100");
    ack.add(14, "0");
    return ack;
}

TEST_F(FixGatewayTest, WindowHoldsBackOrdersUntilAnswersArrive) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    auto g = Start(peer.port(), FixVersion::Fix42, 2);
    for (int i = 1; i <= 5; ++i) {
        EXPECT_GT(g->SubmitOrder(Ticket("A-" + std::to_string(i))), 0);
    }
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 2; }, 15s));
    EXPECT_FALSE(peer.waitFor([&] { return peer.received().size() > 2; }, 200ms))
        << "two on the wire without an answer";
    // A window that stays full is told to the trader, and so is its end.
    const auto saidLast = [&](const std::string& text) {
        return RecordingGatewayEvents::waitFor([&] {
            const auto status = events.status();
            return !status.empty() && status.back().second == text;
        });
    };
    EXPECT_TRUE(saidLast("3 orders are waiting to be sent: the broker has answered none of the "
                         "last 2 orders sent for 5 seconds (FixSendWindow)."));
    for (int answered = 1; answered <= 3; ++answered) {
        peer.run([answered](FixAcceptor& a) {
            FixMessage m = Ack("A-" + std::to_string(answered));
            a.send(0, m);
        });
        ASSERT_TRUE(
            peer.waitFor([&] { return peer.received().size() == size_t(answered + 2); }, 15s));
        if (answered == 1) { // still full, but moving
            EXPECT_TRUE(saidLast("Orders are going out again."));
        }
    }
    const std::vector<FixMessage> got = peer.received();
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(*got[i].find(11), "A-" + std::to_string(i + 1)) << "in submission order";
    }
    // A second answer to an order does not open the window any further.
    peer.run([](FixAcceptor& a) {
        FixMessage m = Ack("A-1");
        m.fields[1].value = "E-again";
        a.send(0, m);
    });
    EXPECT_FALSE(peer.waitFor([&] { return peer.received().size() > 5; }, 200ms));
}

TEST_F(FixGatewayTest, OrdersStillWaitingWhenTheSessionDropsAreRejectedOffline) {
    auto peer = std::make_unique<test::FixTestPeer>(std::vector{PeerSide(FixVersion::Fix42)});
    auto g = Start(peer->port(), FixVersion::Fix42, 1);
    EXPECT_GT(g->SubmitOrder(Ticket("A-1")), 0);
    EXPECT_GT(g->SubmitOrder(Ticket("A-2")), 0);
    EXPECT_GT(g->SubmitOrder(Ticket("A-3")), 0);
    ASSERT_TRUE(peer->waitFor([&] { return peer->received().size() == 1; }, 15s));
    peer.reset(); // the counterparty dies with A-1 unanswered
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.rejects().size() == 2; }));
    const std::vector<FixOrderReject> r = events.rejects();
    EXPECT_EQ(r[0].clOrdID, "A-2");
    EXPECT_EQ(r[1].clOrdID, "A-3");
    EXPECT_EQ(r[0].reason, -16);
    EXPECT_EQ(g->book().findByClOrdID("A-2")->leaves, 0);
    EXPECT_EQ(g->book().findByClOrdID("A-1")->leaves, 100) << "on the wire: its fate is unknown";
    EXPECT_FALSE(g->isLoggedOn());
    EXPECT_EQ(g->SubmitOrder(Ticket("A-4")), -16);
    // The disconnect is reported after the refusals.
    EXPECT_TRUE(RecordingGatewayEvents::waitFor([&] {
        const auto status = events.status();
        return !status.empty() && !status.back().first;
    }));
}

TEST_F(FixGatewayTest, CancelGoesOutWithTheOrdersIdsAndItsConfirmationUpdatesTheOrder) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    peer.setReply(AckOrdersAndCancels);
    auto g = Start(peer.port());
    const int32_t id = g->SubmitOrder(Ticket("A-1", 300));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    EXPECT_EQ(g->CancelOrder("A-1", id), 0);
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 2; }, 15s));
    const FixMessage f = peer.received()[1];
    EXPECT_EQ(f.msgType, "F");
    EXPECT_EQ(*f.find(41), "A-1");
    EXPECT_EQ(*f.find(11), "A-1-C1");
    EXPECT_EQ(*f.find(37), "O-A-1");
    EXPECT_EQ(*f.find(54), "1");
    EXPECT_EQ(*f.find(55), "IBM");
    EXPECT_EQ(*f.find(38), "300");
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 2; }));
    const FixOrderState u = events.updates()[1];
    EXPECT_EQ(u.recordId, id);
    EXPECT_EQ(u.status, "Canceled");
    EXPECT_EQ(u.leaves, 0);
    // Unknown orders are refused locally.
    EXPECT_EQ(g->CancelOrder("NOPE", 99), -4);
    // The record id wins; a stale id text falls back to the id.
    EXPECT_EQ(g->CancelOrder("", id), 0);
}

TEST_F(FixGatewayTest, QuotesFlowForRegisteredSymbolsOnly) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix44)});
    peer.setReply([](FixAcceptor& a, const FixMessage& in) {
        if (in.msgType != "V" || *in.find(263) != "1") {
            return;
        }
        FixQuoteFields q;
        q.symbol = in.findGroup(146)->entries[0][0].value;
        q.snapshot = true;
        q.bid = 10;
        q.ask = 10.5;
        FixMessage w = MarketDataMessage(q, *in.find(262));
        a.send(0, w);
    });
    auto g = Start(peer.port(), FixVersion::Fix44);
    g->RegisterSymbol("IBM");
    g->RegisterSymbol("IBM"); // once is enough
    g->RegisterSymbol("MSFT");
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.quotes().size() == 2; }));
    EXPECT_EQ(events.quotes()[0].symbol, "IBM");
    EXPECT_EQ(events.quotes()[0].ask, 10.5);
    EXPECT_EQ(events.quotes()[1].symbol, "MSFT");
    g->DeregisterSymbol("MSFT");
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 3; }, 15s));
    EXPECT_EQ(*peer.received()[2].find(263), "2");
}

TEST_F(FixGatewayTest, RegisteredSymbolsAreAskedForAgainAfterAReconnect) {
    auto peer = std::make_unique<test::FixTestPeer>(std::vector{PeerSide(FixVersion::Fix42)});
    const int port = peer->port();
    FixPlatformSettings s;
    s.port = port;
    s.reconnectInterval = 1;
    s.resetOnLogon = true; // the new peer remembers nothing
    FixGateway g(s, dir / "fix", clock, events);
    g.RegisterSymbol("IBM"); // before the logon: asked for at the logon
    ASSERT_TRUE(g.start().ok());
    ASSERT_TRUE(peer->waitFor([&] { return peer->received().size() == 1; }, 15s));
    g.RegisterSymbol("MSFT");
    ASSERT_TRUE(peer->waitFor([&] { return peer->received().size() == 2; }, 15s));
    g.DeregisterSymbol("MSFT");
    ASSERT_TRUE(peer->waitFor([&] { return peer->received().size() == 3; }, 15s));

    peer.reset();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !g.isLoggedOn(); }));
    peer = std::make_unique<test::FixTestPeer>(std::vector{PeerSide(FixVersion::Fix42)}, port);
    ASSERT_TRUE(peer->waitFor([&] { return !peer->received().empty(); }, 20s));
    EXPECT_FALSE(peer->waitFor([&] { return peer->received().size() > 1; }, 200ms));
    const FixMessage v = peer->received()[0];
    EXPECT_EQ(v.msgType, "V");
    EXPECT_EQ(v.findGroup(146)->entries[0][0].value, "IBM");
    EXPECT_EQ(*v.find(263), "1");
}

TEST_F(FixGatewayTest, RestartKeepsSequenceNumbersAndRecognisesEarlierOrdersByMemo) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    {
        auto g = Start(peer.port());
        EXPECT_GT(g->SubmitOrder(Ticket("ACCT01-20240315-57-1")), 0);
        ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 1; }, 15s));
    }
    const int firstSeq = peer.received()[0].msgSeqNum;
    // A new run: the report of the earlier order arrives now.
    peer.setReply(nullptr);
    RecordingGatewayEvents later;
    FixPlatformSettings s;
    s.port = peer.port();
    s.reconnectInterval = 1;
    FixGateway g(s, dir / "fix", clock, later);
    ASSERT_TRUE(test::LogOn(g));
    peer.run([](FixAcceptor& a) {
        FixMessage m = Ack("ACCT01-20240315-57-1");
        a.send(0, m);
    });
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return later.updates().size() == 1; }));
    EXPECT_EQ(later.updates()[0].memo, "Tech10-57-/bskt");
    EXPECT_GT(g.SubmitOrder(Ticket("ACCT01-20240315-58-1")), 0);
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 2; }, 15s));
    EXPECT_GT(peer.received()[1].msgSeqNum, firstSeq + 1) << "numbering went on from the store";
}

} // namespace
} // namespace wicker
