// The gateway's cancel-replace against an in-process FIX peer: what goes on the wire, the
// confirmed change, and a refused one.

#include "platform/fix/FixGateway.h"
#include "platform/fix/FixTestPeer.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::RecordingGatewayEvents;

FixSessionConfig PeerSide(FixVersion v) {
    FixSessionConfig c;
    c.beginString = BeginStringOf(v);
    c.senderCompID = "EXCH";
    c.targetCompID = "WICKER";
    return c;
}

OrderTicket Ticket(const std::string& clOrdID) {
    OrderTicket t;
    t.account = "ACCT01";
    t.side = "S";
    t.symbol = "IBM";
    t.quantity = 300;
    t.lmtPrice = 101.25;
    t.priceType = 5;
    t.clOrderID = clOrdID;
    t.tif = "D";
    t.destination = "NASDAQ";
    t.memo = "Tech10-57-/bskt";
    return t;
}

std::string Tag(const FixMessage& m, int tag) {
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : "<none>";
}

// Acknowledges orders; confirms replaces (FIX 4.2 style) unless the new quantity is 999,
// which it refuses with an OrderCancelReject.
void Broker(FixAcceptor& a, const FixMessage& in) {
    const std::string id = Tag(in, 11);
    FixMessage out;
    if (in.msgType == "D") {
        out.msgType = "8";
        for (auto [tag, value] : std::vector<std::pair<int, std::string>>{{37, "O-" + id},
                                                                          {11, id},
                                                                          {17, "N-" + id},
                                                                          {20, "0"},
                                                                          {150, "0"},
                                                                          {39, "0"},
                                                                          {55, "IBM"},
                                                                          {54, "2"},
                                                                          {38, Tag(in, 38)},
                                                                          {151, Tag(in, 38)},
                                                                          {14, "0"},
                                                                          {6, "0"}}) {
            out.add(tag, value);
        }
    } else if (in.msgType == "G" && Tag(in, 38) == "999") {
        out.msgType = "9";
        for (auto [tag, value] : std::vector<std::pair<int, std::string>>{{37, Tag(in, 37)},
                                                                          {11, id},
                                                                          {41, Tag(in, 41)},
                                                                          {39, "0"},
                                                                          {434, "2"},
                                                                          {102, "2"},
                                                                          {58, "Size limit"}}) {
            out.add(tag, value);
        }
    } else if (in.msgType == "G") {
        out.msgType = "8";
        for (auto [tag, value] : std::vector<std::pair<int, std::string>>{{37, Tag(in, 37)},
                                                                          {11, id},
                                                                          {41, Tag(in, 41)},
                                                                          {17, "R-" + id},
                                                                          {20, "0"},
                                                                          {150, "5"},
                                                                          {39, "5"},
                                                                          {55, "IBM"},
                                                                          {54, "2"},
                                                                          {38, Tag(in, 38)},
                                                                          {151, Tag(in, 38)},
                                                                          {14, "0"},
                                                                          {6, "0"},
                                                                          {40, Tag(in, 40)}}) {
            out.add(tag, value);
        }
        if (in.find(44) != nullptr) {
            out.add(44, Tag(in, 44));
        }
    } else {
        return;
    }
    a.send(0, out);
}

class FixGatewayReplace : public ::testing::Test {
protected:
    std::unique_ptr<FixGateway> Start(int port) {
        FixPlatformSettings s;
        s.port = port;
        s.reconnectInterval = 1;
        auto g = std::make_unique<FixGateway>(s, dir / "fix", clock, events);
        EXPECT_TRUE(g->start().ok());
        EXPECT_TRUE(RecordingGatewayEvents::waitFor([&] { return g->isLoggedOn(); }));
        return g;
    }

    test::TempDir dir;
    ManualClock clock{Clock::TimePoint{std::chrono::seconds(1710513000)}};
    RecordingGatewayEvents events;
};

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
    peer.setReply(Broker);
    auto g = Start(peer.port());
    const int32_t id = g->SubmitOrder(Ticket("A-1"));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return events.updates().size() == 1; }));
    ASSERT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M1", 999, 5, 101.5}), 0);
    EXPECT_EQ(g->ReplaceOrder("A-1", id, QVXOrderChange{"A-1-M2", 400, 5, 101.5}),
              kReplaceOrderNotOpen)
        << "one change at a time";
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
    ASSERT_TRUE(g.start().ok());
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return g.isLoggedOn(); }));
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
