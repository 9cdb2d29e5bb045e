// A counterparty that misbehaves on a live session: whatever it sends, Wicker neither
// crashes nor lets a bad report change an order.

#include "platform/fix/FixGateway.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/RawFixPeer.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::RecordingGatewayEvents;

TEST(FixGatewayHostile, BadReportsNeverChangeAnOrder) {
    test::TempDir dir;
    test::RawFixPeer peer;
    const ManualClock clock;
    RecordingGatewayEvents events;
    FixPlatformSettings s;
    s.port = peer.port();
    s.reconnectInterval = 1;
    s.resetOnLogon = true;
    auto gateway = std::make_unique<FixGateway>(s, dir / "fix", clock, events);
    ASSERT_TRUE(gateway->start().ok());
    ASSERT_TRUE(peer.acceptLogon(15s));
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return gateway->isLoggedOn(); }));

    const int32_t id = gateway->SubmitOrder(test::Ticket({.clOrderID = "A-1"}));
    ASSERT_GT(id, 0);
    ASSERT_FALSE(peer.readUntil("11=A-1", 15s).empty());

    const char* const sequence[] = {
        "35=8|37=O1|11=A-1|17=E1|150=0|39=0|55=IBM|54=1|38=300|151=300|14=0|6=0",
        "35=8|37=O1|11=A-1|17=E2|150=1|39=1|151=200|14=100|6=10|31=10|32=100",
        // the same fill again (a resend): counted once
        "35=8|37=O1|11=A-1|17=E2|150=1|39=1|151=200|14=100|6=10|31=10|32=100",
        // numbers that are not numbers: ignored, warned
        "35=8|37=O1|11=A-1|17=E3|150=2|39=2|151=zero|14=300|6=10",
        "35=8|37=O1|11=A-1|17=E4|150=2|39=2|151=0|14=-300|6=10",
        // neither ClOrdID nor OrderID: ignored, warned
        "35=8|17=E5|150=2|39=2|151=0|14=300|6=10",
        // somebody else's order (not a Wicker ClOrdID): warned, no record
        "35=8|37=Z9|11=ZZZ|17=E6|150=2|39=2|55=MSFT|54=2|38=50|151=0|14=50|6=20",
        // a reject about a message nobody sent
        "35=3|45=9999|373=5",
        "35=j|45=9999|379=NOPE|380=0",
        // a cancel reject for an unknown order: reported, nothing changes
        "35=9|37=NONE|11=X-C|41=X|39=8|102=1",
        // the real second fill
        "35=8|37=O1|11=A-1|17=E7|150=1|39=1|151=100|14=200|6=10.05|31=10.1|32=100",
        // an overfill: the broker's numbers stand, with a warning
        "35=8|37=O1|11=A-1|17=E8|150=2|39=2|151=0|14=400|6=10.1|31=10.15|32=200",
    };
    for (const char* body : sequence) {
        ASSERT_TRUE(peer.send(body)) << body;
    }
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] {
        const std::vector<FixOrderState> u = events.updates();
        return !u.empty() && u.back().recordId == id && u.back().cum == 400;
    }));
    const FixOrderState o = *gateway->book().find(id);
    EXPECT_EQ(o.cum, 400);
    EXPECT_EQ(o.leaves, 0);
    EXPECT_DOUBLE_EQ(o.avgPx, 10.1);
    EXPECT_EQ(o.status, "Filled");
    EXPECT_EQ(o.memo, "Tech10-57-/bskt");
    EXPECT_EQ(o.updates, 4);
    EXPECT_EQ(gateway->book().size(), 1u);
    const std::vector<FixOrderWarning> warnings = events.warnings();
    ASSERT_EQ(warnings.size(), 5u);
    EXPECT_EQ(warnings[0].recordId, id);
    EXPECT_EQ(warnings[0].text,
              "An execution report with unreadable LeavesQty 151=zero was ignored.");
    EXPECT_EQ(warnings[1].text, "An execution report with negative CumQty 14=-300 was ignored.");
    EXPECT_EQ(warnings[2].recordId, 0);
    EXPECT_EQ(warnings[3].clOrdID, "ZZZ");
    EXPECT_EQ(warnings[4].recordId, id);
    EXPECT_EQ(warnings[4].text, "The broker reports 400 filled of an order for 300 (overfill).");
    ASSERT_EQ(events.rejects().size(), 1u);
    EXPECT_EQ(events.rejects()[0].clOrdID, "X");
    EXPECT_EQ(events.rejects()[0].text, "Unknown order") << "CxlRejReason 1 in words";
    EXPECT_TRUE(gateway->isLoggedOn()) << "none of it was worth ending the session for";

    // Garbage on the wire after all that: the session may drop, the book stays.
    ASSERT_TRUE(peer.write("8=FIX.4.2\x01"
                           "9=5\x01"
                           "35=8\x01"
                           "garbage garbage garbage"));
    peer.closeClient();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !gateway->isLoggedOn(); }));
    EXPECT_EQ(gateway->book().find(id)->cum, 400);
    gateway.reset();
}

} // namespace
} // namespace wicker
