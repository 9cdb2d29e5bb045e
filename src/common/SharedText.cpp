#include "common/SharedText.h"

#include <utility>

namespace wicker {

SharedText::SharedText(std::string_view text) {
    if (!text.empty()) {
        m_block = new Block{1, std::string(text)};
    }
}

SharedText& SharedText::operator=(SharedText&& other) noexcept {
    if (this != &other) {
        Release();
        m_block = std::exchange(other.m_block, nullptr);
    }
    return *this;
}

void SharedText::Drop() noexcept {
    if (--m_block->holders == 0) {
        delete m_block;
    }
    m_block = nullptr;
}

SharedText& SharedText::operator=(std::string_view text) {
    if (str() != text) {
        *this = SharedText(text);
    }
    return *this;
}

const SharedText& RecentTexts::Miss(std::string_view text) {
    for (m_last = 0; m_last < kKept; ++m_last) {
        if (m_kept[m_last] == text) {
            return m_kept[m_last];
        }
    }
    m_last = m_next;
    m_next = (m_next + 1) % kKept;
    return m_kept[m_last] = SharedText(text);
}

} // namespace wicker
