#include "common/Text.h"

#include <array>
#include <cstdint>

namespace wicker {
namespace {

// Unicode code points of Windows-1252 bytes 0x80..0x9F (0 = unassigned).
constexpr std::array<uint16_t, 32> kHighTable = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& out, uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

char ToCp1252(uint32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
        return static_cast<char>(cp);
    }
    for (size_t i = 0; i < kHighTable.size(); ++i) {
        if (kHighTable[i] != 0 && kHighTable[i] == cp) {
            return static_cast<char>(0x80 + i);
        }
    }
    // The unassigned bytes round-trip as the C1 controls of the same number.
    if (cp >= 0x80 && cp <= 0x9F && kHighTable[cp - 0x80] == 0) {
        return static_cast<char>(cp);
    }
    return '?';
}

// Decodes one UTF-8 sequence at s[i]; returns the code point or -1 for a bad sequence,
// and advances i past what it consumed (at least one byte).
int32_t DecodeUtf8(std::string_view s, size_t& i) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    int len = b0 < 0x80           ? 1
              : (b0 >> 5) == 0x6  ? 2
              : (b0 >> 4) == 0xE  ? 3
              : (b0 >> 3) == 0x1E ? 4
                                  : 0;
    if (len == 0 || i + static_cast<size_t>(len) > s.size()) {
        ++i;
        return -1;
    }
    uint32_t cp = len == 1 ? b0 : len == 2 ? (b0 & 0x1Fu) : len == 3 ? (b0 & 0x0Fu) : (b0 & 0x07u);
    for (int k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + static_cast<size_t>(k)]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return -1;
        }
        cp = (cp << 6) | (b & 0x3Fu);
    }
    i += static_cast<size_t>(len);
    // An overlong form would smuggle a control such as a line feed or NUL past every
    // check on the text; a surrogate or a value past U+10FFFF is no character at all.
    static constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kSmallest[len] || (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) {
        return -1;
    }
    return static_cast<int32_t>(cp);
}

} // namespace

std::string Trim(std::string_view s) {
    const size_t b = s.find_first_not_of(' ');
    if (b == std::string_view::npos) {
        return {};
    }
    const size_t e = s.find_last_not_of(' ');
    return std::string(s.substr(b, e - b + 1));
}

std::string UCase(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return out;
}

std::string LCase(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return out;
}

std::vector<std::string> Split(std::string_view s, std::string_view delimiter) {
    std::vector<std::string> out;
    if (s.empty()) {
        return out;
    }
    if (delimiter.empty()) {
        out.emplace_back(s);
        return out;
    }
    size_t start = 0;
    while (true) {
        const size_t pos = s.find(delimiter, start);
        if (pos == std::string_view::npos) {
            out.emplace_back(s.substr(start));
            return out;
        }
        out.emplace_back(s.substr(start, pos - start));
        start = pos + delimiter.size();
    }
}

std::string Utf8ToCp1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    size_t i = 0;
    while (i < utf8.size()) {
        const int32_t cp = DecodeUtf8(utf8, i);
        out += cp < 0 ? '?' : ToCp1252(static_cast<uint32_t>(cp));
    }
    return out;
}

std::string Cp1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b >= 0x80 && b <= 0x9F && kHighTable[b - 0x80] != 0) {
            AppendUtf8(out, kHighTable[b - 0x80]);
        } else {
            AppendUtf8(out, b);
        }
    }
    return out;
}

} // namespace wicker
