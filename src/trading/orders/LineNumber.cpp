#include "trading/orders/LineNumber.h"

#include "common/Conversions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <exception>

namespace wicker {

std::optional<double> LineNumber(std::string_view text) {
    if (text.empty()) {
        return std::nullopt; // the common line price: none typed
    }
    // Whole numbers of shares, the common quantity, read digit by digit: exact below 2^53.
    if (text.size() <= 15 &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        int64_t whole = 0;
        for (const char c : text) {
            whole = whole * 10 + (c - '0');
        }
        return static_cast<double>(whole);
    }
    // Plain decimals (nearly every modifier) without the general conversion.
    double quick = 0;
    const char* end = text.data() + text.size();
    if (text[0] != '+' && text[0] != ' ') {
        if (const auto [ptr, ec] =
                std::from_chars(text.data(), end, quick, std::chars_format::fixed);
            ec == std::errc() && ptr == end) {
            return quick;
        }
    }
    if (!IsNumeric(text)) {
        return std::nullopt;
    }
    try {
        const double value = CDbl(text);
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace wicker
