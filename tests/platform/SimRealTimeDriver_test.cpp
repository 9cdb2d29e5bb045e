#include "SimDesk.h"
#include "platform/sim/SimPlatform.h"
#include "platform/sim/SimRealTimeDriver.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

// Drains until `done` holds, for at most a generous while: a loaded machine is slow, not wrong.
template <class Done> bool DrainUntil(SimPlatform& platform, SimRecorder& events, Done done) {
    for (int i = 0; i < 1000 && !done(); ++i) {
        platform.Events().drain(events, events);
        std::this_thread::sleep_for(10ms);
    }
    return done();
}

TEST(SimRealTimeDriver, AdvancesByTheTimeThatPassesUntilDestroyed) {
    const SystemClock clock;
    std::atomic<int64_t> advancedUs{0};
    std::atomic<int> calls{0};
    {
        SimRealTimeDriver driver(
            clock,
            [&](std::chrono::microseconds by) {
                advancedUs += by.count();
                ++calls;
            },
            1ms);
        for (int i = 0; i < 1000 && calls < 3; ++i) {
            std::this_thread::sleep_for(5ms);
        }
    }
    const int after = calls;
    EXPECT_GE(after, 3);
    EXPECT_GT(advancedUs.load(), 0);
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(calls.load(), after) << "no call once the driver is gone";
}

TEST(SimRealTimeDriver, ADriverOnAStoppedClockNeverAdvances) {
    const ManualClock clock;
    std::atomic<int> calls{0};
    {
        SimRealTimeDriver driver(
            clock, [&](std::chrono::microseconds) { ++calls; }, 1ms);
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_EQ(calls.load(), 0);
}

TEST(SimRealTimeDriver, PlatformQuotesOnItsOwnWhileStartedAndFallsSilentWhenStopped) {
    const SystemClock clock;
    SimSettings settings;
    settings.updatesPerSecond = 50;
    SimPlatform platform(settings, clock, SimDriver::RealTime);
    SimRecorder events;
    for (int i = 0; i < 20; ++i) {
        platform.RegisterSymbol("S" + std::to_string(i), "*");
    }
    ASSERT_TRUE(platform.Start().ok());
    EXPECT_TRUE(DrainUntil(platform, events, [&] { return events.quotes.size() >= 10; }));

    // An order placed from this thread while the driver moves the market.
    auto order = platform.CreateOrder();
    order->setAccount("ACCT01");
    order->setSide("B");
    order->setSymbol("S1");
    order->setDestination("NASDAQ");
    order->setQuantity(100);
    order->setPriceType(1);
    order->setTif("D");
    EXPECT_GT(order->SubmitOrder(), 0);

    platform.Stop();
    platform.Events().drain(events, events);
    const size_t quotes = events.quotes.size();
    std::this_thread::sleep_for(50ms);
    platform.Events().drain(events, events);
    EXPECT_EQ(events.quotes.size(), quotes);
    EXPECT_EQ(events.journal.back(), "offline");
    ASSERT_EQ(events.updates.size(), 2u);
    EXPECT_EQ(events.updates.back().OrderStatus, QVXOrderStatus::Filled);
}

TEST(SimRealTimeDriver, PlatformDestroyedWhileRunningJoinsItsThread) {
    const SystemClock clock;
    auto platform = std::make_unique<SimPlatform>(SimSettings{}, clock, SimDriver::RealTime);
    platform->RegisterSymbol("IBM", "*");
    ASSERT_TRUE(platform->Start().ok());
    ASSERT_TRUE(platform->Start().ok()) << "starting twice is harmless";
    std::this_thread::sleep_for(30ms);
    platform.reset();
    SUCCEED();
}

} // namespace
} // namespace wicker::test
