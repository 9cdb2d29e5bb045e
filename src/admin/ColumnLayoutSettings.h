#pragma once

#include "common/Result.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Display position (0-based) of each of `count` columns. The positions are used only when
/// they are a complete arrangement of 1..count (a trailing empty element is allowed);
/// anything else gives the natural order, so a hand-edited file never loses a column.
std::vector<int> DisplayOrder(const std::vector<std::string>& positions, int count);

/// True when the positions end with the empty element a trailing "," leaves.
bool HasTrailingEmpty(const std::vector<std::string>& positions, int count);

/// One column of a list as the columns screen shows it.
struct ColumnEntry {
    int column = 0; ///< 0-based column of the list's model
    bool shown = true;
    bool operator==(const ColumnEntry&) const = default;
};

/// The columns in display order with their shown flags ("0" hides a column; a flag
/// missing from a short text shows it).
std::vector<ColumnEntry> ColumnEntries(std::string_view shownFlags,
                                       const std::vector<std::string>& positions, int count);

/// The settings' form of an arrangement: one "1"/"0" flag per column, by column, and the
/// 1-based display position of each column, by column.
struct ColumnSettingsText {
    std::string shown;
    std::vector<std::string> positions;
};

/// The settings' form of the entries, which must name each of the `count` columns once;
/// `trailingEmpty` keeps the empty element a trailing "," gives. An error when the entries
/// are no complete arrangement or show no column at all.
Result<ColumnSettingsText> ColumnSettingsFrom(const std::vector<ColumnEntry>& entries, int count,
                                              bool trailingEmpty);

/// The widths to remember: the current width of every shown column; a hidden column keeps
/// the width remembered before (its current width reads 0).
std::vector<std::optional<int32_t>> WidthsToKeep(const std::vector<std::optional<int32_t>>& before,
                                                 const std::vector<int32_t>& current,
                                                 const std::vector<bool>& hidden);

/// Writes "StockColumnWidths" and "BasketColumnWidths" ("column1" ...) to basket.ini in
/// one replacement of the file; columns without a width are left as they are.
Result<void> SaveColumnWidths(const std::filesystem::path& appFolder,
                              const std::vector<std::optional<int32_t>>& stockWidths,
                              const std::vector<std::optional<int32_t>>& basketWidths);

/// Writes "ColumnDisplay" and "ColumnPositions" (each list joined with ",") in one
/// replacement of the file.
Result<void> SaveColumnArrangement(const std::filesystem::path& appFolder,
                                   const ColumnSettingsText& stock,
                                   const ColumnSettingsText& basket);

} // namespace wicker
