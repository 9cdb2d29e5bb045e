#include "trading/basket/DisplayNumbers.h"

#include "common/Conversions.h"
#include "common/Formats.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace wicker {
namespace {

// Beyond this the general formats are used (exponent forms, long digit runs).
constexpr double FastLimit = 1e15;

/// |value| as 15 significant decimal digits: value = 0.digits x 10^exponent. The digits are
/// the correctly rounded ones that the general formats start from.
struct Digits {
    char d[24];
    int n = 0;
    int exponent = 0;
};

Digits FifteenDigits(double value) {
    Digits out;
    if (value == 0.0) {
        out.d[0] = '0';
        out.n = 1;
        out.exponent = 1;
        return out;
    }
    char buf[40];
    const auto r =
        std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific, 14);
    // "d.dddddddddddddde+XX"
    const std::string_view s(buf, static_cast<size_t>(r.ptr - buf));
    const size_t e = s.find('e');
    for (size_t i = 0; i < e; ++i) {
        if (s[i] != '.') {
            out.d[out.n++] = s[i];
        }
    }
    // to_chars writes no terminator: read the exponent within the text only.
    const char* exp = buf + e + 1;
    if (*exp == '+') {
        ++exp;
    }
    int exponent = 0;
    std::from_chars(exp, r.ptr, exponent);
    out.exponent = exponent + 1;
    return out;
}

/// The integer and fraction digits of |value| rounded half away from zero to `decimals`
/// (leading zeros of the integer part dropped), as the general fixed formats do.
void Round(double value, int decimals, std::string& intPart, std::string& fracPart) {
    Digits d = FifteenDigits(value);
    const int keep = d.exponent + decimals;
    if (keep < 0) {
        d.d[0] = '0';
        d.n = 1;
        d.exponent = 1;
    } else if (keep < d.n) {
        const bool up = d.d[keep] >= '5';
        d.n = keep;
        if (up) {
            int i = keep - 1;
            while (i >= 0 && d.d[i] == '9') {
                d.d[i] = '0';
                --i;
            }
            if (i < 0) {
                for (int j = d.n; j > 0; --j) {
                    d.d[j] = d.d[j - 1];
                }
                d.d[0] = '1';
                ++d.n;
                ++d.exponent;
            } else {
                ++d.d[i];
            }
        }
        if (d.n == 0) {
            d.d[0] = '0';
            d.n = 1;
            d.exponent = 1;
        }
    }
    const std::string_view digits(d.d, static_cast<size_t>(d.n));
    if (d.exponent <= 0) {
        intPart.clear();
        fracPart.assign(static_cast<size_t>(-d.exponent), '0');
        fracPart += digits;
    } else if (d.exponent >= d.n) {
        intPart.assign(digits);
        intPart.append(static_cast<size_t>(d.exponent - d.n), '0');
        fracPart.clear();
    } else {
        intPart.assign(digits.substr(0, static_cast<size_t>(d.exponent)));
        fracPart.assign(digits.substr(static_cast<size_t>(d.exponent)));
    }
    fracPart.resize(static_cast<size_t>(decimals), '0');
    const size_t nz = intPart.find_first_not_of('0');
    if (nz == std::string::npos) {
        intPart.clear();
    } else if (nz > 0) {
        intPart.erase(0, nz);
    }
}

bool AllZero(const std::string& s) {
    return s.find_first_not_of('0') == std::string::npos;
}

constexpr int64_t Pow10[] = {1,
                             10,
                             100,
                             1'000,
                             10'000,
                             100'000,
                             1'000'000,
                             10'000'000,
                             100'000'000,
                             1'000'000'000,
                             10'000'000'000,
                             100'000'000'000,
                             1'000'000'000'000,
                             10'000'000'000'000,
                             100'000'000'000'000,
                             1'000'000'000'000'000};

constexpr double Pow10d[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// |value| in units of 10^-decimals, rounded as Round does (to 15 significant digits, then
/// half away from zero), in integer arithmetic; nothing when the result could differ from
/// Round's: |value| below 1e-6, a last decimal beyond the 15th digit, or a 15-digit rounding
/// too close to a tie for one multiplication to decide.
std::optional<int64_t> ScaledFast(double value, int decimals) {
    const double a = std::fabs(value);
    if (a == 0) {
        return 0;
    }
    if (!(a >= 1e-6 && a < FastLimit)) {
        return std::nullopt;
    }
    // a lies in [10^(e-1), 10^e); a wrong guess at a power's edge fails the range check below.
    int e = -5;
    while (e < 15 && a >= (e >= 0 ? Pow10d[e] : 1 / Pow10d[-e])) {
        ++e;
    }
    const int drop = 15 - e - decimals; // digits of the 15 below the last decimal
    if (drop < 0) {
        return std::nullopt;
    }
    // a x 10^(15-e) is below 2^50, so its rounding error is at most 1/16 (10^(15-e) is
    // exact for 15-e <= 22). Round's 15 digits are this product rounded to an integer.
    const double product = a * Pow10d[15 - e];
    const double whole = std::floor(product);
    const double fraction = product - whole;
    if (product >= 1e15 || product < 1e14 || std::fabs(fraction - 0.5) < 0.125) {
        return std::nullopt;
    }
    const auto digits = static_cast<int64_t>(whole) + (fraction > 0.5 ? 1 : 0);
    if (drop > 15) {
        return 0; // below half a unit of the last decimal
    }
    const int64_t unit = Pow10[drop];
    // Half away from zero on the 15 digits: the first digit dropped decides.
    return digits / unit + (digits % unit * 2 >= unit && drop > 0 ? 1 : 0);
}

/// Appends n with exactly `width` digits, leading zeros kept.
void AppendDigits(std::string& out, int64_t n, int width) {
    char buf[20];
    for (int i = width - 1; i >= 0; --i) {
        buf[i] = static_cast<char>('0' + n % 10);
        n /= 10;
    }
    out.append(buf, static_cast<size_t>(width));
}

} // namespace

std::string FixedText(double value, int decimals, bool leadingZero) {
    if (!std::isfinite(value) || std::fabs(value) >= FastLimit || decimals < 0 || decimals > 8) {
        return leadingZero ? FormatDecimals(value, decimals) : Format(value, "#.00");
    }
    if (const std::optional<int64_t> scaled = ScaledFast(value, decimals)) {
        const int64_t units = *scaled;
        const int64_t intValue = units / Pow10[decimals];
        std::string out;
        if (value < 0 && units != 0) {
            out += '-';
        }
        if (intValue != 0) {
            out += std::to_string(intValue);
        } else if (leadingZero) {
            out += '0';
        }
        if (decimals > 0) {
            out += '.';
            AppendDigits(out, units % Pow10[decimals], decimals);
        }
        return out;
    }
    std::string intPart;
    std::string fracPart;
    Round(value, decimals, intPart, fracPart);
    std::string out;
    out.reserve(intPart.size() + fracPart.size() + 3);
    if (value < 0 && !(AllZero(intPart) && AllZero(fracPart))) {
        out += '-';
    }
    if (intPart.empty()) {
        if (leadingZero) {
            out += '0';
        }
    } else {
        out += intPart;
    }
    if (decimals > 0) {
        out += '.';
        out += fracPart;
    }
    return out;
}

std::string ThousandsText(double value) {
    if (!std::isfinite(value) || std::fabs(value) >= FastLimit) {
        return Format(value, "#,###");
    }
    std::string intPart;
    if (const std::optional<int64_t> whole = ScaledFast(value, 0)) {
        if (*whole == 0) {
            return {};
        }
        intPart = std::to_string(*whole);
    } else {
        std::string fracPart;
        Round(value, 0, intPart, fracPart);
        if (intPart.empty()) {
            return {};
        }
    }
    std::string out;
    out.reserve(intPart.size() + intPart.size() / 3 + 1);
    if (value < 0) {
        out += '-';
    }
    const size_t n = intPart.size();
    for (size_t i = 0; i < n; ++i) {
        out += intPart[i];
        const size_t left = n - i - 1;
        if (left > 0 && left % 3 == 0) {
            out += ',';
        }
    }
    return out;
}

std::string DollarText(double value) {
    std::string text = FixedText(value, 2);
    const size_t digits = text[0] == '-' ? 1 : 0;
    const size_t point = text.find('.');
    if (point == std::string::npos) {
        return text; // not a finite number
    }
    for (size_t at = point; at > digits + 3; at -= 3) {
        text.insert(at - 3, 1, ',');
    }
    return text;
}

std::string QuantityText(double value) {
    if (std::isfinite(value) && std::fabs(value) < FastLimit && value == std::trunc(value)) {
        return std::to_string(static_cast<long long>(value));
    }
    return NumberText(value);
}

} // namespace wicker
