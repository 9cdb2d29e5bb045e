#pragma once

#include "platform/fix/engine/FixWire.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace wicker {

/// Paces market-data requests apart from orders: at most `limit` subscriptions may wait for
/// their first answer. A request's slot ends on its snapshot, a refusal, a timeout or the
/// end of the session; an unsubscribe gets no answer and holds no slot. Orders never wait
/// behind market data. Not thread-safe: the owner locks.
class MarketDataPacer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    MarketDataPacer(size_t limit, std::chrono::milliseconds timeout)
        : m_limit(limit == 0 ? 1 : limit), m_timeout(timeout) {}

    /// Queues a MarketDataRequest (known by its MDReqID(262)).
    void push(FixMessage request);
    /// Takes back a subscription that has not gone out yet; false when there is none (it
    /// went out, and needs an unsubscribe).
    bool withdraw(const std::string& mdReqID);
    /// The next request that may go now; slots of requests unanswered for longer than the
    /// timeout are freed first.
    std::optional<FixMessage> next(TimePoint now);
    /// The request went out with this sequence number (a session Reject names it so).
    void sent(const std::string& mdReqID, int msgSeqNum);
    /// A snapshot or refusal of this request arrived: its slot is free.
    void answered(const std::string& mdReqID);
    /// The MDReqID of the request sent with this sequence number, if it still waits.
    std::optional<std::string> bySeqNum(int msgSeqNum) const;
    /// Drops everything (session down, or market data refused for this session).
    void reset();

    bool ready(TimePoint now) const;
    size_t waiting() const { return m_waiting.size(); }
    size_t outstanding() const { return m_outstanding.size(); }

private:
    void expire(TimePoint now);

    size_t m_limit;
    std::chrono::milliseconds m_timeout;
    std::deque<FixMessage> m_waiting;
    std::unordered_map<std::string, TimePoint> m_outstanding; // by MDReqID: when sent
    std::unordered_map<int, std::string> m_bySeq;
};

} // namespace wicker
