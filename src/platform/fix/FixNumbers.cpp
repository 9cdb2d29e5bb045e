#include "platform/fix/FixNumbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace wicker {
namespace {

bool IsDecimalText(std::string_view text) {
    size_t i = 0;
    if (i < text.size() && text[i] == '-') {
        ++i;
    }
    bool digits = false;
    bool point = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            digits = true;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            return false;
        }
    }
    return digits;
}

// Up to nine digits, the usual quantity or whole price: read without the floating-point
// parse (exact, and several times cheaper on every report).
std::optional<int32_t> ShortWholeNumber(std::string_view text) {
    if (text.empty() || text.size() > 9) {
        return std::nullopt;
    }
    int32_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

// A price of up to 15 digits with a decimal point ("10.25"): its digits as a whole number
// divided by the power of ten of its decimals. Both are exact doubles, and a division of
// exact doubles is correctly rounded, so this is the value the full parse gives.
std::optional<double> ShortDecimal(std::string_view text) {
    const size_t point = text.find('.');
    if (point == std::string_view::npos || text.size() > 16 || text.size() < 2) {
        return std::nullopt;
    }
    int64_t digits = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (i == point) {
            continue;
        }
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        digits = digits * 10 + (c - '0');
    }
    static constexpr std::array<double, 16> powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    return static_cast<double>(digits) / powers[text.size() - 1 - point];
}

} // namespace

std::optional<double> ParseFixDecimal(std::string_view text) {
    if (const std::optional<int32_t> whole = ShortWholeNumber(text)) {
        return static_cast<double>(*whole);
    }
    if (const std::optional<double> decimal = ShortDecimal(text)) {
        return decimal;
    }
    if (!IsDecimalText(text)) {
        return std::nullopt;
    }
    double value = 0;
    const auto [end, ec] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (ec != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int32_t> ParseFixQuantity(std::string_view text) {
    if (const std::optional<int32_t> whole = ShortWholeNumber(text)) {
        return whole;
    }
    const std::optional<double> value = ParseFixDecimal(text);
    if (!value || *value != std::floor(*value) ||
        *value < static_cast<double>(std::numeric_limits<int32_t>::min()) ||
        *value > static_cast<double>(std::numeric_limits<int32_t>::max())) {
        return std::nullopt;
    }
    return static_cast<int32_t>(*value);
}

std::optional<int32_t> ParseFixInt(std::string_view text) {
    int32_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec != std::errc{} || end != text.data() + text.size() || value <= 0) {
        return std::nullopt;
    }
    return value;
}

} // namespace wicker
