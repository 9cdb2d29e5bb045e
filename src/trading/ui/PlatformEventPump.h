#pragma once

#include "platform/PlatformEventQueue.h"

#include <cstddef>
#include <functional>

#include <QObject>

namespace wicker {

/// Brings the platform's events to the UI thread: the queue's wake-up (called on the
/// platform's thread) posts one queued call, and that call delivers at most `batch` events.
/// When more are waiting the queue wakes it again, so the window keeps painting and taking
/// clicks between batches however many quotes arrive. While it exists the queue merges
/// each symbol's quote updates.
class PlatformEventPump final : public QObject {
    Q_OBJECT

public:
    /// `drain(max)` delivers up to max events and returns how many it delivered.
    PlatformEventPump(PlatformEventQueue& queue, std::function<size_t(size_t)> drain,
                      size_t batch = 2000, QObject* parent = nullptr);
    /// Takes the wake-up back from the queue before the pump goes away.
    ~PlatformEventPump() override;

    /// One batch; what the posted call runs.
    size_t drainBatch();
    size_t batch() const { return m_batch; }

private:
    PlatformEventQueue& m_queue;
    std::function<size_t(size_t)> m_drain;
    size_t m_batch;
};

} // namespace wicker
