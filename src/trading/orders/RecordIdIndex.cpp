#include "trading/orders/RecordIdIndex.h"

namespace wicker {

size_t RecordIdIndex::SlotOf(int32_t id) const {
    // Fibonacci hashing spreads the platforms' consecutive ids over the whole table.
    const uint64_t h = static_cast<uint64_t>(static_cast<uint32_t>(id)) * 0x9E3779B97F4A7C15ull;
    return static_cast<size_t>(h >> 32) & (m_slots.size() - 1);
}

std::optional<uint32_t> RecordIdIndex::find(int32_t id) const {
    if (m_slots.empty()) {
        return std::nullopt;
    }
    for (size_t i = SlotOf(id);; i = (i + 1) & (m_slots.size() - 1)) {
        const Slot& slot = m_slots[i];
        if (slot.position == kEmpty) {
            return std::nullopt;
        }
        if (slot.id == id) {
            return slot.position;
        }
    }
}

bool RecordIdIndex::emplace(int32_t id, uint32_t position) {
    if ((m_size + 1) * 2 > m_slots.size()) {
        Grow();
    }
    for (size_t i = SlotOf(id);; i = (i + 1) & (m_slots.size() - 1)) {
        Slot& slot = m_slots[i];
        if (slot.position == kEmpty) {
            slot = {id, position};
            ++m_size;
            return true;
        }
        if (slot.id == id) {
            return false;
        }
    }
}

void RecordIdIndex::clear() {
    m_slots.clear();
    m_size = 0;
}

void RecordIdIndex::Grow() {
    std::vector<Slot> old = std::move(m_slots);
    m_slots.assign(old.empty() ? 64 : old.size() * 2, Slot{});
    m_size = 0;
    for (const Slot& slot : old) {
        if (slot.position != kEmpty) {
            emplace(slot.id, slot.position);
        }
    }
}

} // namespace wicker
