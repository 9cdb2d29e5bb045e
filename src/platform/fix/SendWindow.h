#pragma once

#include "platform/fix/engine/FixWire.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace wicker {

/// Paces requests onto a FIX session: at most `limit` of them may be on the wire without
/// an answer; the rest wait in order. An unpaced burst of thousands of orders can stall a
/// connection whose peer stops reading; a window keeps both sides flowing. Not
/// thread-safe: the owner locks.
class SendWindow {
public:
    explicit SendWindow(size_t limit) : m_limit(limit == 0 ? 1 : limit) {}

    /// Queues a request (identified by its ClOrdID(11), or MDReqID(262) for market data)
    /// behind the waiting ones.
    void push(FixMessage request);
    /// The next waiting request when the window has room; it then counts as outstanding
    /// until answered() or reset().
    std::optional<FixMessage> next();
    /// The first answer to a request arrived: its slot is free again.
    void answered(const std::string& clOrdID);
    /// The session dropped: nothing is outstanding any more; returns the requests that
    /// were still waiting (they will never be sent).
    std::vector<FixMessage> reset();

    /// A request waits and the window has room for it.
    bool ready() const { return !m_waiting.empty() && m_outstanding.size() < m_limit; }
    /// A request waits and the window has room for a batch of them (an eighth of the
    /// window, or all that wait): worth waking a sender for.
    bool batchReady() const {
        const size_t batch = std::min(m_waiting.size(), std::max<size_t>(1, m_limit / 8));
        return batch > 0 && m_outstanding.size() + batch <= m_limit;
    }
    size_t waiting() const { return m_waiting.size(); }
    size_t outstanding() const { return m_outstanding.size(); }
    size_t limit() const { return m_limit; }
    /// How many slots answers have freed so far: a full window that still moves is no stall.
    size_t answers() const { return m_answers; }

private:
    size_t m_limit;
    size_t m_answers = 0;
    std::deque<FixMessage> m_waiting;
    std::unordered_set<std::string> m_outstanding;
};

} // namespace wicker
