#include "baskets/ImportDefaults.h"

#include "storage/clsIniFile.h"

namespace wicker {

ImportDefaults ReadImportDefaults(const std::filesystem::path& iniPath) {
    clsIniFile ini;
    ini.setPath(iniPath);
    ini.setSection("Import");
    ImportDefaults out;
    ini.setKey("DefaultListed");
    ini.setDefault("NYSE");
    out.listed = ini.Value();
    ini.setKey("DefaultOTC");
    ini.setDefault("ARCA");
    out.otc = ini.Value();
    return out;
}

} // namespace wicker
