#pragma once

#include "common/Result.h"

#include <filesystem>
#include <string>
#include <vector>

namespace wicker {

/// One key of basket.ini to write.
struct SettingsValue {
    std::string section;
    std::string key;
    std::string value;
};

/// Writes every value to basket.ini in the folder in one replacement of the file: either
/// all of them land or none does. A file that exists but cannot be read is never written;
/// the error then says why it could not be read.
Result<void> WriteSettingsValues(const std::filesystem::path& appFolder,
                                 const std::vector<SettingsValue>& values);

} // namespace wicker
