#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The columns a basket can take from a spreadsheet.
enum class BasketColumn { Symbol, Quantity, Destination, IndexShares, Side };
inline constexpr size_t kBasketColumnCount = 5;

/// What a header cell names, whatever its case, blanks and punctuation: our own column
/// names and those of common broker basket exports ("Ticker", "Qty", "Shares", "Route",
/// "Exchange", "Action", "Buy/Sell"...). Nothing for a column the basket has no use for.
std::optional<BasketColumn> RecognizeColumn(std::string_view headerCell);

/// Shown in messages: "symbol", "quantity", "destination", "index shares", "side".
std::string_view ColumnText(BasketColumn column);

/// Where each basket column sits in a record.
struct SheetColumns {
    bool header = false; ///< the first record names the columns
    std::array<std::optional<size_t>, kBasketColumnCount> at;
    std::vector<std::string> ignored; ///< header names of columns that are not read
    std::string problem;              ///< why the header cannot be used; empty when it can

    std::optional<size_t> operator[](BasketColumn c) const { return at[static_cast<size_t>(c)]; }
};

/// The layout a first record gives: a header when any cell names a symbol or quantity
/// column; otherwise the basket file order (symbol, quantity, destination, index shares).
SheetColumns LayoutFromFirstRecord(const std::vector<std::string>& firstRecord);

} // namespace wicker
