#include "storage/clsIniFile.h"

#include "common/Conversions.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace wicker {
namespace {

constexpr size_t kValueChars = 254;
constexpr size_t kListChars = 8191;

// The file as lines (UTF-8). `readable` is false when it exists but cannot be read.
struct IniLines {
    std::vector<std::string> lines;
    bool exists = false;
    bool readable = true;
};

IniLines Load(const std::filesystem::path& path) {
    IniLines out;
    std::error_code ec;
    if (path.empty() || !std::filesystem::exists(path, ec)) {
        return out;
    }
    out.exists = true;
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path, ec)) {
        out.readable = false;
        return out;
    }
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) {
        out.readable = false;
        return out;
    }
    for (auto& line : Split(bytes, "\n")) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        out.lines.push_back(Cp1252ToUtf8(line));
    }
    if (!out.lines.empty() && out.lines.back().empty()) {
        out.lines.pop_back(); // the break after the last line
    }
    return out;
}

// Replaces the file through a temporary one so a crash never leaves half a file.
bool Save(const std::filesystem::path& path, const std::vector<std::string>& lines) {
    const std::filesystem::path tmp = path.string() + ".tmp";
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        for (const auto& l : lines) {
            out << Utf8ToCp1252(l) << "\r\n";
        }
        out.flush();
        if (!out) {
            std::error_code ec;
            std::filesystem::remove(tmp, ec);
            return false;
        }
    }
    std::error_code ec;
    std::filesystem::rename(tmp, path, ec);
    if (ec) {
        std::filesystem::remove(tmp, ec);
        return false;
    }
    return true;
}

std::string TrimBlanks(std::string_view s) {
    const size_t b = s.find_first_not_of(" \t");
    if (b == std::string_view::npos) {
        return {};
    }
    return std::string(s.substr(b, s.find_last_not_of(" \t") - b + 1));
}

// Section name of a "[name]" line, or nothing.
std::optional<std::string> SectionOf(const std::string& line) {
    const std::string t = TrimBlanks(line);
    if (t.size() >= 2 && t.front() == '[') {
        const size_t close = t.find(']');
        if (close != std::string::npos) {
            return TrimBlanks(t.substr(1, close - 1));
        }
    }
    return std::nullopt;
}

// Key name of a "key=value" line, or nothing.
std::optional<std::string> KeyOf(const std::string& line) {
    const size_t eq = line.find('=');
    if (eq == std::string::npos || SectionOf(line)) {
        return std::nullopt;
    }
    return TrimBlanks(line.substr(0, eq));
}

bool Same(std::string_view a, std::string_view b) {
    return UCase(a) == UCase(b);
}

// [first, end) line range of the section's body; first = npos when absent.
std::pair<size_t, size_t> FindSection(const std::vector<std::string>& lines,
                                      const std::string& section) {
    for (size_t i = 0; i < lines.size(); ++i) {
        if (auto s = SectionOf(lines[i]); s && Same(*s, section)) {
            size_t end = i + 1;
            while (end < lines.size() && !SectionOf(lines[end])) {
                ++end;
            }
            return {i, end};
        }
    }
    return {std::string::npos, 0};
}

size_t FindKey(const std::vector<std::string>& lines, std::pair<size_t, size_t> range,
               const std::string& key) {
    for (size_t i = range.first + 1; i < range.second; ++i) {
        if (auto k = KeyOf(lines[i]); k && Same(*k, key)) {
            return i;
        }
    }
    return std::string::npos;
}

std::string Cut(const std::string& utf8, size_t chars) {
    const std::string bytes = Utf8ToCp1252(utf8);
    return bytes.size() <= chars ? utf8 : Cp1252ToUtf8(bytes.substr(0, chars));
}

std::string NameList(const std::vector<std::string>& names) {
    std::string out;
    for (const auto& n : names) {
        out += n;
        out += '\0';
    }
    out += '\0';
    return Cut(out, kListChars);
}

void Enumerate(const std::string& list, std::vector<std::string>& names, int32_t& count) {
    names.assign(1, std::string{});
    count = 0;
    size_t pos = 0;
    while (pos < list.size()) {
        const size_t nul = list.find('\0', pos);
        if (nul == std::string::npos || nul == pos) {
            break;
        }
        names.push_back(list.substr(pos, nul - pos));
        ++count;
        pos = nul + 1;
    }
}

} // namespace

std::string clsIniFile::Value() const {
    const IniLines f = Load(m_path);
    const auto range = FindSection(f.lines, m_section);
    if (range.first != std::string::npos) {
        const size_t k = FindKey(f.lines, range, m_key);
        if (k != std::string::npos) {
            const std::string& line = f.lines[k];
            return Cut(TrimBlanks(line.substr(line.find('=') + 1)), kValueChars);
        }
    }
    return Cut(m_default, kValueChars);
}

void clsIniFile::setValue(std::string_view text) {
    std::string value(text);
    value.erase(std::remove(value.begin(), value.end(), '\0'), value.end());
    m_lastReturnCode = 0;
    IniLines f = Load(m_path);
    if (!f.readable || m_section.empty() || m_key.empty()) {
        return;
    }
    auto range = FindSection(f.lines, m_section);
    if (range.first == std::string::npos) {
        f.lines.push_back("[" + m_section + "]");
        range = {f.lines.size() - 1, f.lines.size()};
    }
    const size_t k = FindKey(f.lines, range, m_key);
    if (k != std::string::npos) {
        f.lines[k] = m_key + "=" + value;
    } else {
        // After the section's last non-blank line, so blank separators stay between sections.
        size_t at = range.second;
        while (at > range.first + 1 && TrimBlanks(f.lines[at - 1]).empty()) {
            --at;
        }
        f.lines.insert(f.lines.begin() + static_cast<std::ptrdiff_t>(at), m_key + "=" + value);
    }
    m_lastReturnCode = Save(m_path, f.lines) ? 1 : 0;
}

void clsIniFile::DeleteKey() {
    m_lastReturnCode = 0;
    IniLines f = Load(m_path);
    if (!f.readable) {
        return;
    }
    const auto range = FindSection(f.lines, m_section);
    if (range.first != std::string::npos) {
        const size_t k = FindKey(f.lines, range, m_key);
        if (k != std::string::npos) {
            f.lines.erase(f.lines.begin() + static_cast<std::ptrdiff_t>(k));
            m_lastReturnCode = Save(m_path, f.lines) ? 1 : 0;
            return;
        }
    }
    m_lastReturnCode = f.exists ? 1 : 0;
}

void clsIniFile::DeleteSection() {
    m_lastReturnCode = 0;
    IniLines f = Load(m_path);
    if (!f.readable) {
        return;
    }
    const auto range = FindSection(f.lines, m_section);
    if (range.first == std::string::npos) {
        m_lastReturnCode = f.exists ? 1 : 0;
        return;
    }
    f.lines.erase(f.lines.begin() + static_cast<std::ptrdiff_t>(range.first),
                  f.lines.begin() + static_cast<std::ptrdiff_t>(range.second));
    m_lastReturnCode = Save(m_path, f.lines) ? 1 : 0;
}

std::string clsIniFile::INISection() const {
    const IniLines f = Load(m_path);
    const auto range = FindSection(f.lines, m_section);
    if (range.first == std::string::npos) {
        return m_default;
    }
    std::vector<std::string> names;
    for (size_t i = range.first + 1; i < range.second; ++i) {
        if (auto k = KeyOf(f.lines[i])) {
            names.push_back(*k);
        }
    }
    return names.empty() ? std::string() : NameList(names);
}

void clsIniFile::setINISection(std::string_view) {
    DeleteSection();
}

std::string clsIniFile::Sections() const {
    const IniLines f = Load(m_path);
    std::vector<std::string> names;
    for (const auto& line : f.lines) {
        if (auto s = SectionOf(line)) {
            names.push_back(*s);
        }
    }
    return names.empty() ? m_default : NameList(names);
}

void clsIniFile::EnumerateCurrentSection(std::vector<std::string>& names, int32_t& count) const {
    Enumerate(INISection(), names, count);
}

void clsIniFile::EnumerateAllSections(std::vector<std::string>& names, int32_t& count) const {
    const std::string list = Sections();
    names.assign(1, std::string{});
    count = 0;
    if (!list.empty()) {
        Enumerate(list, names, count);
    }
}

int32_t clsIniFile::CLngDefault(std::string_view text, int32_t fallback) {
    try {
        return CLng(text);
    } catch (const RuntimeError&) {
        return fallback;
    }
}

void clsIniFile::SaveFormPosition(const WindowGeometry& form) {
    const std::string key = m_key;
    const WindowState state = form.state();
    if (state != WindowState::Minimised) {
        const bool maximised = state == WindowState::Maximised;
        m_key = "Maximised";
        setValue(maximised ? "1" : "0");
        if (!maximised) {
            const Rect r = form.rect();
            const std::pair<const char*, int> values[] = {
                {"Left", r.left}, {"Top", r.top}, {"Width", r.width}, {"Height", r.height}};
            for (const auto& [name, v] : values) {
                m_key = name;
                setValue(std::to_string(v));
            }
        }
    }
    m_key = key;
}

void clsIniFile::LoadFormPosition(WindowGeometry& form, std::optional<int> minWidth,
                                  std::optional<int> minHeight) {
    const std::string key = m_key;
    const std::string def = m_default;
    m_default = "FAIL";
    const Rect current = form.rect();
    auto read = [&](const char* name, int fallback) {
        m_key = name;
        return CLngDefault(Value(), fallback);
    };
    Rect r{read("Left", current.left), read("Top", current.top), read("Width", current.width),
           read("Height", current.height)};
    const Rect screen = form.screen();
    r.width = std::max(r.width, minWidth.value_or(0));
    r.height = std::max(r.height, minHeight.value_or(0));
    if (screen.width > 0 && screen.height > 0) {
        // Never larger than the screen (unless the minimum says so), and on it.
        r.width = std::max(std::min(r.width, screen.width), minWidth.value_or(0));
        r.height = std::max(std::min(r.height, screen.height), minHeight.value_or(0));
        r.left = std::clamp(r.left, screen.left,
                            std::max(screen.left, screen.left + screen.width - r.width));
        r.top = std::clamp(r.top, screen.top,
                           std::max(screen.top, screen.top + screen.height - r.height));
    }
    form.move(r);
    if (read("Maximised", 0) != 0) {
        form.setState(WindowState::Maximised);
    }
    m_key = key;
    m_default = def;
}

} // namespace wicker
