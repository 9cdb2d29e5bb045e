#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Positions of tracked orders by the client order id they were first sent with, in one flat
/// table of (hash, position) pairs: the ids themselves stay in the orders, so an order costs
/// eight bytes here instead of a node, a copy of its id and a list. Several orders may share an
/// id; they are found in the order they were added. `KeyAt(position)` gives an order's id.
class ClOrderIdIndex {
public:
    void add(std::string_view id, uint32_t position);
    void clear();

    /// The first position added under `id`.
    template <class KeyAt>
    std::optional<uint32_t> first(std::string_view id, const KeyAt& keyAt) const {
        std::optional<uint32_t> found;
        Walk(id, keyAt, [&](uint32_t position) {
            found = position;
            return false;
        });
        return found;
    }
    /// Calls `each(position)` for every position added under `id`, first added first.
    template <class KeyAt, class Each>
    void forEach(std::string_view id, const KeyAt& keyAt, const Each& each) const {
        Walk(id, keyAt, [&](uint32_t position) {
            each(position);
            return true;
        });
    }

private:
    static constexpr uint32_t kEmpty = UINT32_MAX;
    struct Slot {
        uint32_t hash = 0;
        uint32_t position = kEmpty;
    };
    static uint32_t HashOf(std::string_view id);
    void Grow();
    void Insert(Slot slot);

    /// Linear probing without removal keeps the entries of one id along its probe run in the
    /// order they were added; `visit` returns false to stop.
    template <class KeyAt, class Visit>
    void Walk(std::string_view id, const KeyAt& keyAt, const Visit& visit) const {
        if (m_slots.empty()) {
            return;
        }
        const uint32_t hash = HashOf(id);
        const size_t mask = m_slots.size() - 1;
        for (size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = m_slots[i];
            if (slot.position == kEmpty) {
                return;
            }
            if (slot.hash == hash && std::string_view(keyAt(slot.position)) == id &&
                !visit(slot.position)) {
                return;
            }
        }
    }

    std::vector<Slot> m_slots; ///< a power of two long, at most half full
    size_t m_size = 0;
};

} // namespace wicker
