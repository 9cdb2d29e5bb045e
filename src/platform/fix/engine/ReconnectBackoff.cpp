#include "platform/fix/engine/ReconnectBackoff.h"

#include <algorithm>

namespace wicker {

ReconnectBackoff::ReconnectBackoff(std::chrono::seconds first, std::chrono::seconds cap)
    : m_first(std::max(first, std::chrono::seconds(1))), m_cap(std::max(cap, m_first)),
      m_next(m_first) {}

void ReconnectBackoff::loggedOn(TimePoint at) {
    m_up = true;
    m_upSince = at;
}

std::chrono::seconds ReconnectBackoff::wentDown(TimePoint at) {
    if (m_up && at - m_upSince >= m_cap) {
        m_next = m_first;
    }
    m_up = false;
    const std::chrono::seconds wait = m_next;
    m_next = std::min(m_next * 2, m_cap);
    return wait;
}

} // namespace wicker
