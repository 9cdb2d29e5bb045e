#include "admin/ColumnLayoutSettings.h"

#include "admin/SettingsWriter.h"
#include "storage/SettingsKeys.h"

#include <charconv>

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

std::string Join(const std::vector<std::string>& parts) {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        out += (i ? "," : "") + parts[i];
    }
    return out;
}

void AddWidths(std::vector<SettingsValue>& values, std::string_view section,
               const std::vector<std::optional<int32_t>>& widths) {
    for (size_t i = 0; i < widths.size(); ++i) {
        if (widths[i] && *widths[i] > 0) {
            values.push_back({std::string(section), "column" + std::to_string(i + 1),
                              std::to_string(*widths[i])});
        }
    }
}

} // namespace

std::vector<int> DisplayOrder(const std::vector<std::string>& positions, int count) {
    std::vector<int> natural(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        natural[static_cast<size_t>(i)] = i;
    }
    std::vector<std::string> given = positions;
    if (HasTrailingEmpty(given, count)) {
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

bool HasTrailingEmpty(const std::vector<std::string>& positions, int count) {
    return positions.size() == static_cast<size_t>(count) + 1 && positions.back().empty();
}

std::vector<ColumnEntry> ColumnEntries(std::string_view shownFlags,
                                       const std::vector<std::string>& positions, int count) {
    const std::vector<int> order = DisplayOrder(positions, count);
    std::vector<ColumnEntry> entries(static_cast<size_t>(count));
    for (int column = 0; column < count; ++column) {
        const auto c = static_cast<size_t>(column);
        const bool hidden = c < shownFlags.size() && shownFlags[c] == '0';
        entries[static_cast<size_t>(order[c])] = ColumnEntry{column, !hidden};
    }
    return entries;
}

Result<ColumnSettingsText> ColumnSettingsFrom(const std::vector<ColumnEntry>& entries, int count,
                                              bool trailingEmpty) {
    if (entries.size() != static_cast<size_t>(count)) {
        return Error{"The list must name each of its " + std::to_string(count) + " columns once."};
    }
    ColumnSettingsText out;
    out.shown.assign(static_cast<size_t>(count), '1');
    out.positions.assign(static_cast<size_t>(count), std::string());
    bool anyShown = false;
    for (size_t position = 0; position < entries.size(); ++position) {
        const int column = entries[position].column;
        if (column < 0 || column >= count || !out.positions[static_cast<size_t>(column)].empty()) {
            return Error{"The list must name each of its " + std::to_string(count) +
                         " columns once."};
        }
        out.positions[static_cast<size_t>(column)] = std::to_string(position + 1);
        out.shown[static_cast<size_t>(column)] = entries[position].shown ? '1' : '0';
        anyShown = anyShown || entries[position].shown;
    }
    if (!anyShown) {
        return Error{"Please leave at least one column shown."};
    }
    if (trailingEmpty) {
        out.positions.emplace_back();
    }
    return out;
}

std::vector<std::optional<int32_t>> WidthsToKeep(const std::vector<std::optional<int32_t>>& before,
                                                 const std::vector<int32_t>& current,
                                                 const std::vector<bool>& hidden) {
    std::vector<std::optional<int32_t>> out(current.size());
    for (size_t i = 0; i < current.size(); ++i) {
        const bool isHidden = i < hidden.size() && hidden[i];
        if (!isHidden && current[i] > 0) {
            out[i] = current[i];
        } else if (i < before.size()) {
            out[i] = before[i];
        }
    }
    return out;
}

Result<void> SaveColumnWidths(const std::filesystem::path& appFolder,
                              const std::vector<std::optional<int32_t>>& stockWidths,
                              const std::vector<std::optional<int32_t>>& basketWidths) {
    std::vector<SettingsValue> values;
    AddWidths(values, keys::kStockColumnWidths, stockWidths);
    AddWidths(values, keys::kBasketColumnWidths, basketWidths);
    return WriteSettingsValues(appFolder, values);
}

Result<void> SaveColumnArrangement(const std::filesystem::path& appFolder,
                                   const ColumnSettingsText& stock,
                                   const ColumnSettingsText& basket) {
    const auto s = [](std::string_view x) { return std::string(x); };
    return WriteSettingsValues(
        appFolder, {
                       {s(keys::kColumnDisplay), s(keys::kBasketItemsCols), stock.shown},
                       {s(keys::kColumnDisplay), s(keys::kBasketInfoCols), basket.shown},
                       {s(keys::kColumnPositions), s(keys::kItemsPositions), Join(stock.positions)},
                       {s(keys::kColumnPositions), s(keys::kInfoPositions), Join(basket.positions)},
                   });
}

} // namespace wicker
