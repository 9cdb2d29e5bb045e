#pragma once

#include "storage/WindowGeometry.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Reads and writes one INI file through Path / Section / Key / Default properties.
/// Nothing is cached: every read goes to the file and every write lands at once.
/// Section and key names compare without case. Files are Windows-1252 on disk and
/// UTF-8 in memory. Writes go to a temporary file that replaces the old one, so a
/// crash never leaves a half-written file. A file that cannot be read is never written.
class clsIniFile {
public:
    const std::filesystem::path& Path() const { return m_path; }
    void setPath(std::filesystem::path path) { m_path = std::move(path); }
    const std::string& Section() const { return m_section; }
    void setSection(std::string section) { m_section = std::move(section); }
    const std::string& Key() const { return m_key; }
    void setKey(std::string key) { m_key = std::move(key); }
    const std::string& Default() const { return m_default; }
    void setDefault(std::string text) { m_default = std::move(text); }

    /// Key in Section (trimmed of blanks and of one pair of quotes), or Default without
    /// its trailing blanks; at most 254 characters.
    std::string Value() const;
    /// Writes Key = text (NUL characters removed); creates file/section/key as needed.
    /// Fails (LastReturnCode 0) for a text or name with a line break, a key with "=",
    /// a missing folder, or a file that exists but cannot be read.
    void setValue(std::string_view text);
    void DeleteKey();
    void DeleteSection();
    /// Key names of Section, each followed by NUL, the list ended by a second NUL;
    /// Default when the section is missing or holds no keys.
    std::string INISection() const;
    /// Deletes Section (the text is not stored: a key-less write removes the section).
    void setINISection(std::string_view text);
    /// Section names of the file, NUL-separated as INISection (each name once).
    std::string Sections() const;

    /// Return value of the last write: non-zero on success.
    int32_t LastReturnCode() const { return m_lastReturnCode; }
    bool Success() const { return m_lastReturnCode != 0; }
    /// Why the last write failed, when the file could not be written; empty otherwise.
    const std::string& LastError() const { return m_lastError; }

    /// Fills names[1..count] (names[0] unused, kept empty) from INISection.
    void EnumerateCurrentSection(std::vector<std::string>& names, int32_t& count) const;
    /// Same over Sections.
    void EnumerateAllSections(std::vector<std::string>& names, int32_t& count) const;

    /// CLng of the text, halves to even; the fallback on any conversion error.
    static int32_t CLngDefault(std::string_view text, int32_t fallback);

    /// Saves placement under the current Section ("Left", "Top", "Width", "Height",
    /// "Maximised"); a minimised window saves nothing.
    void SaveFormPosition(const WindowGeometry& form);
    /// Restores placement; the window ends on its screen and no smaller than the minimums.
    void LoadFormPosition(WindowGeometry& form, std::optional<int> minWidth = std::nullopt,
                          std::optional<int> minHeight = std::nullopt);

private:
    std::filesystem::path m_path;
    std::string m_section;
    std::string m_key;
    std::string m_default;
    int32_t m_lastReturnCode = 0;
    std::string m_lastError;
};

} // namespace wicker
