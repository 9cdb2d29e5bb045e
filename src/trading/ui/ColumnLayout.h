#pragma once

#include "admin/ColumnLayoutSettings.h" // DisplayOrder

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

/// Applies widths, shown flags and positions to a header of `count` sections.
void ApplyColumnLayout(QHeaderView& header, const ColumnLayout& layout, int count);

/// The positions the header shows now, 1-based, in the settings' form.
std::vector<std::string> CurrentPositions(const QHeaderView& header, int count);

} // namespace wicker
