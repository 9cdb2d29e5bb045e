#include "storage/HashTable.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <cstring>
#include <limits>
#include <type_traits>

namespace wicker {
namespace {

constexpr int kTableError = 1001;
constexpr const char* kInvalidKeyText = "Invalid key";
constexpr const char* kNotEmptyText = "The Hash Table isn't empty";

// Upper case of the letters Windows-1252 has, done on the UTF-8 text itself so that
// characters outside the code page stay distinct keys. Every such letter is two bytes in
// UTF-8 and so is its capital; 0xC3 and 0xC5 are always lead bytes.
std::string UpperKey(std::string_view utf8) {
    std::string out(utf8);
    for (size_t i = 0; i < out.size(); ++i) {
        const auto b = static_cast<unsigned char>(out[i]);
        if (b >= 'a' && b <= 'z') {
            out[i] = static_cast<char>(b - 0x20);
            continue;
        }
        if (i + 1 >= out.size() || (b != 0xC3 && b != 0xC5)) {
            continue;
        }
        const auto c = static_cast<unsigned char>(out[i + 1]);
        if (b == 0xC3 && c >= 0xA0 && c <= 0xBE && c != 0xB7) { // à..þ except ÷
            out[i + 1] = static_cast<char>(c - 0x20);
        } else if (b == 0xC3 && c == 0xBF) { // ÿ -> Ÿ (U+0178)
            out[i] = static_cast<char>(0xC5);
            out[i + 1] = static_cast<char>(0xB8);
        } else if (b == 0xC5 && (c == 0x93 || c == 0xA1 || c == 0xBE)) { // œ š ž
            out[i + 1] = static_cast<char>(c - 1);
        }
        ++i;
    }
    return out;
}

size_t At(int32_t index) {
    return static_cast<size_t>(index);
}

} // namespace

static_assert(std::is_nothrow_move_constructible_v<HashValue>,
              "growing the slot array must not be able to fail half-way");

int32_t HashTable::HashCode(std::string_view key) {
    const std::string bytes = Utf8ToCp1252(key);
    uint32_t h = 0;
    for (size_t i = 0; i < bytes.size(); i += 4) {
        uint32_t word = 0;
        for (size_t k = 0; k < 4 && i + k < bytes.size(); ++k) {
            word |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + k])) << (8 * k);
        }
        h ^= word;
    }
    int32_t out;
    std::memcpy(&out, &h, sizeof out);
    return out;
}

void HashTable::SetSize(int32_t hashSize, int32_t listSize, int32_t chunkSize) {
    // No bucket array can have fewer than one entry.
    if (hashSize <= 0) {
        throw RuntimeError(err::SubscriptOutOfRange, err::SubscriptText);
    }
    const int32_t list = listSize > 0 ? listSize : m_listSize;
    // Build first, then swap in: running out of memory leaves the old table intact.
    std::vector<int32_t> buckets(At(hashSize), 0);
    std::vector<Slot> slots(1);
    const int32_t freeHead = Grow(slots, 0, list);

    m_buckets.swap(buckets);
    m_slots.swap(slots);
    m_freeHead = freeHead;
    m_count = 0;
    m_hashSize = hashSize;
    m_listSize = list;
    if (chunkSize > 0) {
        m_chunkSize = chunkSize;
    }
}

void HashTable::setIgnoreCase(bool value) {
    if (m_count != 0) {
        throw RuntimeError(kTableError, kNotEmptyText);
    }
    m_ignoreCase = value;
}

int32_t HashTable::Grow(std::vector<Slot>& slots, int32_t freeHead, int32_t k) {
    const auto top = static_cast<int32_t>(slots.size()) - 1;
    if (k > std::numeric_limits<int32_t>::max() - top) {
        throw RuntimeError(err::Overflow, err::OverflowText);
    }
    slots.resize(At(top + k) + 1);
    for (int32_t i = top + 1; i < top + k; ++i) {
        slots[At(i)].next = i + 1;
    }
    slots[At(top + k)].next = freeHead;
    return top + 1;
}

std::string_view HashTable::StoredKey(std::string_view key, std::string& folded) const {
    if (key.empty()) {
        throw RuntimeError(kTableError, kInvalidKeyText);
    }
    if (!m_ignoreCase) {
        return key;
    }
    folded = UpperKey(key);
    return folded;
}

HashTable::Found HashTable::Find(std::string_view key) const {
    Found f;
    // A signed remainder: a key whose hash has the top bit set has no bucket.
    f.bucket = HashCode(key) % m_hashSize;
    if (f.bucket < 0) {
        throw RuntimeError(err::SubscriptOutOfRange, err::SubscriptText);
    }
    for (int32_t s = m_buckets[At(f.bucket)]; s != 0; s = m_slots[At(s)].next) {
        if (m_slots[At(s)].key == key) {
            f.slot = s;
            return f;
        }
        f.prev = s;
    }
    return f;
}

int32_t HashTable::Create(std::string_view key, const Found& where) {
    if (m_freeHead == 0) {
        m_freeHead = Grow(m_slots, m_freeHead, m_chunkSize);
    }
    const int32_t s = m_freeHead;
    Slot& slot = m_slots[At(s)];
    slot.key.assign(key); // the only step that can fail, so it goes before any relinking
    m_freeHead = slot.next;
    slot.next = 0;
    if (where.prev != 0) {
        m_slots[At(where.prev)].next = s;
    } else {
        m_buckets[At(where.bucket)] = s;
    }
    ++m_count;
    return s;
}

void HashTable::Add(std::string_view key, HashValue value) {
    std::string folded;
    const std::string_view k = StoredKey(key, folded);
    const Found f = Find(k);
    if (f.slot != 0) {
        throw RuntimeError(err::DuplicateKey, err::DuplicateKeyText);
    }
    m_slots[At(Create(k, f))].value = std::move(value);
}

bool HashTable::Exists(std::string_view key) const {
    std::string folded;
    return Find(StoredKey(key, folded)).slot != 0;
}

HashValue HashTable::Item(std::string_view key) const {
    std::string folded;
    const Found f = Find(StoredKey(key, folded));
    return f.slot == 0 ? HashValue{} : m_slots[At(f.slot)].value;
}

void HashTable::setItem(std::string_view key, HashValue value) {
    std::string folded;
    const std::string_view k = StoredKey(key, folded);
    const Found f = Find(k);
    const int32_t s = f.slot != 0 ? f.slot : Create(k, f);
    m_slots[At(s)].value = std::move(value);
}

void HashTable::Remove(std::string_view key) {
    std::string folded;
    const Found f = Find(StoredKey(key, folded));
    if (f.slot == 0) {
        throw RuntimeError(err::InvalidCall, err::InvalidCallText);
    }
    Slot& slot = m_slots[At(f.slot)];
    if (f.prev != 0) {
        m_slots[At(f.prev)].next = slot.next;
    } else {
        m_buckets[At(f.bucket)] = slot.next;
    }
    // The key keeps its buffer for the slot's next use; the value lets go of its object.
    slot.key.clear();
    slot.value = HashValue{};
    slot.next = m_freeHead;
    m_freeHead = f.slot;
    --m_count;
}

template <class T, class Get> std::vector<T> HashTable::Collect(Get get) const {
    std::vector<T> out;
    out.reserve(At(m_count));
    for (const int32_t first : m_buckets) {
        for (int32_t s = first; s != 0; s = m_slots[At(s)].next) {
            out.push_back(get(m_slots[At(s)]));
        }
    }
    return out;
}

std::vector<std::string> HashTable::Keys() const {
    return Collect<std::string>([](const Slot& s) { return s.key; });
}

std::vector<HashValue> HashTable::Values() const {
    return Collect<HashValue>([](const Slot& s) { return s.value; });
}

} // namespace wicker
