#pragma once

#include <filesystem>
#include <string>

namespace wicker {

/// Destinations the import dialog preselects for lines that name none.
struct ImportDefaults {
    std::string listed; ///< "Import" / "DefaultListed", default "NYSE"
    std::string otc;    ///< "Import" / "DefaultOTC", default "ARCA"
};

/// Reads the two keys of section "Import" of the settings file (basket.ini).
ImportDefaults ReadImportDefaults(const std::filesystem::path& iniPath);

} // namespace wicker
