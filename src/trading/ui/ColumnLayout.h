#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QHeaderView;

namespace wicker {

/// The layout of a list view as the settings keep it: per column an optional width, a
/// shown flag (a "0" character hides the column) and a 1-based display position.
struct ColumnLayout {
    std::vector<std::optional<int32_t>> widths;
    std::string shown;
    std::vector<std::string> positions;
};

/// Display position (0-based) of each of `count` columns. The positions are used only when
/// they are a complete arrangement of 1..count (a trailing empty element is allowed);
/// anything else gives the natural order, so a hand-edited file never loses a column.
std::vector<int> DisplayOrder(const std::vector<std::string>& positions, int count);

/// Applies widths, shown flags and positions to a header of `count` sections.
void ApplyColumnLayout(QHeaderView& header, const ColumnLayout& layout, int count);

/// The positions the header shows now, 1-based, in the settings' form.
std::vector<std::string> CurrentPositions(const QHeaderView& header, int count);

} // namespace wicker
