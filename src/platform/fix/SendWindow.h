#pragma once

#include "platform/fix/engine/FixWire.h"

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

    size_t waiting() const { return m_waiting.size(); }
    size_t outstanding() const { return m_outstanding.size(); }
    size_t limit() const { return m_limit; }

private:
    size_t m_limit;
    std::deque<FixMessage> m_waiting;
    std::unordered_set<std::string> m_outstanding;
};

} // namespace wicker
