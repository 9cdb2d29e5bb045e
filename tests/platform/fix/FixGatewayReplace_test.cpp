// The gateway's cancel-replace against an in-process FIX peer: what goes on the wire, the
// confirmed change, and a refused one.

#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/FixTestPeer.h"
#include "platform/fix/GatewayFixture.h"

#include <future>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::Fix;
using test::NewOrderAck;
using test::PeerSide;
using test::RecordingGatewayEvents;
using test::Tag;

OrderTicket Ticket(const std::string& clOrdID) {
    return test::LimitTicket(clOrdID, "S", 300);
}

// Acknowledges orders; confirms replaces (FIX 4.2 style) unless the new quantity is 999,
// which it refuses with an OrderCancelReject.
void Broker(FixAcceptor& a, const FixMessage& in) {
    const std::string ids = "37=" + Tag(in, 37) + "|11=" + Tag(in, 11) + "|41=" + Tag(in, 41);
    FixMessage out;
    if (in.msgType == "D") {
        out = NewOrderAck(in);
    } else if (in.msgType == "G" && Tag(in, 38) == "999") {
        out = Fix("35=9|" + ids + "|39=0|434=2|102=2|58=Size limit");
    } else if (in.msgType == "G") {
        out = Fix("35=8|" + ids + "|17=R-" + Tag(in, 11) + "|20=0|150=5|39=5|55=IBM|54=2|38=" +
                  Tag(in, 38) + "|151=" + Tag(in, 38) + "|14=0|6=0|40=" + Tag(in, 40));
        if (in.find(44) != nullptr) {
            out.add(44, Tag(in, 44));
        }
    } else {
        return;
    }
    a.send(0, out);
}

class FixGatewayReplace : public test::GatewayFixture {};

TEST_F(FixGatewayReplace, ConfirmedReplaceKeepsTheRecordIdAndChainsTheIds) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    peer.setReply(Broker);
    auto g = Start(peer.port());
    const int32_t id = g->SubmitOrder(Ticket("A-1"));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));

    ASSERT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M1", 500, 5, 101.5}), 0);
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 2; }, 15s));
    const FixMessage r = peer.received()[1];
    EXPECT_EQ(r.msgType, "G");
    const std::pair<int, const char*> expected[] = {
        {1, "ACCT01"},
        {11, "A-1-M1"},
        {37, "O-A-1"},
        {38, "500"},
        {40, "2"},
        {41, "A-1"},
        {44, "101.5"},
        {54, "2"},
        {55, "IBM"},
        {59, "0"},
        {21, "1"},
        {100, "NASDAQ"},
        {60, "20240315-14:30:00.000"},
    };
    for (const auto& [tag, value] : expected) {
        EXPECT_EQ(Tag(r, tag), value) << tag;
    }

    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 2; }));
    const FixOrderState u = events.updates()[1];
    EXPECT_EQ(u.recordId, id);
    EXPECT_EQ(u.clOrdID, "A-1-M1");
    EXPECT_EQ(u.quantity, 500);
    EXPECT_EQ(u.leaves, 500);
    EXPECT_DOUBLE_EQ(u.lmtPrice, 101.5);
    EXPECT_EQ(u.memo, "Tech10-57-/bskt");
    EXPECT_TRUE(events.rejects().empty());

    // The screen still names the order by the id it was sent with: the next change
    // replaces the new id, numbered by the gateway.
    ASSERT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"", 400, 1, 0}), 0);
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 3; }, 15s));
    const FixMessage again = peer.received()[2];
    EXPECT_EQ(Tag(again, 11), "A-1-M1-R1");
    EXPECT_EQ(Tag(again, 41), "A-1-M1");
    EXPECT_EQ(Tag(again, 40), "1");
    EXPECT_EQ(Tag(again, 44), "<none>");
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 3; }));
    EXPECT_EQ(events.updates()[2].priceType, 1);
    EXPECT_EQ(events.updates()[2].quantity, 400);

    // A cancel after the replaces names the live id.
    ASSERT_EQ(g->CancelOrder("A-1", id), 0);
    ASSERT_TRUE(peer.waitFor([&] { return peer.received().size() == 4; }, 15s));
    EXPECT_EQ(Tag(peer.received()[3], 41), "A-1-M1-R1");
}

TEST_F(FixGatewayReplace, RefusedReplaceArrivesAsARejectThenTheOrderUnchanged) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    // The broker holds its answer to a replace until the second try was made, so that the
    // first is still pending then however fast the machine answers.
    std::promise<void> secondTried;
    const std::shared_future<void> gate = secondTried.get_future().share();
    peer.setReply([gate](FixAcceptor& a, const FixMessage& in) {
        if (in.msgType == "G") {
            gate.wait_for(15s);
        }
        Broker(a, in);
    });
    auto g = Start(peer.port());
    const int32_t id = g->SubmitOrder(Ticket("A-1"));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    ASSERT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M1", 999, 5, 101.5}), 0);
    EXPECT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M2", 400, 5, 101.5}),
              kReplaceOrderNotOpen)
        << "one change at a time";
    secondTried.set_value();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 2; }));
    ASSERT_EQ(events.rejects().size(), 1u);
    const FixOrderReject x = events.rejects()[0];
    EXPECT_EQ(x.clOrdID, "A-1-M1");
    EXPECT_EQ(x.recordId, id);
    EXPECT_EQ(x.reason, 2);
    const FixOrderState u = events.updates()[1];
    EXPECT_EQ(u.recordId, id);
    EXPECT_EQ(u.clOrdID, "A-1");
    EXPECT_EQ(u.quantity, 300);
    EXPECT_EQ(u.leaves, 300);
    EXPECT_DOUBLE_EQ(u.lmtPrice, 101.25);
    // Refused, so it may be tried again.
    EXPECT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M2", 400, 5, 101.5}), 0);
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 3; }));
    EXPECT_EQ(events.updates()[2].quantity, 400);
}

TEST_F(FixGatewayReplace, LocalRefusalsNeverReachTheWire) {
    test::FixTestPeer peer({PeerSide(FixVersion::Fix42)});
    peer.setReply(Broker);
    FixPlatformSettings s;
    s.port = peer.port();
    FixGateway g(s, dir / "fix", clock, events);
    ASSERT_TRUE(test::LogOn(g));
    const int32_t id = g.SubmitOrder(Ticket("A-1"));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    g.setPreTradeCheck([](const OrderTicket& t) { return t.quantity > 10000 ? -8 : 0; });
    struct Row {
        const char* name;
        std::string clOrdID;
        int32_t recordId;
        QVXOrderChange change;
        int32_t result;
    };
    const Row rows[] = {
        {"unknown order", "NOPE", 99, {"N-1", 400, 5, 101}, kReplaceOrderNotOpen},
        {"new id in use", "A-1", id, {"A-1", 400, 5, 101}, kReplaceOrderNotOpen},
        {"zero quantity", "A-1", id, {"M-1", 0, 5, 101}, -3},
        {"unknown price type", "A-1", id, {"M-2", 400, 7, 101}, -5},
        {"limit without a price", "A-1", id, {"M-3", 400, 5, 0}, -5},
        {"exposure limit", "A-1", id, {"M-4", 20000, 5, 101}, -8},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(g.ReplaceOrder(r.clOrdID, r.recordId, r.change), r.result) << r.name;
    }
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(peer.received().size(), 1u) << "only the order went out";
    EXPECT_TRUE(g.book().find(id)->pendingReplace.empty());

    g.stop();
    EXPECT_EQ(g.ReplaceOrder("A-1", id, QVXOrderChange{"M-5", 400, 5, 101}), -16);
}

} // namespace
} // namespace wicker
