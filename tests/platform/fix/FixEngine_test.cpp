#include "platform/fix/FixTestPeer.h"
#include "platform/fix/RecordingSessionListener.h"
#include "platform/fix/engine/FixInitiator.h"
#include "platform/fix/engine/ReconnectBackoff.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

FixMessage Order(const std::string& clOrdId) {
    FixMessage m;
    m.msgType = "D";
    m.add(11, clOrdId);
    m.add(21, "1");
    m.add(55, "IBM");
    m.add(54, "1");
    m.add(38, "100");
    m.add(40, "1");
    m.add(60, "20240315-14:30:00.000");
    return m;
}

TEST(FixEngine, OrderGoesOutAndGroupedReplyComesBackWhole) {
    for (const FixVersion version : {FixVersion::Fix42, FixVersion::Fix44}) {
        SCOPED_TRACE(BeginStringOf(version));
        test::FixTestPeer peer({test::PeerSide(version)});
        peer.setReply([](FixAcceptor& a, const FixMessage& in) {
            FixMessage w;
            w.msgType = "W";
            w.add(55, *in.find(55));
            FixGroup g{268,
                       {{{269, "0"}, {270, "10.5"}, {271, "300"}},
                        {{269, "1"}, {270, "10.75"}, {271, "200"}}}};
            w.groups.push_back(g);
            a.send(0, w);
        });
        test::RecordingSessionListener listener;
        FixInitiator initiator(test::ClientSide(peer.port(), version), listener);
        initiator.start();
        ASSERT_TRUE(listener.waitFor([&] { return listener.logons == 1; }));
        EXPECT_TRUE(initiator.isLoggedOn());

        FixMessage order = Order("A-1");
        const int seq = initiator.send(order);
        EXPECT_GT(seq, 1); // the logon took 1
        EXPECT_EQ(order.msgSeqNum, seq);
        {
            std::lock_guard lock(listener.mutex);
            EXPECT_EQ(listener.sending,
                      std::vector<std::string>{"D " + std::to_string(seq) + " A-1"});
        }

        ASSERT_TRUE(listener.waitFor([&] { return !listener.messages.empty(); }));
        const FixMessage& w = listener.messages.front();
        EXPECT_EQ(w.msgType, "W");
        ASSERT_NE(w.findGroup(268), nullptr);
        const FixGroup& g = *w.findGroup(268);
        ASSERT_EQ(g.entries.size(), 2u);
        EXPECT_EQ(g.entries[1][0].tag, 269);
        EXPECT_EQ(g.entries[1][0].value, "1");
        EXPECT_EQ(g.entries[1][1].value, "10.75");

        const std::vector<FixMessage> got = peer.received();
        ASSERT_EQ(got.size(), 1u);
        EXPECT_EQ(*got[0].find(11), "A-1");
        EXPECT_EQ(got[0].msgSeqNum, seq);
        initiator.stop();
        EXPECT_FALSE(initiator.isLoggedOn());
    }
}

// A counterparty that lost our order asks for it again after the reconnect: it is not
// resent (it would reach the market late), the owner hears of it, and the session goes on.
TEST(FixEngine, OrderAskedForAgainAfterReconnectIsNotResent) {
    test::RecordingSessionListener listener;
    auto peer = std::make_unique<test::FixTestPeer>(std::vector{test::PeerSide()});
    const int port = peer->port();
    FixInitiator initiator(test::ClientSide(port), listener);
    initiator.start();
    ASSERT_TRUE(listener.waitFor([&] { return listener.logons == 1; }));
    FixMessage order = Order("A-1");
    const int seq = initiator.send(order);
    ASSERT_GT(seq, 0);
    ASSERT_TRUE(peer->waitFor([&] { return peer->received().size() == 1; }, 15s));

    // A new counterparty on the same port that remembers nothing (memory store).
    peer.reset();
    ASSERT_TRUE(listener.waitFor([&] { return listener.logouts >= 1; }));
    peer = std::make_unique<test::FixTestPeer>(std::vector{test::PeerSide()}, port);
    ASSERT_TRUE(listener.waitFor([&] { return listener.logons == 2; }, 20s));
    ASSERT_TRUE(listener.waitFor([&] { return !listener.stale.empty(); }));
    {
        std::lock_guard lock(listener.mutex);
        EXPECT_EQ(listener.stale, std::vector<std::string>{"D " + std::to_string(seq) + " A-1"});
    }
    // The gap was filled: a new order reaches the new counterparty, the old one never does.
    FixMessage next = Order("A-2");
    ASSERT_GT(initiator.send(next), seq);
    ASSERT_TRUE(peer->waitFor([&] { return !peer->received().empty(); }, 15s));
    const std::vector<FixMessage> got = peer->received();
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(*got[0].find(11), "A-2");
}

TEST(FixEngine, NothingIsSentOrNumberedWhileNotLoggedOn) {
    test::RecordingSessionListener listener;
    FixSessionConfig c = test::ClientSide(1); // nobody listens on port 1
    FixInitiator initiator(c, listener);
    initiator.start();
    FixMessage order = Order("A-1");
    EXPECT_EQ(initiator.send(order), 0);
    EXPECT_EQ(order.msgSeqNum, 0);
}

TEST(FixEngine, BadSettingsFileIsAnError) {
    test::RecordingSessionListener listener;
    test::TempDir dir;
    FixSessionConfig c = test::ClientSide(1);
    c.settingsFile = (dir.path() / "missing.cfg").string();
    FixInitiator initiator(c, listener);
    EXPECT_THROW(initiator.start(), FixEngineError);
}

} // namespace
} // namespace wicker

namespace wicker {
namespace {

// Each row: how long the session was up before it went down (-1: the connection failed),
// and the wait the back-off then gives, starting from 5 s with a 60 s cap.
TEST(ReconnectBackoff, DoublesToTheCapAndStartsAgainOnlyAfterAStableSession) {
    struct Step {
        int upSeconds;
        int wait;
    };
    const Step steps[] = {{-1, 5},  {-1, 10}, {2, 20},  {59, 40}, {-1, 60},
                          {-1, 60}, {60, 5},  {-1, 10}, {600, 5}};
    ReconnectBackoff backoff(std::chrono::seconds(5), std::chrono::seconds(60));
    auto now = std::chrono::steady_clock::time_point();
    int row = 0;
    for (const Step& s : steps) {
        if (s.upSeconds >= 0) {
            backoff.loggedOn(now);
            now += std::chrono::seconds(s.upSeconds);
        }
        EXPECT_EQ(backoff.wentDown(now).count(), s.wait) << "row " << row++;
    }
}

} // namespace
} // namespace wicker
