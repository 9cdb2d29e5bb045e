#include "trading/ui/ColumnLayout.h"

#include <QHeaderView>

namespace wicker {

void ApplyColumnLayout(QHeaderView& header, const ColumnLayout& layout, int count) {
    const std::vector<int> order = DisplayOrder(layout.positions, count);
    // Place by display position, left to right, so each move lands where it should.
    for (int position = 0; position < count; ++position) {
        for (int column = 0; column < count; ++column) {
            if (order[static_cast<size_t>(column)] == position) {
                header.moveSection(header.visualIndex(column), position);
                break;
            }
        }
    }
    for (int column = 0; column < count; ++column) {
        const auto c = static_cast<size_t>(column);
        if (c < layout.widths.size() && layout.widths[c] && *layout.widths[c] > 0) {
            header.resizeSection(column, *layout.widths[c]);
        }
        const bool hidden = c < layout.shown.size() && layout.shown[c] == '0';
        header.setSectionHidden(column, hidden);
    }
}

std::vector<std::string> CurrentPositions(const QHeaderView& header, int count) {
    std::vector<std::string> positions;
    positions.reserve(static_cast<size_t>(count));
    for (int column = 0; column < count; ++column) {
        positions.push_back(std::to_string(header.visualIndex(column) + 1));
    }
    return positions;
}

} // namespace wicker
