#pragma once

#include <chrono>

namespace wicker {

/// A broken-down local date and time.
struct LocalDateTime {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    bool operator==(const LocalDateTime&) const = default;
};

/// Source of the current time; injected everywhere time matters so tests set it.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;
    virtual ~Clock() = default;
    virtual TimePoint now() const = 0;
    /// now() in the machine's local time zone.
    LocalDateTime localNow() const;
};

/// The machine's clock.
class SystemClock final : public Clock {
public:
    TimePoint now() const override { return std::chrono::system_clock::now(); }
};

/// A clock that moves only when told to: the simulator's virtual time and tests.
class ManualClock final : public Clock {
public:
    explicit ManualClock(TimePoint start = TimePoint{}) : m_now(start) {}
    TimePoint now() const override { return m_now; }
    void set(TimePoint t) { m_now = t; }
    void advance(std::chrono::milliseconds d) { m_now += d; }

private:
    TimePoint m_now;
};

/// Converts to local time (localtime_r).
LocalDateTime ToLocal(Clock::TimePoint t);
/// Makes a time point from a local date and time (mktime).
Clock::TimePoint FromLocal(const LocalDateTime& t);

} // namespace wicker
