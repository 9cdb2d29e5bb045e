#include "platform/fix/FixNumbers.h"

#include <charconv>
#include <cmath>
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

} // namespace

std::optional<double> ParseFixDecimal(std::string_view text) {
    if (const std::optional<int32_t> whole = ShortWholeNumber(text)) {
        return static_cast<double>(*whole);
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
