#include "trading/orders/ClOrderIdIndex.h"

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
    std::vector<Slot> old = std::move(m_slots);
    m_slots.assign(old.empty() ? 64 : old.size() * 2, Slot{});
    if (old.empty()) {
        return;
    }
    // The entries of one id lie along one probe run in the order they were added. Read from
    // an empty slot on, no run is cut by the end of the table, so every id's entries are added
    // again in their first order.
    size_t start = 0;
    while (old[start].position != kEmpty) {
        ++start;
    }
    for (size_t n = 0; n < old.size(); ++n) {
        const Slot& slot = old[(start + n) & (old.size() - 1)];
        if (slot.position != kEmpty) {
            Insert(slot);
        }
    }
}

} // namespace wicker
