#pragma once

#include "common/Result.h"
#include "storage/IniDocument.h"

#include <filesystem>
#include <string>

namespace wicker {

/// What reading an INI file found.
struct IniFileContent {
    enum class State {
        Missing,   ///< no file (or no folder) at the path: reads give their defaults
        Read,      ///< `document` holds the file
        Unreadable ///< something is there but cannot be read: it must never be overwritten
    };
    State state = State::Missing;
    IniDocument document;
    std::string bytes; ///< the file as read, so that a write that changes nothing is skipped
    std::string error; ///< why the file is unreadable
};

/// Reads and parses the file. Folders, devices, UTF-16 files and files too large to be
/// settings files count as unreadable.
IniFileContent ReadIniFile(const std::filesystem::path& path);

/// Replaces the file with the document: the text goes to a new file in the same folder,
/// is flushed to disk and then renamed over the old one, so the file is always either the
/// old or the new one. The old file's permissions are kept; a symbolic link is followed
/// and stays a link. The folder must exist.
Result<void> WriteIniFile(const std::filesystem::path& path, const IniDocument& document);

/// Removes the new files that writes of `path` left behind when the program was killed
/// between making one and renaming it into place (".basket.ini.1a2b3c4d.tmp"). Meant for
/// the start, before anything writes the file; returns how many were removed.
int RemoveLeftoverTempFiles(const std::filesystem::path& path);

} // namespace wicker
