#include "storage/IniDocument.h"

#include "common/Text.h"

#include <algorithm>
#include <iterator>

namespace wicker {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

std::string_view TrimBlanks(std::string_view s) {
    const size_t first = s.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && LCase(a) == LCase(b);
}

bool HasLineBreakOrNul(std::string_view s) {
    return s.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

// Name of a "[name]" line (possibly empty), or nothing for any other line. A line
// holding NUL bytes is damage, not structure: it is kept but never read.
std::optional<std::string_view> SectionOf(std::string_view line) {
    if (line.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view t = TrimBlanks(line);
    if (t.empty() || t.front() != '[') {
        return std::nullopt;
    }
    const size_t close = t.find(']');
    if (close == std::string_view::npos) {
        return std::nullopt;
    }
    return TrimBlanks(t.substr(1, close - 1));
}

bool IsComment(std::string_view line) {
    const std::string_view t = TrimBlanks(line);
    return !t.empty() && t.front() == ';';
}

// Key name of a "key=value" line, or nothing.
std::optional<std::string_view> KeyOf(std::string_view line) {
    if (SectionOf(line) || IsComment(line) || line.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    const size_t eq = line.find('=');
    if (eq == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view key = TrimBlanks(line.substr(0, eq));
    if (key.empty()) {
        return std::nullopt;
    }
    return key;
}

// The value of a key line as Windows reads it: blanks around it dropped, then one pair
// of matching quotes around it.
std::string_view ValueOf(std::string_view line) {
    std::string_view v = TrimBlanks(line.substr(line.find('=') + 1));
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front()) {
        v = v.substr(1, v.size() - 2);
    }
    return v;
}

// Lines that carry settings (keys and junk), as opposed to blanks and comments.
bool IsContent(std::string_view line) {
    return !TrimBlanks(line).empty() && !IsComment(line);
}

} // namespace

Result<IniDocument> IniDocument::Parse(std::string_view bytes) {
    IniDocument doc;
    if (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF") {
        return Error{"The file is in UTF-16, which is not read as a settings file."};
    }
    if (bytes.substr(0, kUtf8Bom.size()) == kUtf8Bom) {
        doc.m_encoding = Encoding::Utf8WithBom;
        bytes.remove_prefix(kUtf8Bom.size());
    }
    size_t start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find('\n', start);
        const size_t next = end == std::string_view::npos ? bytes.size() : end + 1;
        if (end == std::string_view::npos) {
            end = bytes.size();
        }
        std::string_view line = bytes.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        doc.m_lines.emplace_back(line);
        start = next;
    }
    return doc;
}

std::string IniDocument::Serialize() const {
    std::string out(m_encoding == Encoding::Utf8WithBom ? kUtf8Bom : std::string_view());
    for (const auto& line : m_lines) {
        out += line;
        out += "\r\n";
    }
    return out;
}

std::string IniDocument::Encode(std::string_view utf8) const {
    return m_encoding == Encoding::Cp1252 ? Utf8ToCp1252(utf8) : std::string(utf8);
}

std::string IniDocument::Decode(std::string_view bytes) const {
    return m_encoding == Encoding::Cp1252 ? Cp1252ToUtf8(bytes) : std::string(bytes);
}

std::vector<IniDocument::Range> IniDocument::FindSections(const std::string& name) const {
    std::vector<Range> out;
    for (size_t i = 0; i < m_lines.size(); ++i) {
        const auto section = SectionOf(m_lines[i]);
        if (!section) {
            continue;
        }
        if (!out.empty() && out.back().end == m_lines.size()) {
            out.back().end = i; // the next header closes the open one
        }
        if (!name.empty() && SameName(*section, name)) {
            out.push_back({i, m_lines.size()});
        }
    }
    return out;
}

std::optional<size_t> IniDocument::FindKey(Range range, const std::string& key) const {
    for (size_t i = range.header + 1; i < range.end; ++i) {
        if (const auto k = KeyOf(m_lines[i]); k && SameName(*k, key)) {
            return i;
        }
    }
    return std::nullopt;
}

std::optional<std::string> IniDocument::Get(std::string_view section, std::string_view key) const {
    const std::string k = Encode(TrimBlanks(key));
    const auto ranges = FindSections(Encode(TrimBlanks(section)));
    if (ranges.empty() || k.empty()) {
        return std::nullopt;
    }
    const auto line = FindKey(ranges.front(), k);
    if (!line) {
        return std::nullopt;
    }
    return Decode(ValueOf(m_lines[*line]));
}

std::vector<std::string> IniDocument::KeyNames(std::string_view section) const {
    const auto ranges = FindSections(Encode(TrimBlanks(section)));
    std::vector<std::string> names;
    if (ranges.empty()) {
        return names;
    }
    std::vector<std::string_view> seen;
    for (size_t i = ranges.front().header + 1; i < ranges.front().end; ++i) {
        const auto k = KeyOf(m_lines[i]);
        if (k && std::none_of(seen.begin(), seen.end(),
                              [&](std::string_view s) { return SameName(s, *k); })) {
            seen.push_back(*k);
            names.push_back(Decode(*k));
        }
    }
    return names;
}

bool IniDocument::HasSection(std::string_view section) const {
    return !FindSections(Encode(TrimBlanks(section))).empty();
}

std::vector<std::string> IniDocument::SectionNames() const {
    std::vector<std::string_view> seen;
    std::vector<std::string> names;
    for (const auto& line : m_lines) {
        const auto s = SectionOf(line);
        if (s && !s->empty() && std::none_of(seen.begin(), seen.end(), [&](std::string_view n) {
                return SameName(n, *s);
            })) {
            seen.push_back(*s);
            names.push_back(Decode(*s));
        }
    }
    return names;
}

bool IniDocument::IsWritableSection(std::string_view name) {
    return !TrimBlanks(name).empty() && !HasLineBreakOrNul(name) &&
           name.find(']') == std::string_view::npos;
}

bool IniDocument::IsWritableKey(std::string_view name) {
    const std::string_view t = TrimBlanks(name);
    return !t.empty() && !HasLineBreakOrNul(name) && name.find('=') == std::string_view::npos &&
           t.front() != '[' && t.front() != ';';
}

bool IniDocument::IsWritableValue(std::string_view value) {
    return !HasLineBreakOrNul(value);
}

bool IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
    // Checked as they will stand in the file: the conversion must not bring in a line
    // break or a NUL either.
    const std::string s = Encode(TrimBlanks(section));
    const std::string k = Encode(TrimBlanks(key));
    const std::string v = Encode(value);
    if (!IsWritableSection(section) || !IsWritableKey(key) || !IsWritableValue(value) ||
        !IsWritableSection(s) || !IsWritableKey(k) || !IsWritableValue(v)) {
        return false;
    }
    const auto ranges = FindSections(s);
    if (ranges.empty()) {
        if (!m_lines.empty() && !TrimBlanks(m_lines.back()).empty()) {
            m_lines.emplace_back(); // a blank line between sections, as Windows writes them
        }
        m_lines.push_back("[" + s + "]");
        m_lines.push_back(k + "=" + v);
        return true;
    }
    const Range range = ranges.front();
    if (const auto line = FindKey(range, k)) {
        // Keep the spelling the file already has for the key.
        m_lines[*line] = std::string(*KeyOf(m_lines[*line])) + "=" + v;
        return true;
    }
    // After the section's last setting, so that blank lines and the comments that lead
    // into the next section stay where they are.
    size_t at = range.header + 1;
    for (size_t i = range.header + 1; i < range.end; ++i) {
        if (IsContent(m_lines[i])) {
            at = i + 1;
        }
    }
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), k + "=" + v);
    return true;
}

bool IniDocument::RemoveKey(std::string_view section, std::string_view key) {
    const std::string k = Encode(TrimBlanks(key));
    const auto ranges = FindSections(Encode(TrimBlanks(section)));
    bool removed = false;
    // Last range first, so that the earlier ranges' line numbers stay valid.
    for (auto r = ranges.rbegin(); r != ranges.rend(); ++r) {
        for (size_t i = r->end; i-- > r->header + 1;) {
            if (const auto name = KeyOf(m_lines[i]); name && SameName(*name, k)) {
                m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(i));
                removed = true;
            }
        }
    }
    return removed;
}

bool IniDocument::RemoveSection(std::string_view section) {
    const auto ranges = FindSections(Encode(TrimBlanks(section)));
    for (auto r = ranges.rbegin(); r != ranges.rend(); ++r) {
        m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(r->header),
                      m_lines.begin() + static_cast<std::ptrdiff_t>(r->end));
    }
    return !ranges.empty();
}

} // namespace wicker
