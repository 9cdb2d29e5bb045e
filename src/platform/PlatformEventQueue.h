#pragma once

#include "platform/QVXEvents.h"

#include <cstddef>
#include <cstdint>
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
    /// An order update written in place: `fill` makes it from `source` in a record the queue
    /// keeps from drain to drain (its strings keep their room), so an update costs neither
    /// an allocation nor a move of the whole record. The record `fill` is given holds either
    /// the defaults or what the same `fill` wrote into it before: `fill` must write the same
    /// fields every time. It runs on the pushing thread with the queue locked.
    template <class Source>
    void pushOrderUpdate(void (*fill)(QVXOrderStruct&, const Source&), const Source& source);
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
    /// Every event but an order update.
    using Other =
        std::variant<QVXRejectStruct, QVXOrderWarning, QuoteSnap, QuoteUpdate, Shutdown, Status>;
    /// Where a queued event lies: an order-update slot, or an entry of the batch's others.
    /// Small, so that a burst's list of them costs little beside the events themselves.
    struct Queued {
        bool order = false;
        std::uint32_t index = 0;
    };
    using Filler = void (*)();
    struct Slot {
        QVXOrderStruct record;
        Filler filler = nullptr; ///< what wrote the record last; nullptr: a whole pushed one
    };
    /// The events of one drain, in push order. Order updates (the bulk, about 1 KB each) live
    /// in slots that serve batch after batch; deques, so nothing moves as a burst grows.
    struct Batch {
        std::vector<Queued> events;
        std::deque<Slot> orderSlots;
        std::deque<Other> others;
        std::size_t used = 0; ///< slots holding this batch's updates
        void swap(Batch& other) noexcept;
    };

    /// The next free slot of the pending batch, holding the defaults or what `filler` wrote
    /// (m_mutex held).
    QVXOrderStruct& slotFor(Filler filler);
    /// Queues the slot just written (m_mutex held); returns the wake-up to call, if due.
    std::function<void()> commitSlot();
    /// The wake-up to call after a push, if one is due (m_mutex held).
    std::function<void()> wakeAfterPush();
    /// Empties a delivered batch for reuse, giving back slots beyond a small reserve.
    static void recycle(Batch& batch);

    mutable std::mutex m_mutex;
    Batch m_pending;  // pushed, not yet taken by a drain
    Batch m_draining; // taken, delivered from m_next on (drain thread only)
    std::size_t m_next = 0;
    /// Position in m_pending of each symbol's update in the run of updates at its end.
    std::unordered_map<std::string, std::size_t> m_runUpdates;
    bool m_wakePending = false;
    bool m_conflate = false;
    std::function<void()> m_wake;
    TakeGate m_gate; // set before the first drain, read on the draining thread only
};

template <class Source>
void PlatformEventQueue::pushOrderUpdate(void (*fill)(QVXOrderStruct&, const Source&),
                                         const Source& source) {
    std::function<void()> wake;
    {
        std::lock_guard lock(m_mutex);
        fill(slotFor(reinterpret_cast<Filler>(fill)), source);
        wake = commitSlot();
    }
    if (wake) {
        wake();
    }
}

} // namespace wicker
