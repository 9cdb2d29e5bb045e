#pragma once

#include "baskets/BasketIndexStore.h"
#include "storage/Database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// One row of the setup screen's basket list.
struct BasketRow {
    int32_t basketNum = 0;
    std::string name;      ///< strBasketName trimmed
    std::string button;    ///< strButtonName trimmed
    std::string type;      ///< chType trimmed
    std::string divisor;   ///< divisor as text
    std::string indexType; ///< index type text
    bool onButton = false; ///< intOnButton = 1
    bool operator==(const BasketRow&) const = default;
};

/// One row of the setup screen's stock list; numbers stay text as shown.
struct StockRow {
    int32_t recordNum = 0;
    std::string symbol; ///< strSym trimmed
    std::string quantity;
    std::string destination;
    std::string indexShares; ///< "0" for a null value
    bool operator==(const StockRow&) const = default;
};

/// Key of a basket row: the number followed by "_" (a key may not be a bare number).
std::string BasketRowKey(int32_t basketNum);
/// Basket number of a row key: the text before the first "_" as a 16-bit integer.
int16_t BasketNumFromKey(std::string_view key);

/// "SELECT * FROM tblBaskets ORDER BY intBasketNum", with each basket's divisor and index
/// type from the collections (a basket missing there shows divisor 0 and
/// "Price Weighted", as the lookups answer for a missing key).
std::vector<BasketRow> LoadBasketRows(Database& db, const BasketIndexStore& index);

/// "SELECT * FROM tblBasketDetails WHERE intBasketNum = n", in the order returned.
std::vector<StockRow> LoadStockRows(Database& db, int32_t basketNum);

/// Removes the basket row and then its lines.
void DeleteBasket(Database& db, int32_t basketNum);

/// Removes one stored line by its record number.
void DeleteStockLine(Database& db, int32_t recordNum);

/// Which row (0-based) to select after deleting row `deleted` from a list that now holds
/// `remaining` rows: the row that took its place, or the new last row when the deleted
/// row was the last; none when the list is empty.
std::optional<size_t> RowAfterDelete(size_t deleted, size_t remaining);

/// Stores each row's button tick (intOnButton 1 or 0), by basket name.
void WriteButtonFlags(Database& db, const std::vector<BasketRow>& baskets);

/// Save Changes: when a basket is selected (number not 0) its lines are replaced by
/// `stocks` (new record numbers in list order; all or nothing); then every row's button
/// flag is stored and both collections are rebuilt from the rows' divisor and index
/// texts. Throws RuntimeError (a divisor that is not a number) or DbError.
void SaveBasketChanges(Database& db, BasketIndexStore& index, int32_t basketNum,
                       const std::vector<StockRow>& stocks, const std::vector<BasketRow>& baskets);

} // namespace wicker
