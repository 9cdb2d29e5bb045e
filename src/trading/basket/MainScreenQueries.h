#pragma once

#include "storage/Database.h"
#include "trading/basket/StockList.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// cboAccount's list and text.
struct AccountList {
    std::vector<std::string> accounts; ///< by strAcct
    std::string text;                  ///< the default account, empty without one
};

/// ReadAccounts: every account in name order; the one with lngDefault 1 is the text.
AccountList ReadAccounts(Database& db);

/// lstBaskets: every basket name, sorted by name.
std::vector<std::string> ReadBasketNames(Database& db);

/// Number of quick-load buttons (cmdLoad_1 .. cmdLoad_4).
inline constexpr int QuickLoadButtonCount = 4;

/// One quick-load button: caption (strButtonName), the basket's name and number; number 0
/// for an unused button.
struct QuickLoadButton {
    std::string caption;
    std::string basketName;
    int32_t basketNum = 0;
    bool operator==(const QuickLoadButton&) const = default;
};

/// cmdLoad by index - 1: the baskets marked to be on a button, the first four returned.
std::array<QuickLoadButton, QuickLoadButtonCount> ReadQuickLoadButtons(Database& db);

/// The number of the basket with this name; none when there is no such basket. A name
/// that cannot go into the statement (an apostrophe) throws DbError.
std::optional<int32_t> ReadBasketNum(Database& db, const std::string& basketName);

/// The lines of a stored basket: symbol, basket quantity and destination, checked, with
/// their record numbers, in the order the database returns them.
std::vector<StockLine> ReadBasketLines(Database& db, int32_t basketNum);

/// The cbTif list, in its order.
const std::vector<std::string>& TifChoices();

/// Number of order buttons.
inline constexpr int OrderButtonCount = 21;

/// EnableButtons: buttons 0..17 (quote-based) get the opposite of the flag, the price
/// buttons 18..20 the flag itself.
std::array<bool, OrderButtonCount> OrderButtonStates(bool priceButtons);

} // namespace wicker
