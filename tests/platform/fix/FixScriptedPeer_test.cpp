// A scripted counterparty on a raw socket: market data it never answers or refuses, a
// restart that numbers ExecIDs from 1 again, silence, wrong CompIDs, reject storms. Each
// case ends with every order seen by the platform and every fill counted once.

#include "platform/fix/FixGateway.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/RawFixPeer.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "support/TempDir.h"

#include <algorithm>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::FieldOf;
using test::RecordingGatewayEvents;

class FixScriptedPeer : public ::testing::Test {
protected:
    void start(bool resetOnLogon = true, int sendWindow = 200) {
        hangUp(); // an earlier row's gateway
        FixPlatformSettings s;
        s.port = peer.port();
        s.reconnectInterval = 1;
        s.resetOnLogon = resetOnLogon;
        s.sendWindow = sendWindow;
        gateway.reset();
        peer.dropPending();
        rec = std::make_unique<RecordingGatewayEvents>();
        // A store of its own for every session started in one test.
        gateway = std::make_unique<FixGateway>(s, dir / ("fix" + std::to_string(++m_starts)), clock,
                                               *rec);
        ASSERT_TRUE(gateway->start().ok());
        logOnAgain();
    }
    void logOnAgain() {
        ASSERT_TRUE(peer.acceptLogon(15s));
        ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return gateway->isLoggedOn(); }));
    }
    int32_t submit(const std::string& clOrdID, const std::string& symbol = "IBM") {
        const int32_t id =
            gateway->SubmitOrder(test::Ticket({.symbol = symbol, .clOrderID = clOrdID}));
        EXPECT_GT(id, 0) << clOrdID;
        return id;
    }
    bool onWire(const std::string& clOrdID) {
        return !peer.readUntil("\x01"
                               "11=" +
                                   clOrdID + "\x01",
                               15s)
                    .empty();
    }
    /// Waits until the platform has seen an update of every one of these orders.
    bool allSeen(const std::vector<int32_t>& ids) {
        return RecordingGatewayEvents::waitFor([&] {
            const std::vector<FixOrderState> u = rec->updates();
            return std::all_of(ids.begin(), ids.end(), [&](int32_t id) {
                return std::any_of(u.begin(), u.end(),
                                   [&](const FixOrderState& o) { return o.recordId == id; });
            });
        });
    }
    bool statusSays(const std::string& fragment) {
        return RecordingGatewayEvents::waitFor([&] {
            for (const auto& [on, text] : rec->status()) {
                if (text.find(fragment) != std::string::npos) {
                    return true;
                }
            }
            return false;
        });
    }
    /// The peer goes away, then the gateway (which then need not wait for a logout).
    void hangUp() {
        if (gateway) {
            peer.closeClient();
            RecordingGatewayEvents::waitFor([&] { return !gateway->isLoggedOn(); });
            gateway.reset();
        }
    }
    void TearDown() override { hangUp(); }

    test::TempDir dir;
    test::RawFixPeer peer;
    ManualClock clock;
    std::unique_ptr<RecordingGatewayEvents> rec;
    std::unique_ptr<FixGateway> gateway;
    int m_starts = 0;
};

TEST_F(FixScriptedPeer, OrdersGoOutPastMarketDataThatIsNeverAnswered) {
    start();
    for (int i = 0; i < 300; ++i) {
        gateway->RegisterSymbol("S" + std::to_string(i));
    }
    for (int i = 0; i < 300; ++i) {
        gateway->DeregisterSymbol("S" + std::to_string(i));
    }
    const int32_t id = submit("A-1");
    ASSERT_TRUE(onWire("A-1")) << "market data holds no slot of the order window";
    const std::vector<std::string> requests = peer.collect("V", 500ms);
    const auto count = [&](const char* type) {
        return std::count_if(requests.begin(), requests.end(),
                             [&](const std::string& m) { return FieldOf(m, 263) == type; });
    };
    EXPECT_LE(count("1"), 50) << "subscriptions are paced";
    EXPECT_EQ(count("2"), count("1")) << "only what went out is ended; the rest is withdrawn";
    peer.send("35=8|37=O1|11=A-1|17=1|150=0|39=0|55=IBM|54=1|38=300|151=300|14=0|6=0");
    EXPECT_TRUE(allSeen({id}));
}

TEST_F(FixScriptedPeer, RefusedMarketDataMarksQuotesUnavailableOnceAndOrdersStillFlow) {
    struct Row {
        const char* name;
        std::string (*refusal)(const std::string& request);
    };
    const Row rows[] = {
        {"MarketDataRequestReject",
         [](const std::string& r) {
             return "35=Y|262=" + FieldOf(r, 262) + "|281=3|58=Not entitled";
         }},
        {"session Reject",
         [](const std::string& r) {
             return "35=3|45=" + FieldOf(r, 34) + "|371=263|372=V|373=11|58=Unsupported MsgType";
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        start();
        for (const char* s : {"IBM", "MSFT", "AAPL"}) {
            gateway->RegisterSymbol(s);
        }
        ASSERT_FALSE(peer.readUntil("55=AAPL", 15s).empty());
        for (const std::string& request : peer.received("V")) {
            peer.send(row.refusal(request));
        }
        EXPECT_TRUE(statusSays("Quotes unavailable"));
        gateway->RegisterSymbol("ORCL");
        const int32_t id = submit("A-1");
        ASSERT_TRUE(onWire("A-1"));
        EXPECT_EQ(peer.collect("V", 300ms).size(), 3u) << "no retry storm";
        const auto lines = rec->status();
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                [](const auto& l) {
                                    return l.second.find("Quotes unavailable") != std::string::npos;
                                }),
                  1);
        peer.send("35=8|37=O1|11=A-1|17=1|150=8|39=8|55=IBM|54=1|38=300|151=0|14=0|103=1");
        EXPECT_TRUE(allSeen({id}));
        EXPECT_EQ(rec->rejects().back().text, "Unknown symbol") << "OrdRejReason in words";
    }
}

// The peer restarts: the order that got no answer and the partly filled one are asked
// about at the next logon; the peer numbers its ExecIDs from 1 again and every fill counts.
TEST_F(FixScriptedPeer, AfterThePeerRestartsOpenOrdersAreAskedAboutAndNewExecIDsCount) {
    start();
    const int32_t filled = submit("A-1");
    const int32_t silent = submit("A-2");
    ASSERT_TRUE(onWire("A-2"));
    peer.send(
        "35=8|37=O1|11=A-1|17=1|150=1|39=1|55=IBM|54=1|38=300|151=200|14=100|6=10|31=10|32=100");
    ASSERT_TRUE(allSeen({filled}));
    peer.closeClient(); // the peer restarts
    logOnAgain();
    ASSERT_FALSE(peer.readUntil("11=A-2", 15s).empty());
    const std::vector<std::string> asked = peer.collect("H", 200ms);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(FieldOf(asked[0], 11), "A-1");
    EXPECT_EQ(FieldOf(asked[1], 11), "A-2");
    // The peer lost them and asks for them again: a stale request is gap-filled, not resent,
    // so both are asked about anew or their orders would wait for an answer for ever.
    peer.send("35=2|7=" + FieldOf(asked[0], 34) + "|16=0");
    const std::vector<std::string> all = peer.collect("H", 300ms);
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(FieldOf(all[2], 11), "A-1");
    EXPECT_EQ(FieldOf(all[3], 11), "A-2");
    // A-1 as the peer knows it now (filled while we were away); A-2 it never got.
    peer.send("35=8|37=O1|11=A-1|17=1|20=3|150=2|39=2|55=IBM|54=1|38=300|151=0|14=300|6=10|32=100");
    peer.send("35=8|37=NONE|11=A-2|17=2|20=3|150=8|39=8|55=IBM|54=1|151=0|14=0|103=5");
    const int32_t fresh = submit("A-3");
    ASSERT_TRUE(onWire("A-3"));
    peer.send(
        "35=8|37=O3|11=A-3|17=3|150=1|39=1|55=IBM|54=1|38=300|151=250|14=50|6=11|31=11|32=50");
    ASSERT_TRUE(
        RecordingGatewayEvents::waitFor([&] { return gateway->book().find(fresh)->cum == 50; }));
    ASSERT_TRUE(allSeen({filled, silent, fresh}));
    EXPECT_EQ(gateway->book().find(filled)->cum, 300) << "the status report is authoritative";
    EXPECT_EQ(gateway->book().find(filled)->status, "Filled");
    const FixOrderState lost = *gateway->book().find(silent);
    EXPECT_EQ(lost.status, "Unknown to broker");
    EXPECT_EQ(lost.leaves, 0);
    ASSERT_FALSE(rec->rejects().empty());
    EXPECT_EQ(rec->rejects().back().clOrdID, "A-2");
}

TEST_F(FixScriptedPeer, WhyTheSessionWentDownIsSaid) {
    struct Row {
        const char* name;
        bool resetOnLogon;
        void (*act)(test::RawFixPeer&);
        const char* said;
    };
    const Row rows[] = {
        {"wrong CompID", true,
         [](test::RawFixPeer& p) {
             p.send("35=8|37=O1|11=A-1|17=1|150=0|39=0|14=0|151=300", "OTHER");
         },
         "refused (CompID problem)"},
        {"logout with a reason", true,
         [](test::RawFixPeer& p) { p.send("35=5|58=Trading halted for the day"); },
         "Trading halted for the day"},
        {"sequence numbers restarted", false,
         [](test::RawFixPeer& p) {
             p.send("35=0");
             p.send("35=0");
             p.closeClient();
             p.acceptLogon(15s); // our logon says 34=1 again
         },
         "FixResetOnLogon=1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        start(row.resetOnLogon);
        const int32_t id = submit("A-1");
        ASSERT_TRUE(onWire("A-1"));
        row.act(peer);
        EXPECT_TRUE(statusSays(row.said));
        EXPECT_NE(gateway->downReason().find(row.said), std::string::npos);
        EXPECT_EQ(gateway->book().find(id)->status, "Pending New") << "still visible";
    }
}

// A peer that ends every session at once is tried again after 1, 2, then 4 s (the first
// wait is FixReconnectInterval), and the status bar says when.
TEST_F(FixScriptedPeer, ReconnectAttemptsBackOff) {
    start();
    std::vector<double> waits;
    for (int i = 0; i < 3; ++i) {
        const auto closed = std::chrono::steady_clock::now();
        peer.closeClient();
        ASSERT_TRUE(peer.acceptLogon(15s));
        waits.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - closed).count());
    }
    EXPECT_LT(waits[0], 3.0);
    EXPECT_GE(waits[2], 3.5) << waits[0] << " " << waits[1] << " " << waits[2];
    EXPECT_GT(waits[2], waits[0] + 2.0);
    EXPECT_TRUE(statusSays("; next attempt in 4 s."));
}

// "Cancel all and exit": the cancels queued behind a full window still reach the peer
// before the logout.
TEST_F(FixScriptedPeer, StopSendsTheCancelsStillWaitingForTheWindow) {
    start(true, 2);
    std::vector<int32_t> ids;
    for (int i = 1; i <= 4; ++i) {
        ids.push_back(submit("A-" + std::to_string(i)));
    }
    const auto ack = [&](const std::string& id, const char* exec, const char* status) {
        peer.send("35=8|37=O" + id + "|11=" + id + "|17=E" + id + "|150=" + exec + "|39=" + status +
                  "|55=IBM|54=1|38=300|151=300|14=0|6=0");
    };
    for (int i = 1; i <= 4; ++i) {
        ASSERT_TRUE(onWire("A-" + std::to_string(i)));
        ack("A-" + std::to_string(i), "0", "0");
    }
    ASSERT_TRUE(allSeen(ids));
    for (int i = 1; i <= 4; ++i) {
        ASSERT_EQ(gateway->CancelOrder("A-" + std::to_string(i), ids[i - 1]), 0);
    }
    std::thread stopping([&] { gateway->stop(); });
    std::this_thread::sleep_for(300ms); // the peer answers only once the stop has begun
    for (int i = 1; i <= 4; ++i) {
        const std::string cancel = "A-" + std::to_string(i) + "-C" + std::to_string(i);
        EXPECT_TRUE(onWire(cancel)) << cancel;
        ack(cancel, "6", "6"); // pending cancel: frees the slot
    }
    const std::string wire = peer.readUntil("\x01"
                                            "35=5\x01",
                                            15s);
    peer.send("35=5"); // the logout answered: the stop need not wait for it
    stopping.join();
    ASSERT_FALSE(wire.empty()) << "then the logout";
    EXPECT_LT(wire.find("11=A-4-C4"), wire.find("\x01"
                                                "35=5\x01"));
}

// Whatever a counterparty sends on a live session, Wicker neither crashes nor lets a bad
// report change an order.
TEST_F(FixScriptedPeer, BadReportsNeverChangeAnOrder) {
    start();
    const int32_t id = submit("A-1");
    ASSERT_TRUE(onWire("A-1"));
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
        const std::vector<FixOrderState> u = rec->updates();
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
    const std::vector<FixOrderWarning> warnings = rec->warnings();
    ASSERT_EQ(warnings.size(), 5u);
    EXPECT_EQ(warnings[0].recordId, id);
    EXPECT_EQ(warnings[0].text,
              "An execution report with unreadable LeavesQty 151=zero was ignored.");
    EXPECT_EQ(warnings[1].text, "An execution report with negative CumQty 14=-300 was ignored.");
    EXPECT_EQ(warnings[2].recordId, 0);
    EXPECT_EQ(warnings[3].clOrdID, "ZZZ");
    EXPECT_EQ(warnings[4].recordId, id);
    EXPECT_EQ(warnings[4].text, "The broker reports 400 filled of an order for 300 (overfill).");
    ASSERT_EQ(rec->rejects().size(), 1u);
    EXPECT_EQ(rec->rejects()[0].clOrdID, "X");
    EXPECT_EQ(rec->rejects()[0].text, "Unknown order") << "CxlRejReason 1 in words";
    EXPECT_TRUE(gateway->isLoggedOn()) << "none of it was worth ending the session for";

    // Garbage on the wire after all that: the session may drop, the book stays.
    ASSERT_TRUE(peer.write("8=FIX.4.2\x01"
                           "9=5\x01"
                           "35=8\x01"
                           "garbage garbage garbage"));
    peer.closeClient();
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return !gateway->isLoggedOn(); }));
    EXPECT_EQ(gateway->book().find(id)->cum, 400);
}

TEST_F(FixScriptedPeer, RejectStormEveryOrderRejectedOnceWithItsReason) {
    start();
    std::vector<int32_t> ids;
    for (int i = 1; i <= 400; ++i) {
        ids.push_back(submit("A-" + std::to_string(i)));
    }
    for (int i = 1; i <= 400; ++i) {
        if (i == 1 || i == 201) { // the window lets 200 out before the first answers
            ASSERT_TRUE(onWire("A-" + std::to_string(i + 199)));
        }
        peer.send(
            "35=8|37=NONE|11=A-" + std::to_string(i) + "|17=" + std::to_string(i) +
            "|150=8|39=8|55=IBM|54=1|38=300|151=0|14=0|103=" + (i % 2 ? "1" : "99|58=Halted"));
    }
    ASSERT_TRUE(RecordingGatewayEvents::waitFor([&] { return rec->rejects().size() >= 400; }));
    ASSERT_TRUE(allSeen(ids));
    const std::vector<FixOrderReject> rejects = rec->rejects();
    EXPECT_EQ(rejects.size(), 400u);
    EXPECT_EQ(rejects.front().text, "Unknown symbol");
    EXPECT_EQ(rejects[1].text, "Halted");
}

} // namespace
} // namespace wicker
