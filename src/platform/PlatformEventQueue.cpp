#include "platform/PlatformEventQueue.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <utility>

namespace wicker {
namespace {

/// Events delivered in one go from which on their room is given back to the system.
constexpr std::size_t kBurst = 1000;

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

    void operator()(const QVXOrderStruct& e) const { orders.OnQVXOrderUpdate(e); }
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

void PlatformEventQueue::push(Event event) {
    std::function<void()> wake;
    {
        std::lock_guard lock(m_mutex);
        bool merged = false;
        if (auto* update = std::get_if<QuoteUpdate>(&event); update != nullptr && m_conflate) {
            const auto [at, added] =
                m_runUpdates.try_emplace(update->quote.Symbol, m_pending.size());
            if (!added) {
                MergeQuote(std::get<QuoteUpdate>(m_pending[at->second]).quote, update->quote);
                merged = true;
            }
        } else {
            // Orders, snapshots and status keep their place among the updates around them.
            m_runUpdates.clear();
        }
        if (!merged) {
            m_pending.push_back(std::move(event));
        }
        if (!m_wakePending && m_wake) {
            m_wakePending = true;
            wake = m_wake;
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
        if (m_next == m_draining.size()) {
            m_draining.clear();
            m_next = 0;
            m_draining.swap(m_pending);
            m_runUpdates.clear();
        }
    };
    if (m_gate && m_next == m_draining.size()) {
        m_gate(take);
    } else {
        take();
    }
    const Deliver deliver{orders, quotes};
    std::size_t delivered = 0;
    while (m_next < m_draining.size() && delivered < maxEvents) {
        // Advance first: a handler that throws must not see its event again.
        const Event& event = m_draining[m_next++];
        ++delivered;
        std::visit(deliver, event);
    }
    if (m_next == m_draining.size() && m_draining.size() >= kBurst) {
        m_draining.clear();
        m_next = 0;
        GiveBackFreedPages();
    }
    if (m_next < m_draining.size()) {
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
    return m_pending.size() + (m_draining.size() - m_next);
}

} // namespace wicker
