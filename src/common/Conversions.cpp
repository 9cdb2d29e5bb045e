#include "common/Conversions.h"

#include "common/RuntimeError.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace wicker {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

[[noreturn]] void ThrowOverflow() {
    throw RuntimeError(err::Overflow, err::OverflowText);
}
[[noreturn]] void ThrowTypeMismatch() {
    throw RuntimeError(err::TypeMismatch, err::TypeMismatchText);
}

template <class Int> Int ToInteger(double value) {
    if (!std::isfinite(value)) {
        ThrowOverflow();
    }
    const double r = RoundHalfEven(value);
    if (r < static_cast<double>(std::numeric_limits<Int>::min()) ||
        r > static_cast<double>(std::numeric_limits<Int>::max())) {
        ThrowOverflow();
    }
    return static_cast<Int>(r);
}

// Reads "&H..." / "&O..." radix numbers; returns false when the text is not one.
bool ParseRadix(std::string_view s, size_t& pos, double& out) {
    if (pos + 1 >= s.size() || s[pos] != '&') {
        return false;
    }
    const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(s[pos + 1])));
    const int base = kind == 'H' ? 16 : kind == 'O' ? 8 : 0;
    if (base == 0) {
        return false;
    }
    size_t p = pos + 2;
    uint64_t v = 0;
    size_t digits = 0;
    while (p < s.size()) {
        const int c = std::toupper(static_cast<unsigned char>(s[p]));
        int d = -1;
        if (c >= '0' && c <= '9') {
            d = c - '0';
        } else if (base == 16 && c >= 'A' && c <= 'F') {
            d = c - 'A' + 10;
        }
        if (d < 0 || d >= base) {
            break;
        }
        v = v * static_cast<uint64_t>(base) + static_cast<uint64_t>(d);
        if (v > 0xFFFFFFFFull) {
            return false;
        }
        ++digits;
        ++p;
    }
    if (digits == 0) {
        return false;
    }
    // Radix literals are 16-bit when they fit in four digits, else 32-bit, both signed.
    if (v <= 0xFFFF && digits <= 4) {
        out = static_cast<double>(static_cast<int16_t>(v));
    } else {
        out = static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(v)));
    }
    pos = p;
    return true;
}

// Decimal number grammar shared by IsNumeric/CDbl: sign, digits (commas allowed among
// the integer digits when allowCommas), point, fraction, exponent E/D. Collects the
// plain text for strtod into `clean`. Returns false when no digit was read.
bool ScanDecimal(std::string_view s, size_t& pos, bool allowCommas, bool skipInnerBlanks,
                 std::string& clean) {
    auto skip = [&] {
        while (skipInnerBlanks && pos < s.size() &&
               (IsBlank(s[pos]) || s[pos] == '\n' || s[pos] == '\r')) {
            ++pos;
        }
    };
    skip();
    if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) {
        clean += s[pos++];
        skip();
    }
    size_t digits = 0;
    while (pos < s.size()) {
        if (IsDigit(s[pos])) {
            clean += s[pos++];
            ++digits;
        } else if (allowCommas && s[pos] == ',' && digits > 0) {
            ++pos;
        } else if (skipInnerBlanks && IsBlank(s[pos])) {
            ++pos;
        } else {
            break;
        }
    }
    if (pos < s.size() && s[pos] == '.') {
        clean += s[pos++];
        while (pos < s.size() && (IsDigit(s[pos]) || (skipInnerBlanks && IsBlank(s[pos])))) {
            if (IsDigit(s[pos])) {
                clean += s[pos];
                ++digits;
            }
            ++pos;
        }
    }
    if (digits == 0) {
        return false;
    }
    if (pos < s.size() && (s[pos] == 'e' || s[pos] == 'E' || s[pos] == 'd' || s[pos] == 'D')) {
        size_t p = pos + 1;
        std::string exp = "e";
        if (p < s.size() && (s[p] == '+' || s[p] == '-')) {
            exp += s[p++];
        }
        size_t expDigits = 0;
        while (p < s.size() && IsDigit(s[p])) {
            exp += s[p++];
            ++expDigits;
        }
        if (expDigits > 0) {
            clean += exp;
            pos = p;
        } else if (!skipInnerBlanks) {
            return false; // "1e" is not a number
        }
    }
    return true;
}

bool ParseWhole(std::string_view s, double& out) {
    size_t pos = 0;
    while (pos < s.size() && IsBlank(s[pos])) {
        ++pos;
    }
    std::string clean;
    bool ok = ParseRadix(s, pos, out);
    if (!ok) {
        if (!ScanDecimal(s, pos, true, false, clean)) {
            return false;
        }
        out = std::strtod(clean.c_str(), nullptr);
    }
    while (pos < s.size() && IsBlank(s[pos])) {
        ++pos;
    }
    return pos == s.size();
}

} // namespace

double RoundHalfEven(double value) {
    if (!std::isfinite(value)) {
        return value;
    }
    const double lower = std::floor(value);
    const double diff = value - lower;
    if (diff > 0.5) {
        return lower + 1.0;
    }
    if (diff < 0.5) {
        return lower;
    }
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

int16_t CInt(double value) {
    return ToInteger<int16_t>(value);
}
int32_t CLng(double value) {
    return ToInteger<int32_t>(value);
}
int16_t CInt(std::string_view text) {
    return CInt(CDbl(text));
}
int32_t CLng(std::string_view text) {
    return CLng(CDbl(text));
}

double CDbl(std::string_view text) {
    double v = 0;
    if (!ParseWhole(text, v)) {
        ThrowTypeMismatch();
    }
    if (!std::isfinite(v)) {
        ThrowOverflow();
    }
    return v;
}

bool IsNumeric(std::string_view text) {
    double v = 0;
    return ParseWhole(text, v) && std::isfinite(v);
}

double Val(std::string_view text) {
    size_t pos = 0;
    while (pos < text.size() && (IsBlank(text[pos]) || text[pos] == '\n' || text[pos] == '\r')) {
        ++pos;
    }
    double out = 0;
    if (ParseRadix(text, pos, out)) {
        return out;
    }
    std::string clean;
    if (!ScanDecimal(text, pos, false, true, clean)) {
        return 0.0;
    }
    const double v = std::strtod(clean.c_str(), nullptr);
    return std::isfinite(v) ? v : 0.0;
}

double Int(double value) {
    return std::floor(value);
}

std::string NumberText(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Infinity" : "Infinity";
    }
    if (value == 0.0) {
        return "0";
    }
    // 15 significant digits, as the display always used.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", value);
    std::string s = buf;
    const size_t e = s.find('e');
    std::string mantissa = s.substr(0, e);
    const int exponent = std::atoi(s.c_str() + e + 1);
    const bool negative = mantissa[0] == '-';
    std::string digits;
    for (char c : mantissa) {
        if (IsDigit(c)) {
            digits += c;
        }
    }
    while (digits.size() > 1 && digits.back() == '0') {
        digits.pop_back();
    }
    std::string out = negative ? "-" : "";
    if (exponent >= 15 || exponent < -5) {
        out += digits.substr(0, 1);
        if (digits.size() > 1) {
            out += "." + digits.substr(1);
        }
        char ebuf[16];
        std::snprintf(ebuf, sizeof ebuf, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
        return out + ebuf;
    }
    if (exponent < 0) {
        out += "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
        return out;
    }
    const size_t intDigits = static_cast<size_t>(exponent) + 1;
    if (digits.size() <= intDigits) {
        out += digits + std::string(intDigits - digits.size(), '0');
    } else {
        out += digits.substr(0, intDigits) + "." + digits.substr(intDigits);
    }
    return out;
}

} // namespace wicker
