#include "common/AppFolder.h"

#include <cstdlib>
#include <system_error>

namespace wicker {
namespace {

std::optional<std::filesystem::path> NonEmpty(const std::optional<std::string>& v) {
    if (v && !v->empty()) {
        return std::filesystem::path(*v);
    }
    return std::nullopt;
}

bool Exists(const std::filesystem::path& p) {
    std::error_code ec;
    return std::filesystem::exists(p, ec);
}

} // namespace

std::filesystem::path ResolveAppFolder(const AppFolderInputs& in) {
    if (in.dataDirOption && !in.dataDirOption->empty()) {
        return *in.dataDirOption;
    }
    auto env = [&](const char* name) { return in.env ? in.env(name) : std::nullopt; };
    if (auto home = NonEmpty(env("WICKER_HOME"))) {
        return *home;
    }
    if (!in.executableDir.empty() &&
        (Exists(in.executableDir / "basket.ini") || Exists(in.executableDir / "baskets.mdb"))) {
        return in.executableDir;
    }
    // A relative XDG_DATA_HOME or HOME is invalid and would move the data with the working
    // folder: it is ignored, as the desktop's own programs ignore it.
    if (auto xdg = NonEmpty(env("XDG_DATA_HOME")); xdg && xdg->is_absolute()) {
        return *xdg / "wicker";
    }
    if (auto home = NonEmpty(env("HOME")); home && home->is_absolute()) {
        return *home / ".local" / "share" / "wicker";
    }
    // No home at all (a bare service account): the working folder is the only choice left.
    return std::filesystem::current_path() / "wicker-data";
}

std::optional<std::string> ProcessEnv(const char* name) {
    if (const char* v = std::getenv(name)) {
        return std::string(v);
    }
    return std::nullopt;
}

} // namespace wicker
