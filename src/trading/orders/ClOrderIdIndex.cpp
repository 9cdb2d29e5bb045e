#include "trading/orders/ClOrderIdIndex.h"

#include <algorithm>
#include <functional>

namespace wicker {

uint32_t ClOrderIdIndex::HashOf(std::string_view id) {
    const uint64_t h = std::hash<std::string_view>{}(id);
    return static_cast<uint32_t>(h ^ (h >> 32));
}

void ClOrderIdIndex::add(std::string_view id, uint32_t position) {
    if ((m_size + 1) * 2 > m_slots.size()) {
        Grow();
    }
    Insert({HashOf(id), position});
    ++m_size;
}

void ClOrderIdIndex::Insert(Slot slot) {
    const size_t mask = m_slots.size() - 1;
    for (size_t i = slot.hash & mask;; i = (i + 1) & mask) {
        if (m_slots[i].position == kEmpty) {
            m_slots[i] = slot;
            return;
        }
    }
}

void ClOrderIdIndex::clear() {
    m_slots.clear();
    m_size = 0;
}

void ClOrderIdIndex::Grow() {
    std::vector<Slot> old;
    old.reserve(m_size);
    for (const Slot& slot : m_slots) {
        if (slot.position != kEmpty) {
            old.push_back(slot);
        }
    }
    // Added again in the order they were first added, so orders sharing an id keep theirs.
    std::sort(old.begin(), old.end(),
              [](const Slot& a, const Slot& b) { return a.position < b.position; });
    m_slots.assign(m_slots.empty() ? 64 : m_slots.size() * 2, Slot{});
    for (const Slot& slot : old) {
        Insert(slot);
    }
}

} // namespace wicker
