#include "common/ShortestDecimal.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace wicker {

namespace {

constexpr int kMostPlaces = 4;
constexpr std::array<double, kMostPlaces + 1> kScale = {1, 10, 100, 1000, 10000};
constexpr std::array<uint64_t, kMostPlaces + 1> kIntScale = {1, 10, 100, 1000, 10000};

/// `digits` as `places` decimal places, zeros in front: 5 in 3 places is "005".
char* Places(char* out, uint64_t digits, int places) {
    for (int i = places - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + digits % 10);
        digits /= 10;
    }
    return out + places;
}

} // namespace

std::to_chars_result ShortestDecimal(char* first, char* last, double value) {
    // Below 0.01 and from 100,000 on, the shortest text may be the scientific one.
    if (!(value >= 0.01 && value < 1e5)) {
        return std::to_chars(first, last, value);
    }
    for (int places = 0; places <= kMostPlaces; ++places) {
        const double scaled = std::nearbyint(value * kScale[places]);
        // Division rounds correctly, as reading the decimal does: equal means it reads back.
        // The fewest places that do are the shortest text, and no other decimal of as few
        // places lies within half a unit of the value.
        if (scaled / kScale[places] != value) {
            continue;
        }
        const auto whole = static_cast<uint64_t>(scaled);
        std::array<char, 16> text; // at most "99999.9999"
        char* end =
            std::to_chars(text.data(), text.data() + text.size(), whole / kIntScale[places]).ptr;
        if (places > 0) {
            *end++ = '.';
            end = Places(end, whole % kIntScale[places], places);
        }
        const auto size = end - text.data();
        if (last - first < size) {
            return {last, std::errc::value_too_large};
        }
        std::memcpy(first, text.data(), static_cast<size_t>(size));
        return {first + size, std::errc()};
    }
    return std::to_chars(first, last, value);
}

} // namespace wicker
