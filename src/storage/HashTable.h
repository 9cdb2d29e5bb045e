#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wicker {

/// A value of any kind: number, text or object reference. monostate is the empty value
/// that an absent key reads as.
using HashValue = std::variant<std::monostate, int64_t, double, std::string, std::shared_ptr<void>>;

/// Keyed store with chained buckets kept in two growable arrays instead of allocated
/// nodes. Slot 0 is never used so that 0 can mean "none"; free slots are linked through
/// the same next-slot field as the chains. Keys hash by their Windows-1252 bytes.
/// Errors are RuntimeError with the old runtime's numbers (1001, 457, 5, 9, 6); a failed
/// operation leaves the table as it was.
class HashTable {
public:
    /// 1024 buckets, 2048 slots, grows by 1024 slots; case-sensitive.
    HashTable() { SetSize(1024, 2048, 1024); }

    /// Re-initialises the table empty (items are discarded). A listSize or chunkSize of 0
    /// or less keeps the current one. hashSize must be at least 1 (error 9).
    void SetSize(int32_t hashSize, int32_t listSize = 0, int32_t chunkSize = 0);
    bool IgnoreCase() const { return m_ignoreCase; }
    /// Only while the table is empty (error 1001).
    void setIgnoreCase(bool value);

    /// Error 457 when the key exists.
    void Add(std::string_view key, HashValue value);
    bool Exists(std::string_view key) const;
    /// The value, or the empty value when the key is absent (nothing is added).
    HashValue Item(std::string_view key) const;
    /// Replaces the value, adding the key when it is absent.
    void setItem(std::string_view key, HashValue value);
    /// Error 5 when the key is absent.
    void Remove(std::string_view key);
    /// Empties the table, keeping its sizes.
    void RemoveAll() { SetSize(m_hashSize, m_listSize, m_chunkSize); }

    int32_t Count() const { return m_count; }
    /// In bucket order, then order of addition within a bucket (keys as stored, so
    /// upper case under IgnoreCase).
    std::vector<std::string> Keys() const;
    /// In the same order as Keys.
    std::vector<HashValue> Values() const;

    /// Top slot index: slots 1..SlotCount exist, used or free.
    int32_t SlotCount() const { return static_cast<int32_t>(m_slots.size()) - 1; }
    /// XOR of the little-endian 32-bit words of the key's Windows-1252 bytes (characters
    /// outside the code page count as '?').
    static int32_t HashCode(std::string_view key);

private:
    struct Slot {
        std::string key;
        HashValue value;
        int32_t next = 0;
    };
    // Where a key is, or would be appended: slot 0 when absent; prev 0 when first.
    struct Found {
        int32_t slot = 0;
        int32_t prev = 0;
        int32_t bucket = 0;
    };

    std::string_view StoredKey(std::string_view key, std::string& folded) const;
    Found Find(std::string_view key) const;
    int32_t Create(std::string_view key, const Found& where);
    // Adds k free slots on top, linked ahead of freeHead; returns the new free head.
    static int32_t Grow(std::vector<Slot>& slots, int32_t freeHead, int32_t k);
    template <class T, class Get> std::vector<T> Collect(Get get) const;

    std::vector<int32_t> m_buckets;
    std::vector<Slot> m_slots;
    int32_t m_hashSize = 0;
    int32_t m_listSize = 0;
    int32_t m_chunkSize = 0;
    int32_t m_freeHead = 0;
    int32_t m_count = 0;
    bool m_ignoreCase = false;
};

} // namespace wicker
