#include "trading/orders/ClOrderIdIndex.h"

#include <cstring>

namespace wicker {

uint32_t ClOrderIdIndex::HashOf(std::string_view id) {
    // A send's ids share a long prefix and differ in their last digits: every byte is mixed
    // in, eight at a time (a send hashes thousands while the trader waits).
    constexpr uint64_t kMix = 0x9E3779B97F4A7C15ull;
    uint64_t h = id.size() * kMix;
    size_t at = 0;
    for (; at + 8 <= id.size(); at += 8) {
        uint64_t word = 0;
        std::memcpy(&word, id.data() + at, 8);
        h = (h ^ word) * kMix;
        h ^= h >> 32;
    }
    uint64_t tail = 0;
    if (at < id.size()) {
        std::memcpy(&tail, id.data() + at, id.size() - at);
    }
    h = (h ^ tail) * kMix;
    return static_cast<uint32_t>(h >> 32);
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
