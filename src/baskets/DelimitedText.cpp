#include "baskets/DelimitedText.h"

#include "common/Text.h"

#include <algorithm>
#include <array>

namespace wicker {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

bool ValidUtf8(std::string_view s) {
    size_t i = 0;
    while (i < s.size()) {
        const auto c = static_cast<unsigned char>(s[i]);
        size_t extra = 0;
        if (c < 0x80) {
            extra = 0;
        } else if (c >= 0xC2 && c <= 0xDF) {
            extra = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3;
        } else {
            return false;
        }
        if (i + extra >= s.size() && extra > 0) {
            return false;
        }
        for (size_t k = 1; k <= extra; ++k) {
            if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) {
                return false;
            }
        }
        i += extra + 1;
    }
    return true;
}

void AppendUtf8(std::string& out, uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

std::string Utf16ToUtf8(std::string_view bytes, bool littleEndian) {
    std::string out;
    out.reserve(bytes.size() / 2);
    auto unit = [&](size_t i) {
        const auto a = static_cast<unsigned char>(bytes[i]);
        const auto b = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<uint32_t>(littleEndian ? (a | (b << 8)) : ((a << 8) | b));
    };
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        uint32_t cp = unit(i);
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 3 < bytes.size()) {
            const uint32_t low = unit(i + 2);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = 0xFFFD; // a lone surrogate
        }
        AppendUtf8(out, cp);
    }
    return out;
}

} // namespace

std::string DecodeSpreadsheetBytes(std::string_view bytes, std::string& encoding) {
    if (bytes.starts_with(kUtf8Bom)) {
        encoding = "UTF-8";
        const std::string_view rest = bytes.substr(kUtf8Bom.size());
        return ValidUtf8(rest) ? std::string(rest) : Cp1252ToUtf8(rest);
    }
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        encoding = "UTF-16";
        return Utf16ToUtf8(bytes.substr(2), bytes[0] == '\xFF');
    }
    if (ValidUtf8(bytes)) {
        encoding = "UTF-8";
        return std::string(bytes);
    }
    encoding = "Windows-1252";
    return Cp1252ToUtf8(bytes);
}

char DetectDelimiter(std::string_view text) {
    constexpr std::array<char, 3> kCandidates{'\t', ';', ','};
    std::array<size_t, 3> counts{};
    bool quoted = false;
    bool sawText = false;
    for (const char c : text) {
        if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && (c == '\n' || c == '\r')) {
            if (sawText) {
                break;
            }
            continue;
        }
        if (!quoted && c != ' ' && c != '\r' && c != '\n') {
            sawText = true;
        }
        if (!quoted) {
            for (size_t k = 0; k < kCandidates.size(); ++k) {
                counts[k] += c == kCandidates[k] ? 1 : 0;
            }
        }
    }
    const auto best = std::max_element(counts.begin(), counts.end());
    return *best == 0 ? ',' : kCandidates[static_cast<size_t>(best - counts.begin())];
}

std::vector<DelimitedRecord> SplitDelimited(std::string_view text, char delimiter) {
    std::vector<DelimitedRecord> records;
    DelimitedRecord record;
    std::string cell;
    uint64_t line = 1;
    record.line = 1;
    bool quoted = false;
    bool cellStarted = false;
    auto endCell = [&] {
        record.cells.push_back(std::move(cell));
        cell.clear();
        cellStarted = false;
    };
    auto endRecord = [&] {
        endCell();
        const bool blank = std::all_of(record.cells.begin(), record.cells.end(),
                                       [](const std::string& c) { return Trim(c).empty(); });
        if (!blank || record.unterminatedQuote) {
            records.push_back(std::move(record));
        }
        record = DelimitedRecord{};
        record.line = line;
    };
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            if (c == '"') {
                if (i + 1 < text.size() && text[i + 1] == '"') {
                    cell += '"';
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                line += c == '\n' ? 1 : 0;
                cell += c;
            }
            continue;
        }
        if (c == '"' && !cellStarted) {
            quoted = true;
            cellStarted = true;
        } else if (c == delimiter) {
            endCell();
        } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            continue;
        } else if (c == '\n') {
            ++line;
            endRecord();
        } else {
            // Blanks before an opening quote do not make the cell unquoted.
            cellStarted = cellStarted || c != ' ';
            cell += c;
        }
    }
    if (quoted) {
        record.unterminatedQuote = true;
    }
    if (quoted || !cell.empty() || !record.cells.empty()) {
        endRecord();
    }
    return records;
}

DelimitedText ReadDelimitedText(std::string_view bytes) {
    DelimitedText out;
    const std::string text = DecodeSpreadsheetBytes(bytes, out.encoding);
    out.delimiter = DetectDelimiter(text);
    out.records = SplitDelimited(text, out.delimiter);
    return out;
}

} // namespace wicker
