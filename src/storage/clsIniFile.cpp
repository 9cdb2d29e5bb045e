#include "storage/clsIniFile.h"

#include "common/Conversions.h"
#include "storage/IniFileIo.h"

#include <algorithm>
#include <exception>
#include <limits>

namespace wicker {
namespace {

namespace fs = std::filesystem;

// Room the original gave its buffers: 255 characters for a value (254 and the end
// mark), 8192 for a list of names.
constexpr size_t kValueChars = 254;
constexpr size_t kListChars = 8192;

// The first `count` characters of UTF-8 text. Every Windows-1252 character is one code
// point, so this counts characters as the file does.
std::string FirstChars(const std::string& utf8, size_t count) {
    size_t chars = 0;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const bool startsChar = (static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80;
        if (startsChar && chars++ == count) {
            return utf8.substr(0, i);
        }
    }
    return utf8;
}

size_t CharCount(const std::string& utf8) {
    return static_cast<size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

// The default as the operating system hands it back: a C string, trailing blanks
// dropped, cut to the buffer.
std::string Fallback(const std::string& text, size_t count) {
    std::string out = text.substr(0, text.find('\0'));
    out.erase(out.find_last_not_of(' ') + 1);
    return FirstChars(out, count);
}

// Names each ended by NUL, the list ended by a second NUL; names that no longer fit the
// buffer are left out whole rather than cut.
std::string NameList(const std::vector<std::string>& names) {
    std::string out;
    size_t chars = 1; // the closing NUL
    for (const auto& name : names) {
        chars += CharCount(name) + 1;
        if (chars > kListChars) {
            break;
        }
        out += name;
        out += '\0';
    }
    out += '\0';
    return out;
}

void Enumerate(const std::string& list, std::vector<std::string>& names, int32_t& count) {
    names.assign(1, std::string{});
    count = 0;
    size_t pos = 0;
    while (pos < list.size()) {
        const size_t nul = list.find('\0', pos);
        if (nul == std::string::npos || nul == pos) {
            break; // the closing NUL, or text that is no list at all
        }
        names.push_back(list.substr(pos, nul - pos));
        ++count;
        pos = nul + 1;
    }
}

// Writes the changed document back unless that would change nothing.
int32_t Store(const fs::path& path, const IniFileContent& file, std::string& error) {
    if (file.state == IniFileContent::State::Read && file.document.Serialize() == file.bytes) {
        return 1;
    }
    const Result<void> written = WriteIniFile(path, file.document);
    if (!written) {
        error = written.error().message;
    }
    return written ? 1 : 0;
}

// Outcome of removing something that is not there: done, if a file could be there.
int32_t NothingToRemove(const fs::path& path, const IniFileContent& file) {
    if (file.state == IniFileContent::State::Read) {
        return 1;
    }
    std::error_code ec;
    const fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    return !path.empty() && fs::is_directory(folder, ec) ? 1 : 0;
}

// Puts a property back however the function is left.
class RestoreOnExit {
public:
    explicit RestoreOnExit(std::string& target) : m_target(target), m_saved(target) {}
    RestoreOnExit(const RestoreOnExit&) = delete;
    RestoreOnExit& operator=(const RestoreOnExit&) = delete;
    ~RestoreOnExit() { m_target = std::move(m_saved); }

private:
    std::string& m_target;
    std::string m_saved;
};

} // namespace

std::string clsIniFile::Value() const {
    const IniFileContent file = ReadIniFile(m_path);
    if (file.state == IniFileContent::State::Read) {
        if (const auto value = file.document.Get(m_section, m_key)) {
            return FirstChars(*value, kValueChars);
        }
    }
    return Fallback(m_default, kValueChars);
}

void clsIniFile::setValue(std::string_view text) {
    std::string value(text);
    value.erase(std::remove(value.begin(), value.end(), '\0'), value.end());
    m_lastReturnCode = 0;
    m_lastError.clear();
    IniFileContent file = ReadIniFile(m_path);
    if (m_path.empty() || file.state == IniFileContent::State::Unreadable ||
        !file.document.Set(m_section, m_key, value)) {
        return;
    }
    m_lastReturnCode = Store(m_path, file, m_lastError);
}

void clsIniFile::DeleteKey() {
    m_lastReturnCode = 0;
    m_lastError.clear();
    IniFileContent file = ReadIniFile(m_path);
    if (file.state == IniFileContent::State::Unreadable) {
        return;
    }
    m_lastReturnCode = file.document.RemoveKey(m_section, m_key) ? Store(m_path, file, m_lastError)
                                                                 : NothingToRemove(m_path, file);
}

void clsIniFile::DeleteSection() {
    m_lastReturnCode = 0;
    m_lastError.clear();
    IniFileContent file = ReadIniFile(m_path);
    if (file.state == IniFileContent::State::Unreadable) {
        return;
    }
    m_lastReturnCode = file.document.RemoveSection(m_section) ? Store(m_path, file, m_lastError)
                                                              : NothingToRemove(m_path, file);
}

std::string clsIniFile::INISection() const {
    const IniFileContent file = ReadIniFile(m_path);
    const auto names = file.document.KeyNames(m_section);
    return names.empty() ? Fallback(m_default, kListChars - 1) : NameList(names);
}

void clsIniFile::setINISection(std::string_view) {
    // Without a key the write removes the section; the text itself is never stored.
    DeleteSection();
}

std::string clsIniFile::Sections() const {
    const IniFileContent file = ReadIniFile(m_path);
    const auto names = file.document.SectionNames();
    return names.empty() ? Fallback(m_default, kListChars - 1) : NameList(names);
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
    } catch (const std::exception&) {
        return fallback;
    }
}

void clsIniFile::SaveFormPosition(const WindowGeometry& form) {
    const RestoreOnExit keepKey(m_key);
    try {
        const WindowState state = form.state();
        if (state == WindowState::Minimised) {
            return;
        }
        const bool maximised = state == WindowState::Maximised;
        m_key = "Maximised";
        setValue(maximised ? "1" : "0");
        if (maximised) {
            return; // the normal-size placement already in the file stays for the next start
        }
        const Rect r = form.rect();
        const std::pair<const char*, int> values[] = {
            {"Left", r.left}, {"Top", r.top}, {"Width", r.width}, {"Height", r.height}};
        for (const auto& [name, v] : values) {
            m_key = name;
            setValue(std::to_string(v));
        }
    } catch (const std::exception&) {
        // Placement is a convenience: a window that cannot say where it is saves nothing.
    }
}

void clsIniFile::LoadFormPosition(WindowGeometry& form, std::optional<int> minWidth,
                                  std::optional<int> minHeight) {
    const RestoreOnExit keepKey(m_key);
    const RestoreOnExit keepDefault(m_default);
    try {
        m_default = "FAIL"; // a missing key reads as text that CLngDefault refuses
        const Rect current = form.rect();
        auto read = [&](const char* name, int fallback) {
            m_key = name;
            return CLngDefault(Value(), fallback);
        };
        // A window never placed before (or placed with unusable values) is centred on the
        // screen rather than left where the toolkit first put it.
        constexpr int kUnset = std::numeric_limits<int>::min();
        Rect r{read("Left", kUnset), read("Top", kUnset), read("Width", current.width),
               read("Height", current.height)};
        if (r.width <= 0) {
            r.width = current.width;
        }
        if (r.height <= 0) {
            r.height = current.height;
        }
        const int minW = std::max(minWidth.value_or(0), 0);
        const int minH = std::max(minHeight.value_or(0), 0);
        const Rect screen = form.screen();
        if (screen.width > 0 && screen.height > 0) {
            // No larger than the screen, then moved onto it; a minimum wider than the
            // screen wins and the window starts at the screen's edge.
            r.width = std::min(r.width, screen.width);
            r.height = std::min(r.height, screen.height);
            r.width = std::max(r.width, minW);
            r.height = std::max(r.height, minH);
            if (r.left == kUnset) {
                r.left = screen.left + (screen.width - r.width) / 2;
            }
            if (r.top == kUnset) {
                r.top = screen.top + (screen.height - r.height) / 2;
            }
            r.left = std::clamp(r.left, screen.left,
                                std::max(screen.left, screen.left + screen.width - r.width));
            r.top = std::clamp(r.top, screen.top,
                               std::max(screen.top, screen.top + screen.height - r.height));
        } else {
            r.width = std::max(r.width, minW);
            r.height = std::max(r.height, minH);
            r.left = r.left == kUnset ? current.left : r.left;
            r.top = r.top == kUnset ? current.top : r.top;
        }
        form.move(r);
        if (read("Maximised", 0) != 0) {
            form.setState(WindowState::Maximised);
        }
    } catch (const std::exception&) {
        // The window keeps whatever placement it had.
    }
}

} // namespace wicker
