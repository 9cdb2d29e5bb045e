#include "trading/ui/ColumnLayout.h"

#include <charconv>

#include <QHeaderView>

namespace wicker {
namespace {

/// The whole text as a number within 1..count; nothing else.
bool PositionOf(const std::string& text, int count, int& position) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec != std::errc() || ptr != end || value < 1 || value > count) {
        return false;
    }
    position = value;
    return true;
}

} // namespace

std::vector<int> DisplayOrder(const std::vector<std::string>& positions, int count) {
    std::vector<int> natural(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        natural[static_cast<size_t>(i)] = i;
    }
    std::vector<std::string> given = positions;
    if (given.size() == static_cast<size_t>(count) + 1 && given.back().empty()) {
        given.pop_back();
    }
    if (given.size() != static_cast<size_t>(count)) {
        return natural;
    }
    std::vector<int> order(static_cast<size_t>(count));
    std::vector<bool> taken(static_cast<size_t>(count), false);
    for (int i = 0; i < count; ++i) {
        int p = 0;
        if (!PositionOf(given[static_cast<size_t>(i)], count, p) ||
            taken[static_cast<size_t>(p - 1)]) {
            return natural;
        }
        taken[static_cast<size_t>(p - 1)] = true;
        order[static_cast<size_t>(i)] = p - 1;
    }
    return order;
}

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
