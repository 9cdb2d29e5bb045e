#pragma once

#include "common/Clock.h"
#include "common/Result.h"
#include "platform/Platform.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace wicker {

/// The platform basket.ini in the data folder asks for ("Platform"/"Mode"): the simulated
/// market (the default) or FIX. `notes` receives what the user should read about settings
/// that were not usable (their defaults were taken). An error when the platform cannot be
/// made at all.
Result<std::unique_ptr<Platform>> CreatePlatform(const std::filesystem::path& dataFolder,
                                                 const Clock& clock,
                                                 std::vector<std::string>& notes);

} // namespace wicker
