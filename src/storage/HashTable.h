#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wicker {

/// A value of any kind; monostate is the empty value an absent key reads as.
using HashValue = std::variant<std::monostate, int64_t, double, std::string, std::shared_ptr<void>>;

/// Keyed store with chained buckets kept in two growable arrays instead of allocated
/// nodes. Slot 0 is never used so that 0 can mean "none". Keys hash by their
/// Windows-1252 bytes; errors are RuntimeError with the old numbers (1001, 457, 5, 9),
/// and a failed operation leaves the table as it was.
class HashTable {
public:
    HashTable() { SetSize(1024, 2048, 1024); }

    /// Re-initialises the table empty; list or chunk sizes of 0 or less keep the current.
    void SetSize(int32_t hashSize, int32_t listSize = 0, int32_t chunkSize = 0);
    bool IgnoreCase() const { return m_ignoreCase; }
    void setIgnoreCase(bool value);

    void Add(std::string_view key, HashValue value);
    bool Exists(std::string_view key) const;
    /// The value, or the empty value when the key is absent (nothing is added).
    HashValue Item(std::string_view key) const;
    /// Replaces the value, adding the key when it is absent.
    void setItem(std::string_view key, HashValue value);
    void Remove(std::string_view key);
    void RemoveAll() { SetSize(m_hashSize, m_listSize, m_chunkSize); }

    int32_t Count() const { return m_count; }
    /// In bucket order, then order of addition within a bucket.
    std::vector<std::string> Keys() const;
    std::vector<HashValue> Values() const;

    /// Top slot index (slots 1..SlotCount exist).
    int32_t SlotCount() const { return static_cast<int32_t>(m_slots.size()) - 1; }
    /// XOR of the little-endian 32-bit words of the key's Windows-1252 bytes.
    static int32_t HashCode(std::string_view key);

private:
    struct Slot {
        std::string key;
        HashValue value;
        int32_t next = 0;
    };
    struct Found {
        int32_t slot = 0;
        int32_t prev = 0;
        int32_t bucket = 0;
    };

    std::string Normalise(std::string_view key) const;
    Found Find(const std::string& key) const;
    int32_t Create(const std::string& key, const Found& where);
    void Grow(int32_t k);

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
