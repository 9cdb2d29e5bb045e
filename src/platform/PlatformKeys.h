#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace wicker {

/// A key of basket.ini section "Platform" -> its value; nothing when the key is absent.
using PlatformKeyReader = std::function<std::optional<std::string>(std::string_view)>;

/// The keys of section "Platform" of `iniFile`, read from the file at each call.
PlatformKeyReader ReadPlatformKeys(const std::filesystem::path& iniFile);

} // namespace wicker
