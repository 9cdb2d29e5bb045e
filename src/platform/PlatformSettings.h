#pragma once

#include "platform/PlatformKeys.h"
#include "platform/sim/SimSettings.h"

#include <filesystem>
#include <string>
#include <vector>

namespace wicker {

/// Which platform the program trades through.
enum class PlatformMode {
    Sim, ///< the built-in simulated market and broker
    Fix, ///< a broker over FIX
};

/// The choice of platform and the simulator's knobs, from basket.ini section "Platform":
/// "Mode" ("SIM" or "FIX"), "SimSeed", "SimUpdatesPerSecond", "SimFillDelayMs",
/// "SimClipSize", "SimHalted" (comma list), and the limits every platform shares,
/// "EnabledDestinations" and "MaxOrderNotional".
struct PlatformSettings {
    PlatformMode mode = PlatformMode::Sim;
    SimSettings sim;
    /// One line per unusable value, each saying which default took its place; empty when
    /// every value was good. For the caller to show.
    std::vector<std::string> messages;
};

/// Reads the settings through `key`; a bad value never fails the read, it is reported in
/// `messages` and its default used.
PlatformSettings ReadPlatformSettings(const PlatformKeyReader& key);
/// The same from the settings file (basket.ini).
PlatformSettings ReadPlatformSettings(const std::filesystem::path& iniFile);

} // namespace wicker
