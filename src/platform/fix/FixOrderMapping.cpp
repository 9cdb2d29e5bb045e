#include "platform/fix/FixOrderMapping.h"

#include "common/Text.h"
#include "platform/OrderTicket.h"

#include <array>
#include <charconv>
#include <cmath>

namespace wicker {
namespace {

struct TifName {
    std::string_view letter;
    std::string_view name;
    std::string_view standardTimeInForce; // empty: no FIX value of its own
};

constexpr std::array<TifName, 11> TifNames{{
    {"D", "DAY", "0"},
    {"G", "GTC", "1"},
    {"O", "OPG", "2"},
    {"I", "IOC", "3"},
    {"F", "FOK", "4"},
    {"X", "GTX", "5"},
    {"1", "OS", ""},
    {"N", "NOW", ""},
    {"E", "EXT", ""},
    {"A", "AEX", ""},
    {"C", "CHXP", ""},
}};

const TifName* FindLetter(std::string_view letter) {
    for (const TifName& t : TifNames) {
        if (t.letter == letter) {
            return &t;
        }
    }
    return nullptr;
}

// The fields that carry a TIF letter, or nothing when this broker has no way to send it.
/// Appends the TIF tags of a letter: the profile's own, or the standard TimeInForce(59).
bool AppendTif(std::vector<FixField>& out, std::string_view letter, const TifProfile& profile) {
    if (auto it = profile.letters.find(letter); it != profile.letters.end()) {
        out.insert(out.end(), it->second.begin(), it->second.end());
        return true;
    }
    const TifName* t = FindLetter(letter);
    if (t == nullptr || t->standardTimeInForce.empty()) {
        return false;
    }
    out.push_back({59, std::string(t->standardTimeInForce)});
    return true;
}

/// TimeInForce(59) of the fields from `first` on becomes `value`, added when missing.
void SetTimeInForce(std::vector<FixField>& fields, size_t first, std::string value) {
    for (size_t i = first; i < fields.size(); ++i) {
        if (fields[i].tag == 59) {
            fields[i].value = std::move(value);
            return;
        }
    }
    fields.push_back({59, std::move(value)});
}

} // namespace

std::optional<FixVersion> ParseFixVersion(std::string_view text) {
    const std::string t = UCase(Trim(text));
    if (t == "4.2" || t == "FIX.4.2" || t == "FIX42") {
        return FixVersion::Fix42;
    }
    if (t == "4.4" || t == "FIX.4.4" || t == "FIX44") {
        return FixVersion::Fix44;
    }
    return std::nullopt;
}

std::string BeginStringOf(FixVersion version) {
    return version == FixVersion::Fix44 ? "FIX.4.4" : "FIX.4.2";
}

std::optional<std::string> FixSideOf(std::string_view sideCode) {
    if (sideCode == "BUY" || sideCode == "B") {
        return "1";
    }
    if (sideCode == "S") {
        return "2";
    }
    if (sideCode == "T") {
        return "5";
    }
    return std::nullopt;
}

std::optional<std::string> SideCodeOf(std::string_view fixSide) {
    if (fixSide == "1") {
        return "B";
    }
    if (fixSide == "2") {
        return "S";
    }
    if (fixSide == "5" || fixSide == "6") {
        return "T";
    }
    if (fixSide == "3") {
        return "M";
    }
    return std::nullopt;
}

std::string_view TifNameOf(std::string_view letter) {
    const TifName* t = FindLetter(letter);
    return t != nullptr ? t->name : std::string_view{};
}

std::string_view TifLetterOf(std::string_view name) {
    for (const TifName& t : TifNames) {
        if (t.name == name) {
            return t.letter;
        }
    }
    return {};
}

std::optional<std::vector<FixField>> ParseTifTags(std::string_view text) {
    std::vector<FixField> out;
    for (const std::string& pair : Split(text, ";")) {
        const std::string p = Trim(pair);
        if (p.empty()) {
            continue;
        }
        const size_t eq = p.find('=');
        if (eq == std::string::npos || eq == 0) {
            return std::nullopt;
        }
        int tag = 0;
        const char* first = p.data();
        const char* last = p.data() + eq;
        const auto [end, ec] = std::from_chars(first, last, tag);
        if (ec != std::errc{} || end != last || tag <= 0) {
            return std::nullopt;
        }
        std::string value = p.substr(eq + 1);
        if (value.empty() || value.find('\x01') != std::string::npos) {
            return std::nullopt;
        }
        out.push_back({tag, std::move(value)});
    }
    if (out.empty()) {
        return std::nullopt;
    }
    return out;
}

int AppendOrderType(std::vector<FixField>& out, int32_t priceType, std::string_view tifLetter,
                    double limitPrice, FixVersion version, const TifProfile& profile) {
    constexpr int BadPriceType = -5;
    constexpr int BadTif = -6;
    if (priceType != OrderPriceType::Market && priceType != OrderPriceType::MarketOnClose &&
        priceType != OrderPriceType::Limit) {
        return BadPriceType;
    }
    const size_t first = out.size();
    bool atTheClose = false;
    switch (priceType) {
    case OrderPriceType::Limit:
        out.push_back({40, "2"});
        out.push_back({44, FormatFixPrice(limitPrice)});
        break;
    case OrderPriceType::MarketOnClose:
        atTheClose = version == FixVersion::Fix44;
        out.push_back({40, atTheClose ? "1" : "5"});
        break;
    default:
        out.push_back({40, "1"});
        break;
    }
    const size_t tif = out.size();
    if (!AppendTif(out, tifLetter, profile)) {
        out.resize(first);
        return BadTif;
    }
    if (priceType == OrderPriceType::Limit && !std::isfinite(limitPrice)) {
        out.resize(first);
        return BadPriceType;
    }
    if (atTheClose) {
        SetTimeInForce(out, tif, "7");
    }
    return 0;
}

std::string FormatFixPrice(double price) {
    char buffer[400]; // the largest double has 309 integer digits
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, price, std::chars_format::fixed, 8);
    if (ec != std::errc{}) {
        return "NaN"; // callers refuse non-finite prices before they get here
    }
    std::string text(buffer, end);
    while (!text.empty() && text.back() == '0') {
        text.pop_back();
    }
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    if (text == "-0") {
        text = "0";
    }
    return text;
}

} // namespace wicker
