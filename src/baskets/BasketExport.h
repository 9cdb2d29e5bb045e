#pragma once

#include "storage/BasketDatabase.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// File name proposed for exporting a basket: its name with every blank removed, ".txt".
std::string ProposedExportFileName(std::string_view basketName);

/// Where the export dialog starts: the application folder's Baskets folder.
std::filesystem::path ProposedExportPath(const std::filesystem::path& appFolder,
                                         std::string_view basketName);

/// Text lines of an exported basket: symbol "," quantity "," destination, as shown.
std::vector<std::string> BasketExportLines(const std::vector<BasketLine>& lines);

/// Writes the basket file (Windows-1252, every line ended by CR LF), replacing an
/// existing file without asking and creating a missing parent folder.
/// RuntimeError 75 when it cannot be written.
void ExportBasketFile(const std::filesystem::path& path, const std::vector<BasketLine>& lines);

} // namespace wicker
