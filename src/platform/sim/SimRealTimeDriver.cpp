#include "platform/sim/SimRealTimeDriver.h"

#include <algorithm>

namespace wicker {

SimRealTimeDriver::SimRealTimeDriver(const Clock& clock, Advance advance,
                                     std::chrono::milliseconds period)
    : m_clock(clock), m_advance(std::move(advance)), m_period(period),
      m_thread([this](std::stop_token stop) { Run(std::move(stop)); }) {}

SimRealTimeDriver::~SimRealTimeDriver() {
    m_thread.request_stop();
    // jthread joins in its own destructor; the wait below wakes at once on the stop request.
}

void SimRealTimeDriver::Run(std::stop_token stop) {
    // A machine that slept must not replay hours of market in one go.
    constexpr std::chrono::microseconds kMaxStep = std::chrono::seconds(1);
    Clock::TimePoint last = m_clock.now();
    std::unique_lock lock(m_mutex);
    while (!stop.stop_requested()) {
        // Wakes early only for a stop request.
        m_wake.wait_for(lock, stop, m_period, [] { return false; });
        if (stop.stop_requested()) {
            break;
        }
        const Clock::TimePoint now = m_clock.now();
        const auto passed = std::chrono::duration_cast<std::chrono::microseconds>(now - last);
        last = now;
        if (passed.count() > 0) {
            lock.unlock();
            m_advance(std::min(passed, kMaxStep));
            lock.lock();
        }
    }
}

} // namespace wicker
