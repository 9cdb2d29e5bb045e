#include "TempDir.h"

#include "storage/clsIniFile.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>

namespace wicker::test {

TempDir::TempDir() {
    std::string tmpl = (std::filesystem::temp_directory_path() / "wicker-test-XXXXXX").string();
    if (mkdtemp(tmpl.data()) == nullptr) {
        throw std::runtime_error("cannot make a temporary folder");
    }
    m_path = tmpl;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
}

void WriteFile(const std::filesystem::path& p, const std::string& bytes) {
    if (p.has_parent_path()) {
        std::filesystem::create_directories(p.parent_path());
    }
    std::ofstream f(p, std::ios::binary | std::ios::trunc);
    f << bytes;
    if (!f) {
        throw std::runtime_error("cannot write " + p.string());
    }
}

std::string ReadFile(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    if (!f) {
        throw std::runtime_error("cannot read " + p.string());
    }
    std::ostringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

std::string IniValue(const std::filesystem::path& file, const std::string& section,
                     const std::string& key) {
    clsIniFile ini;
    ini.setPath(file);
    ini.setSection(section);
    ini.setKey(key);
    ini.setDefault("<missing>");
    return ini.Value();
}

} // namespace wicker::test
