#pragma once

#include <string>

namespace wicker {

/// One line of the basket loaded on the main screen as the add-stock and edit-item
/// dialogs show it: the boxes' texts, as typed.
struct MainLineEntry {
    std::string symbol;
    std::string quantity;
    std::string destination;
    std::string modifier = "0";
    std::string tif = "DAY";
    bool operator==(const MainLineEntry&) const = default;
};

} // namespace wicker
