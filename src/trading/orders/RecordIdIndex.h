#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace wicker {

/// Positions of tracked orders by the platform's order record id, in one flat table with
/// open addressing: a busy day's updates each find their order with a single probe into
/// memory, where a node-based map costs two. The first position given for an id stays.
class RecordIdIndex {
public:
    std::optional<uint32_t> find(int32_t id) const;
    /// Adds the id at `position`; false (and nothing changed) when the id is already there.
    bool emplace(int32_t id, uint32_t position);
    void clear();
    size_t size() const { return m_size; }

private:
    static constexpr uint32_t kEmpty = UINT32_MAX;
    struct Slot {
        int32_t id = 0;
        uint32_t position = kEmpty;
    };
    size_t SlotOf(int32_t id) const;
    void Grow();

    std::vector<Slot> m_slots; ///< a power of two long, at most half full
    size_t m_size = 0;
};

} // namespace wicker
