#include "platform/PlatformEventQueue.h"

#include <utility>

namespace wicker {
namespace {

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

void PlatformEventQueue::push(Event event) {
    std::function<void()> wake;
    {
        std::lock_guard lock(m_mutex);
        m_pending.push_back(std::move(event));
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
