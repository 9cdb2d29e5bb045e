#pragma once

#include <filesystem>
#include <string>

namespace wicker::test {

/// A fresh folder under the system temp folder, removed with everything in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

/// Writes bytes to a file (creating parent folders).
void WriteFile(const std::filesystem::path& p, const std::string& bytes);
/// Reads a whole file as bytes.
std::string ReadFile(const std::filesystem::path& p);
/// A key of a settings file as the program reads it; "<missing>" when it is not there.
std::string IniValue(const std::filesystem::path& file, const std::string& section,
                     const std::string& key);

} // namespace wicker::test
