#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace wicker {

/// Where Wicker keeps baskets.mdb, basket.ini and the legacy files.
struct AppFolderInputs {
    std::optional<std::filesystem::path> dataDirOption;         ///< --data-dir DIR
    std::function<std::optional<std::string>(const char*)> env; ///< environment lookup
    std::filesystem::path executableDir;                        ///< folder of the program
};

/// --data-dir, else $WICKER_HOME, else the program's folder when it already holds
/// basket.ini or baskets.mdb (a portable install), else $XDG_DATA_HOME/wicker, else
/// $HOME/.local/share/wicker. The folder is not created here.
std::filesystem::path ResolveAppFolder(const AppFolderInputs& in);

/// Environment lookup through getenv, for the program.
std::optional<std::string> ProcessEnv(const char* name);

} // namespace wicker
