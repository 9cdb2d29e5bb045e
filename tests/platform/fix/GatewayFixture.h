#pragma once

// A FixGateway's folder, clock and recorded events, for tests that log one on to a peer.

#include "platform/fix/FixGateway.h"
#include "platform/fix/FixTestPeer.h"
#include "platform/fix/RecordingGatewayEvents.h"
#include "support/TempDir.h"

#include <memory>

#include <gtest/gtest.h>

namespace wicker::test {

/// Starts the gateway and waits for its logon; false if either fails.
inline bool LogOn(FixGateway& gateway) {
    return gateway.start().ok() &&
           RecordingGatewayEvents::waitFor([&] { return gateway.isLoggedOn(); });
}

template <class ClockType> class GatewayFixtureOn : public ::testing::Test {
protected:
    /// A gateway to the peer on `port` that reconnects after a second, logged on.
    std::unique_ptr<FixGateway> Start(int port, FixVersion v = FixVersion::Fix42,
                                      int window = 200) {
        FixPlatformSettings s;
        s.port = port;
        s.version = v;
        s.reconnectInterval = 1;
        s.sendWindow = window;
        auto g = std::make_unique<FixGateway>(s, dir / "fix", clock, events);
        EXPECT_TRUE(LogOn(*g));
        return g;
    }

    TempDir dir;
    ClockType clock;
    RecordingGatewayEvents events;
};

/// On a clock that stands at 2024-03-15 14:30 UTC.
class GatewayFixture : public GatewayFixtureOn<ManualClock> {
protected:
    GatewayFixture() { clock.set(Clock::TimePoint{std::chrono::seconds(1710513000)}); }
};

} // namespace wicker::test
