#pragma once

#include "common/Clock.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

namespace wicker {

/// Which tracked orders the broker has not answered yet, and which of those have waited
/// too long. Orders are named by their position in the tracker; a position never seen here
/// counts as answered.
class AnswerWatch {
public:
    enum class State : uint8_t { Answered, Pending, NoAnswer };

    /// The order at `position` was handed to the platform at `handedOff`.
    void Expect(uint32_t position, Clock::TimePoint handedOff);
    /// A report or a reject for the order arrived.
    void Answered(uint32_t position);
    /// Flags the orders still pending at `now` that were handed off `limit` or more
    /// before; returns how many were flagged by this call.
    size_t Flag(Clock::TimePoint now, std::chrono::milliseconds limit);
    State StateOf(uint32_t position) const;
    size_t NoAnswerCount() const { return m_noAnswer; }
    void Clear();

private:
    std::vector<State> m_state;                                  // by position
    std::deque<std::pair<uint32_t, Clock::TimePoint>> m_waiting; // in hand-off order
    size_t m_noAnswer = 0;
};

} // namespace wicker
