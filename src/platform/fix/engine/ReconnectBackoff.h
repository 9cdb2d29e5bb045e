#pragma once

#include <chrono>

namespace wicker {

/// How long to wait before connecting again: the first delay after a failure, doubling
/// with every failure that follows, never more than the cap. A session that stayed logged
/// on for at least the cap starts again from the first delay; one the counterparty ends
/// at once (a logout right after the logon) keeps doubling, so no peer is hammered.
class ReconnectBackoff {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    ReconnectBackoff(std::chrono::seconds first, std::chrono::seconds cap);

    void loggedOn(TimePoint at);
    /// A connection failed or the session went down at `at`: the wait before the next try.
    std::chrono::seconds wentDown(TimePoint at);

private:
    std::chrono::seconds m_first;
    std::chrono::seconds m_cap;
    std::chrono::seconds m_next;
    bool m_up = false;
    TimePoint m_upSince;
};

} // namespace wicker
