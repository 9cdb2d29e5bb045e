#include "platform/PlatformEventQueue.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <type_traits>
#include <utility>

namespace wicker {
namespace {

/// Events delivered in one go from which on their room is given back to the system.
constexpr std::size_t kBurst = 1000;
/// Order-update slots a delivered batch keeps for the next one: enough for a steady flow of
/// reports, little enough (about 300 KB) to keep all day.
constexpr std::size_t kKeptSlots = 256;

/// A burst's events (a basket's acknowledgements, a busy tick's quotes: about 1 KB each) were
/// allocated one after another and are free together once delivered; the allocator keeps such
/// room for good unless told to give whole free pages back.
void GiveBackFreedPages() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

struct Deliver {
    QVXEvents& orders;
    QVXQuoteEvents& quotes;

    void operator()(const QVXRejectStruct& e) const { orders.OnQVXOrderReject(e); }
    void operator()(const QVXOrderWarning& e) const { orders.OnQVXOrderWarning(e); }
    void operator()(const PlatformEventQueue::QuoteSnap& e) const {
        quotes.OnQVXQuoteSnap(e.quote);
    }
    void operator()(const PlatformEventQueue::QuoteUpdate& e) const {
        quotes.OnQVXQuoteUpdate(e.quote);
    }
    void operator()(const PlatformEventQueue::Shutdown&) const { orders.OnQVXShutdown(); }
    void operator()(const PlatformEventQueue::Status& e) const {
        orders.OnPlatformStatus(e.online, e.text);
    }
};

} // namespace

void PlatformEventQueue::setWakeUp(std::function<void()> wake) {
    std::lock_guard lock(m_mutex);
    m_wake = std::move(wake);
}

void PlatformEventQueue::setTakeGate(TakeGate gate) {
    m_gate = std::move(gate);
}

void PlatformEventQueue::setQuoteConflation(bool on) {
    std::lock_guard lock(m_mutex);
    m_conflate = on;
    m_runUpdates.clear();
}

void PlatformEventQueue::MergeQuote(QVXQuoteStruct& into, const QVXQuoteStruct& later) {
    namespace F = QVXQuoteField;
    const auto take = [&](uint32_t field, auto member) {
        if (later.Carries(field)) {
            into.*member = later.*member;
        }
    };
    take(F::Bid, &QVXQuoteStruct::BidPrice);
    take(F::Ask, &QVXQuoteStruct::AskPrice);
    take(F::Last, &QVXQuoteStruct::LastPrice);
    take(F::BidSize, &QVXQuoteStruct::BidSize);
    take(F::AskSize, &QVXQuoteStruct::AskSize);
    take(F::LastSize, &QVXQuoteStruct::LastSize);
    take(F::CumVolume, &QVXQuoteStruct::CumVolume);
    take(F::Open, &QVXQuoteStruct::OpenPrice);
    take(F::High, &QVXQuoteStruct::HighPrice);
    take(F::Low, &QVXQuoteStruct::LowPrice);
    take(F::Close, &QVXQuoteStruct::ClosePrice);
    take(F::Vwap, &QVXQuoteStruct::Vwap);
    take(F::Week52High, &QVXQuoteStruct::Week52High);
    take(F::Week52Low, &QVXQuoteStruct::Week52Low);
    take(F::AvgVolume, &QVXQuoteStruct::AvgVolume);
    take(F::SharesOutstanding, &QVXQuoteStruct::SharesOutstanding);
    take(F::Reference, &QVXQuoteStruct::CompanyName);
    take(F::Reference, &QVXQuoteStruct::Cusip);
    take(F::Reference, &QVXQuoteStruct::Exchange);
    into.Fields |= later.Fields;
}

void PlatformEventQueue::Batch::swap(Batch& other) noexcept {
    events.swap(other.events);
    orderSlots.swap(other.orderSlots);
    others.swap(other.others);
    std::swap(used, other.used);
}

QVXOrderStruct& PlatformEventQueue::slotFor(Filler filler) {
    if (m_pending.used == m_pending.orderSlots.size()) {
        m_pending.orderSlots.emplace_back();
    }
    Slot& slot = m_pending.orderSlots[m_pending.used];
    if (slot.filler != filler) {
        slot.record = QVXOrderStruct{};
        slot.filler = filler;
    }
    return slot.record;
}

std::function<void()> PlatformEventQueue::commitSlot() {
    m_pending.events.push_back({true, static_cast<std::uint32_t>(m_pending.used)});
    ++m_pending.used;
    m_runUpdates.clear(); // an order keeps its place among the quote updates around it
    return wakeAfterPush();
}

std::function<void()> PlatformEventQueue::wakeAfterPush() {
    if (m_wakePending || !m_wake) {
        return {};
    }
    m_wakePending = true;
    return m_wake;
}

void PlatformEventQueue::recycle(Batch& batch) {
    batch.events.clear();
    batch.others.clear();
    batch.used = 0;
    if (batch.orderSlots.size() > kKeptSlots) {
        batch.orderSlots.resize(kKeptSlots);
    }
}

void PlatformEventQueue::push(Event event) {
    std::function<void()> wake;
    {
        std::lock_guard lock(m_mutex);
        if (auto* update = std::get_if<QVXOrderStruct>(&event)) {
            // A whole record: it replaces the slot's, so no filler's fields linger.
            Slot& slot = m_pending.used < m_pending.orderSlots.size()
                             ? m_pending.orderSlots[m_pending.used]
                             : m_pending.orderSlots.emplace_back();
            slot.record = std::move(*update);
            slot.filler = nullptr;
            wake = commitSlot();
        } else {
            bool merged = false;
            if (auto* quote = std::get_if<QuoteUpdate>(&event); quote != nullptr && m_conflate) {
                const auto [at, added] =
                    m_runUpdates.try_emplace(quote->quote.Symbol, m_pending.events.size());
                if (!added) {
                    const Queued& earlier = m_pending.events[at->second];
                    MergeQuote(std::get<QuoteUpdate>(m_pending.others[earlier.index]).quote,
                               quote->quote);
                    merged = true;
                }
            } else {
                // Snapshots and status keep their place among the updates around them.
                m_runUpdates.clear();
            }
            if (!merged) {
                std::visit(
                    [this](auto&& e) {
                        using T = std::decay_t<decltype(e)>;
                        if constexpr (!std::is_same_v<T, QVXOrderStruct>) {
                            m_pending.others.emplace_back(std::move(e));
                        }
                    },
                    std::move(event));
                m_pending.events.push_back(
                    {false, static_cast<std::uint32_t>(m_pending.others.size() - 1)});
            }
            wake = wakeAfterPush();
        }
    }
    if (wake) {
        wake();
    }
}

std::size_t PlatformEventQueue::drain(QVXEvents& orders, QVXQuoteEvents& quotes,
                                      std::size_t maxEvents) {
    const auto take = [this] {
        // From here on, a push schedules another drain.
        std::lock_guard lock(m_mutex);
        m_wakePending = false;
        if (m_next == m_draining.events.size()) {
            recycle(m_draining);
            m_next = 0;
            m_draining.swap(m_pending);
            m_runUpdates.clear();
        }
    };
    if (m_gate && m_next == m_draining.events.size()) {
        m_gate(take);
    } else {
        take();
    }
    const Deliver others{orders, quotes};
    std::size_t delivered = 0;
    while (m_next < m_draining.events.size() && delivered < maxEvents) {
        // Advance first: a handler that throws must not see its event again.
        const Queued event = m_draining.events[m_next++];
        ++delivered;
        if (event.order) {
            orders.OnQVXOrderUpdate(m_draining.orderSlots[event.index].record);
        } else {
            std::visit(others, m_draining.others[event.index]);
        }
    }
    if (m_next == m_draining.events.size() && m_draining.events.size() >= kBurst) {
        Batch().swap(m_draining);
        m_next = 0;
        GiveBackFreedPages();
    }
    if (m_next < m_draining.events.size()) {
        std::function<void()> wake;
        {
            std::lock_guard lock(m_mutex);
            if (!m_wakePending && m_wake) {
                m_wakePending = true;
                wake = m_wake;
            }
        }
        if (wake) {
            wake();
        }
    }
    return delivered;
}

std::size_t PlatformEventQueue::size() const {
    std::lock_guard lock(m_mutex);
    return m_pending.events.size() + (m_draining.events.size() - m_next);
}

} // namespace wicker
