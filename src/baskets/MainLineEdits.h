#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Time-in-force values the edit-item dialog offers, in its order.
const std::vector<std::string>& EditItemTifs();

/// The modifier after one step of the up-down control: up adds 0.01, down subtracts it;
/// a result strictly between -0.01 and 0.01 becomes exactly 0, so steps never leave a
/// floating-point remainder. A text that is not a number resets the box to "0".
std::string StepModifier(std::string_view modifierText, bool up);

/// INSERT of a line added to the loaded (stored) basket; no index shares (null).
/// Throws DbError when a value cannot go into the statement.
std::string AddMainLineSql(int32_t basketNum, const std::string& symbol,
                           const std::string& quantity, const std::string& destination);

/// A line of the loaded basket before and after an edit.
struct MainLineEdit {
    int32_t basketNum = 0;
    int32_t recordNum = 0;
    std::string oldSymbol;
    std::string oldQuantity;
    std::string oldDestination;
    std::string symbol;
    std::string quantity;
    std::string destination;
    std::optional<std::string> indexShares; ///< written only when the line carries them
};

/// UPDATE of the edit-item dialog: the row is found by its record number and old values.
/// Throws DbError when a value cannot go into the statement.
std::string EditItemSql(const MainLineEdit& edit);

} // namespace wicker
