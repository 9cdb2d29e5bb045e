#include "admin/SettingsWriter.h"

#include "storage/IniFileIo.h"
#include "storage/SettingsKeys.h"

namespace wicker {

Result<void> WriteSettingsValues(const std::filesystem::path& appFolder,
                                 const std::vector<SettingsValue>& values) {
    const std::filesystem::path path = appFolder / keys::kSettingsFile;
    IniFileContent file = ReadIniFile(path);
    if (file.state == IniFileContent::State::Unreadable) {
        return Error{file.error + " The settings were not saved."};
    }
    for (const SettingsValue& v : values) {
        if (!file.document.Set(v.section, v.key, v.value)) {
            return Error{"The setting " + v.section + " / " + v.key + " cannot hold the text \"" +
                         v.value + "\". The settings were not saved."};
        }
    }
    if (file.state == IniFileContent::State::Read && file.document.Serialize() == file.bytes) {
        return {}; // nothing changed
    }
    const Result<void> written = WriteIniFile(path, file.document);
    if (!written) {
        return Error{written.error().message + " The settings were not saved."};
    }
    return {};
}

} // namespace wicker
