#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace wicker {

/// Lines of an 8-bit (Windows-1252) text file, as UTF-8. Lines end with LF or CR LF;
/// a last line without a line break still counts; a lone CR stays in the text.
/// RuntimeError 53 ("File not found") when the file is missing, 75 ("Path/File access
/// error") when it cannot be read.
std::vector<std::string> ReadTextLines(const std::filesystem::path& path);

/// Writes lines as Windows-1252, each ended by CR LF, replacing the file through a
/// temporary file; RuntimeError 75 when it cannot be written.
void WriteTextLines(const std::filesystem::path& path, const std::vector<std::string>& lines);

} // namespace wicker
