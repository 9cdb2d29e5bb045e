#pragma once

#include "trading/basket/StockList.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The screen's fields the calculation reads.
struct CalcFields {
    std::string_view multiplier; ///< text of txtPercent
    std::string_view delta;      ///< text of txtDelta
};

/// The share-rounding lot to calculate with: a lot below 1 (a hand-edited settings file)
/// would divide by zero or flip signs, so it falls back to 1.
int16_t UsableLot(int16_t shareRounding);

/// Recomputes every line's order quantity (sub-item 5) from its basket quantity, the
/// multiplier and the delta, rounded by the lot above 100 shares, and the per-line
/// notional (unchecked lines included, before lot rounding). Returns the status-bar text
/// of the basket notional: "0.00" for an empty list, else "#.00".
/// A basket quantity that is not a number, or an overflowing quantity, throws
/// RuntimeError at that line: earlier lines keep their new quantities.
std::string CalcBasket(StockList& lines, const CalcFields& fields, int16_t lot,
                       std::vector<float>& lineNotional);

/// The notional of the checked lines only (after Select All / Deselect All); returns the
/// status-bar text: "0.00" for an empty list, else "#.00" (".00" when nothing is checked).
std::string CalcCheckedTotal(StockList& lines, std::vector<float>& lineNotional);

/// Copies the text of txtMod, as it stands, into sub-item 7 of every line.
void SetMod(StockList& lines, const std::string& modText);

/// Copies the time in force into sub-item 8 of every line; an empty text means "DAY".
void SetTif(StockList& lines, const std::string& tifText);

/// The status-bar text of a basket notional: "#.00".
std::string NotionalText(double total);

} // namespace wicker
