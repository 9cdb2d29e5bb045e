#include "trading/orders/SendParts.h"

#include <algorithm>
#include <utility>

namespace wicker {

SendParts::SendParts(size_t first, size_t count, WritePart writePart, After after)
    : m_writePart(std::move(writePart)), m_after(std::move(after)), m_ready(first), m_seen(first) {
    m_helper = std::thread([this, first, count] { Run(first, count); });
}

SendParts::~SendParts() {
    if (m_helper.joinable()) {
        Finish();
    }
}

void SendParts::Run(size_t first, size_t count) {
    try {
        for (size_t from = first, size = std::max<size_t>(first, 1); from < count;
             from += size, size *= 2) {
            if (std::lock_guard lock(m_mutex); m_stop) {
                break;
            }
            const size_t to = std::min(count, from + size);
            m_writePart(from, to);
            {
                std::lock_guard lock(m_mutex);
                m_ready = to;
            }
            m_progress.notify_one();
        }
    } catch (...) {
        m_failure = std::current_exception();
    }
    {
        std::lock_guard lock(m_mutex);
        m_over = true;
    }
    m_progress.notify_one();
    try {
        m_afterResult = m_after();
    } catch (const std::exception& e) {
        m_afterResult = Error{e.what()};
    }
}

bool SendParts::Ready(size_t i) {
    if (i < m_seen) {
        return true;
    }
    std::unique_lock lock(m_mutex);
    m_progress.wait(lock, [&] { return m_ready > i || m_over; });
    m_seen = m_ready;
    return i < m_seen;
}

void SendParts::StopParts() {
    std::unique_lock lock(m_mutex);
    m_stop = true;
    m_progress.wait(lock, [&] { return m_over; });
}

Result<void> SendParts::Finish() {
    StopParts();
    m_helper.join();
    return std::move(*m_afterResult);
}

} // namespace wicker
