#pragma once

#include "common/Result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// What the program was asked to do on its command line.
struct CommandLine {
    bool help = false;
    bool version = false;
    std::optional<std::filesystem::path> dataDir; ///< --data-dir DIR
    /// --screenshot FILE: load the first quick-load basket, let quotes run, save a picture
    /// of the main window to FILE and quit (for the documentation).
    std::optional<std::filesystem::path> screenshot;
    /// --account NAME: the default trading account from now on (added when missing).
    std::optional<std::string> account;
};

/// Reads the arguments after the program name. An unknown option, a missing value or an
/// empty folder name is an error whose text names the option.
Result<CommandLine> ParseCommandLine(const std::vector<std::string>& args);

/// The text of --help.
std::string UsageText();

/// The line of --version.
std::string VersionText();

} // namespace wicker
