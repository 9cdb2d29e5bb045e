#pragma once

#include "common/Clock.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace wicker {

/// A thread that moves the simulator on by the time that passes on `clock`, every `period`.
/// It runs from construction to destruction; destroying it stops and joins the thread.
class SimRealTimeDriver {
public:
    using Advance = std::function<void(std::chrono::microseconds)>;

    SimRealTimeDriver(const Clock& clock, Advance advance,
                      std::chrono::milliseconds period = std::chrono::milliseconds(20));
    ~SimRealTimeDriver();
    SimRealTimeDriver(const SimRealTimeDriver&) = delete;
    SimRealTimeDriver& operator=(const SimRealTimeDriver&) = delete;

private:
    void Run(std::stop_token stop);

    const Clock& m_clock;
    Advance m_advance;
    std::chrono::milliseconds m_period;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::jthread m_thread; // last: starts once the members above exist
};

} // namespace wicker
