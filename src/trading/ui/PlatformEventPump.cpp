#include "trading/ui/PlatformEventPump.h"

#include <QMetaObject>

namespace wicker {

PlatformEventPump::PlatformEventPump(PlatformEventQueue& queue, std::function<size_t(size_t)> drain,
                                     size_t batch, QObject* parent)
    : QObject(parent), m_queue(queue), m_drain(std::move(drain)), m_batch(batch > 0 ? batch : 1) {
    // The screen shows each symbol's latest quote: merged updates spare the UI thread.
    m_queue.setQuoteConflation(true);
    m_queue.setWakeUp([this] {
        // Any thread: only schedule. Qt drops the call if the pump is gone by then.
        QMetaObject::invokeMethod(
            this, [this] { drainBatch(); }, Qt::QueuedConnection);
    });
}

PlatformEventPump::~PlatformEventPump() {
    m_queue.setWakeUp({});
    m_queue.setQuoteConflation(false);
}

size_t PlatformEventPump::drainBatch() {
    return m_drain ? m_drain(m_batch) : 0;
}

} // namespace wicker
