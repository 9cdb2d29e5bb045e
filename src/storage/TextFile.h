#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace wicker {

/// Largest text file read whole; the small lists it is used for are far below it.
inline constexpr std::uintmax_t kMaxTextFileBytes = 16u * 1024u * 1024u;

/// Lines of an 8-bit (Windows-1252) text file, as UTF-8. Lines end with LF or CR LF;
/// a last line without a line break still counts; a lone CR stays in the text.
/// RuntimeError 53 ("File not found") when the file is missing, 75 ("Path/File access
/// error") when it cannot be read, is no regular file (a folder, a device, a pipe) or is
/// larger than `maxBytes`.
std::vector<std::string> ReadTextLines(const std::filesystem::path& path,
                                       std::uintmax_t maxBytes = kMaxTextFileBytes);

/// True when `path` names a regular file that lies inside `folder` once every link and
/// ".." is resolved.
bool IsFileInside(const std::filesystem::path& path, const std::filesystem::path& folder);

/// Writes lines as Windows-1252, each ended by CR LF, replacing the file through a
/// temporary file; RuntimeError 75 when it cannot be written.
void WriteTextLines(const std::filesystem::path& path, const std::vector<std::string>& lines);

} // namespace wicker
