#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wicker {

/// An immutable text that records holding the same value share: eight bytes in each record
/// instead of a string of its own, and no copy when one record takes another's value. Reads
/// as a `const std::string&`. The count of holders is not atomic: a text and its copies stay
/// on one thread.
class SharedText {
public:
    SharedText() = default;
    explicit SharedText(std::string_view text);
    SharedText(const SharedText& other) noexcept : m_block(other.m_block) { Hold(); }
    SharedText(SharedText&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
    SharedText& operator=(const SharedText& other) noexcept {
        if (m_block != other.m_block) {
            Release();
            m_block = other.m_block;
            Hold();
        }
        return *this;
    }
    SharedText& operator=(SharedText&& other) noexcept;
    /// A text of its own, unless it is the value already held.
    SharedText& operator=(std::string_view text);
    ~SharedText() { Release(); }

    const std::string& str() const { return m_block != nullptr ? m_block->text : kEmpty; }
    operator const std::string&() const { return str(); } // NOLINT: reads like the string it was
    bool empty() const { return m_block == nullptr; }
    size_t size() const { return str().size(); }
    const char* c_str() const { return str().c_str(); }
    /// Whether both hold the very same text (not merely equal ones).
    bool SharesWith(const SharedText& other) const { return m_block == other.m_block; }

    friend bool operator==(const SharedText& a, std::string_view b) { return a.str() == b; }
    friend bool operator==(const SharedText& a, const SharedText& b) {
        return a.m_block == b.m_block || a.str() == b.str();
    }

private:
    struct Block {
        uint32_t holders = 1;
        std::string text;
    };
    static inline const std::string kEmpty;
    void Hold() noexcept {
        if (m_block != nullptr) {
            ++m_block->holders;
        }
    }
    void Release() noexcept {
        if (m_block != nullptr) {
            Drop();
        }
    }
    /// Lets go of the block held, freeing it when no one else holds it.
    void Drop() noexcept;

    Block* m_block = nullptr; ///< null for the empty text
};

/// Hands out the same SharedText for a value seen lately, so that records filled one after
/// another from repeating values (a send's account and time, a burst's status texts) share
/// them. Remembers the last few values.
class RecentTexts {
public:
    const SharedText& of(std::string_view text) {
        return m_kept[m_last] == text ? m_kept[m_last] : Miss(text);
    }

private:
    const SharedText& Miss(std::string_view text);

    static constexpr size_t kKept = 4;
    SharedText m_kept[kKept];
    size_t m_last = 0; ///< the value handed out last
    size_t m_next = 0; ///< where the next new value goes
};

} // namespace wicker
