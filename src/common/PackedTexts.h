#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wicker {

/// `N` texts kept in one string: 48 bytes and at most one allocation for all of them, where
/// `N` strings of their own cost 32 bytes each and an allocation for every long one. For
/// texts that are mostly short or empty and rarely read. Any byte may appear in a text.
template <size_t N> class PackedTexts {
public:
    std::string_view operator[](size_t i) const {
        const size_t begin = i == 0 ? 0 : m_ends[i - 1];
        const size_t end = i + 1 < N ? m_ends[i] : m_packed.size();
        return std::string_view(m_packed).substr(begin, end - begin);
    }

    /// Sets every text; returns whether any changed. The room already held is used again.
    bool assign(const std::array<std::string_view, N>& texts) {
        bool same = true;
        for (size_t i = 0; i < N && same; ++i) {
            same = texts[i] == (*this)[i];
        }
        if (same) {
            return false;
        }
        m_packed.clear();
        for (size_t i = 0; i < N; ++i) {
            m_packed += texts[i];
            if (i + 1 < N) {
                m_ends[i] = static_cast<uint32_t>(m_packed.size());
            }
        }
        return true;
    }

    bool operator==(const PackedTexts&) const = default;

private:
    std::string m_packed;
    std::array<uint32_t, N - 1> m_ends{}; ///< where each text but the last ends
};

} // namespace wicker
