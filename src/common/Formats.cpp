#include "common/Formats.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace wicker {
namespace {

// A non-negative decimal number as digit text: value = 0.digits x 10^exponent.
struct Decimal {
    std::string digits; // no leading zeros unless the number is 0
    int exponent = 0;
};

// The 15-significant-digit decimal form of |value|: what the display rounds from,
// so that 2.345 shows as 2.35 although its binary value lies just below.
Decimal ToDecimal(double value) {
    Decimal d;
    if (value == 0.0) {
        d.digits = "0";
        d.exponent = 1;
        return d;
    }
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    const std::string s = buf;
    const size_t e = s.find('e');
    for (size_t i = 0; i < e; ++i) {
        if (s[i] >= '0' && s[i] <= '9') {
            d.digits += s[i];
        }
    }
    d.exponent = std::atoi(s.c_str() + e + 1) + 1;
    return d;
}

// Integer and fraction digit texts of |value| rounded half away from zero to `decimals`.
void RoundToDecimals(double value, int decimals, std::string& intPart, std::string& fracPart) {
    Decimal d = ToDecimal(value);
    // Position of the last kept digit within d.digits (may be negative or beyond).
    const int keep = d.exponent + decimals;
    std::string digits = d.digits;
    int exponent = d.exponent;
    if (keep < 0) {
        digits = "0";
        exponent = 1;
    } else if (static_cast<size_t>(keep) < digits.size()) {
        const bool up = digits[static_cast<size_t>(keep)] >= '5';
        digits.resize(static_cast<size_t>(keep));
        if (up) {
            int i = keep - 1;
            while (i >= 0 && digits[static_cast<size_t>(i)] == '9') {
                digits[static_cast<size_t>(i)] = '0';
                --i;
            }
            if (i < 0) {
                digits.insert(digits.begin(), '1');
                ++exponent;
            } else {
                ++digits[static_cast<size_t>(i)];
            }
        }
        if (digits.empty()) {
            digits = "0";
            exponent = 1;
        }
    }
    // Lay the digits out around the decimal point.
    if (exponent <= 0) {
        intPart = "";
        fracPart = std::string(static_cast<size_t>(-exponent), '0') + digits;
    } else if (static_cast<size_t>(exponent) >= digits.size()) {
        intPart = digits + std::string(static_cast<size_t>(exponent) - digits.size(), '0');
        fracPart = "";
    } else {
        intPart = digits.substr(0, static_cast<size_t>(exponent));
        fracPart = digits.substr(static_cast<size_t>(exponent));
    }
    fracPart.resize(static_cast<size_t>(decimals), '0');
    size_t nz = intPart.find_first_not_of('0');
    intPart = nz == std::string::npos ? "" : intPart.substr(nz);
}

bool AllZero(const std::string& a, const std::string& b) {
    return a.find_first_not_of('0') == std::string::npos &&
           b.find_first_not_of('0') == std::string::npos;
}

std::string GroupThousands(const std::string& digits) {
    std::string out;
    const size_t n = digits.size();
    for (size_t i = 0; i < n; ++i) {
        out += digits[i];
        const size_t left = n - i - 1;
        if (left > 0 && left % 3 == 0) {
            out += ',';
        }
    }
    return out;
}

std::string FixedFormat(double value, int decimals, bool leadingZero) {
    std::string intPart, fracPart;
    RoundToDecimals(value, decimals, intPart, fracPart);
    std::string out;
    if (value < 0 && !AllZero(intPart, fracPart)) {
        out += '-';
    }
    out += intPart.empty() && leadingZero ? "0" : intPart;
    if (decimals > 0) {
        out += '.' + fracPart;
    }
    return out;
}

std::string TwoDigits(int v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", v % 100);
    return buf;
}

} // namespace

std::string Format(double value, std::string_view pattern) {
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "NaN" : (value < 0 ? "-Infinity" : "Infinity");
    }
    if (pattern == "#0.00") {
        return FixedFormat(value, 2, true);
    }
    if (pattern == "#0.000") {
        return FixedFormat(value, 3, true);
    }
    if (pattern == "#0.0000") {
        return FixedFormat(value, 4, true);
    }
    if (pattern == "#.00") {
        return FixedFormat(value, 2, false);
    }
    if (pattern == "#,###") {
        std::string intPart, fracPart;
        RoundToDecimals(value, 0, intPart, fracPart);
        if (intPart.empty()) {
            return "";
        }
        return (value < 0 ? "-" : "") + GroupThousands(intPart);
    }
    throw std::invalid_argument("unknown number format: " + std::string(pattern));
}

std::string FormatDecimals(double value, int decimals) {
    if (decimals < 0 || decimals > 8) {
        throw std::invalid_argument("decimals out of range");
    }
    if (!std::isfinite(value)) {
        return Format(value, "#0.00");
    }
    return FixedFormat(value, decimals, true);
}

std::string FormatTime12(const LocalDateTime& t) {
    const int h12 = t.hour % 12 == 0 ? 12 : t.hour % 12;
    return TwoDigits(h12) + ":" + TwoDigits(t.minute) + ":" + TwoDigits(t.second) +
           (t.hour < 12 ? " AM" : " PM");
}

std::string FormatYyyymmdd(const LocalDateTime& t) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%04d%02d%02d", t.year % 10000, t.month % 100, t.day % 100);
    return buf;
}

} // namespace wicker
