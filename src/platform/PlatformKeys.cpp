#include "platform/PlatformKeys.h"

#include "storage/clsIniFile.h"

#include <memory>

namespace wicker {

PlatformKeyReader ReadPlatformKeys(const std::filesystem::path& iniFile) {
    auto ini = std::make_shared<clsIniFile>();
    ini->setPath(iniFile);
    ini->setSection("Platform");
    // A default no file holds tells a missing key from an empty one.
    static constexpr const char* kMissing = "\x01";
    ini->setDefault(kMissing);
    return [ini](std::string_view name) -> std::optional<std::string> {
        ini->setKey(std::string(name));
        std::string value = ini->Value();
        if (value == kMissing) {
            return std::nullopt;
        }
        return value;
    };
}

} // namespace wicker
