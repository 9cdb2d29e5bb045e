#pragma once

#include "platform/QVXEvents.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace wicker {

/// The one road from a platform to the trading logic. A platform pushes events from any
/// thread; the owner of the handlers (the UI thread) drains them in the order they were
/// pushed. The logic behind the handlers therefore never needs a lock.
///
/// With conflation on (the screen's pump turns it on), quote updates are conflated before
/// they reach the draining thread: an update of a symbol that already has an undelivered update,
/// with nothing but quote updates pushed since, is merged into it (the later values win, the fields
/// carried add up). Applying the merged record has the effect of applying both; only updates of
/// other symbols can end up in a different order around it.
class PlatformEventQueue {
public:
    struct QuoteSnap {
        QVXQuoteStruct quote;
    };
    struct QuoteUpdate {
        QVXQuoteStruct quote;
    };
    struct Shutdown {};
    struct Status {
        bool online = false;
        std::string text;
    };
    using Event = std::variant<QVXOrderStruct, QVXRejectStruct, QVXOrderWarning, QuoteSnap,
                               QuoteUpdate, Shutdown, Status>;

    /// `wake` is called on the pushing thread when the queue gets its first event after a
    /// drain, so a burst costs one wake-up. It must only schedule a drain, never drain.
    void setWakeUp(std::function<void()> wake);

    void push(Event event);
    /// Turns the merging of quote updates on or off; off by default, so that a consumer that
    /// counts the platform's updates sees every one.
    void setQuoteConflation(bool on);
    /// Merges one update's carried fields into an earlier one of the same symbol.
    static void MergeQuote(QVXQuoteStruct& into, const QVXQuoteStruct& later);

    /// Runs around each drain's taking of the pushed events: it must call `take` once, and
    /// may do work before delivery. A simulated broker makes its book durable there, so
    /// nothing it reports reaches the trader before it would survive a restart.
    using TakeGate = std::function<void(const std::function<void()>& take)>;
    void setTakeGate(TakeGate gate);

    /// Delivers up to `maxEvents` queued events to the handlers, oldest first, and returns
    /// how many it delivered. Events pushed by a handler wait for the next drain. When some
    /// are left, the wake-up is called again so the owner comes back for them.
    std::size_t drain(QVXEvents& orders, QVXQuoteEvents& quotes,
                      std::size_t maxEvents = std::numeric_limits<std::size_t>::max());

    /// Events not yet delivered. On the draining thread.
    std::size_t size() const;

private:
    mutable std::mutex m_mutex;
    // Deques, not vectors: a burst (a basket's acknowledgements, about 1 KB an event) must not
    // keep its room for the rest of the day once it has been delivered.
    std::deque<Event> m_pending;  // pushed, not yet taken by a drain
    std::deque<Event> m_draining; // taken, delivered from m_next on (drain thread only)
    std::size_t m_next = 0;
    /// Position in m_pending of each symbol's update in the run of updates at its end.
    std::unordered_map<std::string, std::size_t> m_runUpdates;
    bool m_wakePending = false;
    bool m_conflate = false;
    std::function<void()> m_wake;
    TakeGate m_gate; // set before the first drain, read on the draining thread only
};

} // namespace wicker
