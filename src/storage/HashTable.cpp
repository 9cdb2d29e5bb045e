#include "storage/HashTable.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <cstring>

namespace wicker {
namespace {

constexpr int kInvalidKey = 1001;

// Upper case over Windows-1252 letters, so IgnoreCase folds "é" like "e".
std::string UpperCp1252(std::string_view utf8) {
    std::string bytes = Utf8ToCp1252(utf8);
    for (char& c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7)) {
            c = static_cast<char>(b - 0x20);
        } else if (b == 0x9A || b == 0x9C || b == 0x9E) {
            c = static_cast<char>(b - 0x10);
        } else if (b == 0xFF) {
            c = static_cast<char>(0x9F);
        }
    }
    return Cp1252ToUtf8(bytes);
}

} // namespace

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
    if (hashSize <= 0) {
        throw RuntimeError(err::InvalidCall, err::InvalidCallText);
    }
    m_hashSize = hashSize;
    if (listSize > 0) {
        m_listSize = listSize;
    }
    if (chunkSize > 0) {
        m_chunkSize = chunkSize;
    }
    m_buckets.assign(static_cast<size_t>(m_hashSize), 0);
    m_slots.assign(1, Slot{});
    m_freeHead = 0;
    m_count = 0;
    Grow(m_listSize);
}

void HashTable::setIgnoreCase(bool value) {
    if (m_count != 0) {
        throw RuntimeError(kInvalidKey, "The Hash Table isn't empty");
    }
    m_ignoreCase = value;
}

void HashTable::Grow(int32_t k) {
    const int32_t top = SlotCount();
    m_slots.resize(static_cast<size_t>(top + k) + 1);
    for (int32_t i = top + 1; i <= top + k; ++i) {
        m_slots[static_cast<size_t>(i)].next = i + 1;
    }
    m_slots[static_cast<size_t>(top + k)].next = m_freeHead;
    m_freeHead = top + 1;
}

std::string HashTable::Normalise(std::string_view key) const {
    if (key.empty()) {
        throw RuntimeError(kInvalidKey, "Invalid key");
    }
    return m_ignoreCase ? UpperCp1252(key) : std::string(key);
}

HashTable::Found HashTable::Find(const std::string& key) const {
    Found f;
    // A signed remainder: keys whose hash has the top bit set give a negative bucket.
    f.bucket = HashCode(key) % m_hashSize;
    if (f.bucket < 0) {
        throw RuntimeError(err::SubscriptOutOfRange, err::SubscriptText);
    }
    for (int32_t s = m_buckets[static_cast<size_t>(f.bucket)]; s != 0;
         s = m_slots[static_cast<size_t>(s)].next) {
        if (m_slots[static_cast<size_t>(s)].key == key) {
            f.slot = s;
            return f;
        }
        f.prev = s;
    }
    return f;
}

int32_t HashTable::Create(const std::string& key, const Found& where) {
    if (m_freeHead == 0) {
        Grow(m_chunkSize);
    }
    const int32_t s = m_freeHead;
    Slot& slot = m_slots[static_cast<size_t>(s)];
    m_freeHead = slot.next;
    slot.next = 0;
    slot.key = key;
    slot.value = HashValue{};
    if (where.prev != 0) {
        m_slots[static_cast<size_t>(where.prev)].next = s;
    } else {
        m_buckets[static_cast<size_t>(where.bucket)] = s;
    }
    ++m_count;
    return s;
}

void HashTable::Add(std::string_view key, HashValue value) {
    const std::string k = Normalise(key);
    const Found f = Find(k);
    if (f.slot != 0) {
        throw RuntimeError(err::DuplicateKey, err::DuplicateKeyText);
    }
    m_slots[static_cast<size_t>(Create(k, f))].value = std::move(value);
}

bool HashTable::Exists(std::string_view key) const {
    return Find(Normalise(key)).slot != 0;
}

HashValue HashTable::Item(std::string_view key) const {
    const Found f = Find(Normalise(key));
    return f.slot == 0 ? HashValue{} : m_slots[static_cast<size_t>(f.slot)].value;
}

void HashTable::setItem(std::string_view key, HashValue value) {
    const std::string k = Normalise(key);
    const Found f = Find(k);
    const int32_t s = f.slot != 0 ? f.slot : Create(k, f);
    m_slots[static_cast<size_t>(s)].value = std::move(value);
}

void HashTable::Remove(std::string_view key) {
    const Found f = Find(Normalise(key));
    if (f.slot == 0) {
        throw RuntimeError(err::InvalidCall, err::InvalidCallText);
    }
    Slot& slot = m_slots[static_cast<size_t>(f.slot)];
    if (f.prev != 0) {
        m_slots[static_cast<size_t>(f.prev)].next = slot.next;
    } else {
        m_buckets[static_cast<size_t>(f.bucket)] = slot.next;
    }
    slot.key.clear();
    slot.value = HashValue{};
    slot.next = m_freeHead;
    m_freeHead = f.slot;
    --m_count;
}

std::vector<std::string> HashTable::Keys() const {
    std::vector<std::string> out;
    out.reserve(static_cast<size_t>(m_count));
    for (int32_t first : m_buckets) {
        for (int32_t s = first; s != 0; s = m_slots[static_cast<size_t>(s)].next) {
            out.push_back(m_slots[static_cast<size_t>(s)].key);
        }
    }
    return out;
}

std::vector<HashValue> HashTable::Values() const {
    std::vector<HashValue> out;
    out.reserve(static_cast<size_t>(m_count));
    for (int32_t first : m_buckets) {
        for (int32_t s = first; s != 0; s = m_slots[static_cast<size_t>(s)].next) {
            out.push_back(m_slots[static_cast<size_t>(s)].value);
        }
    }
    return out;
}

} // namespace wicker
