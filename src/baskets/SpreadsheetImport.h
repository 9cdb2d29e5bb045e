#pragma once

#include "baskets/BasketImport.h"
#include "baskets/SpreadsheetBasket.h"
#include "storage/Database.h"

#include <cstdint>
#include <map>
#include <string>

namespace wicker {

/// The outcome of storing a checked spreadsheet basket.
struct SpreadsheetImportResult {
    int32_t basketNum = 0; ///< 0 when nothing was stored
    std::string refusal;   ///< why nothing was stored; empty on success
    std::string title;     ///< the refusal's message box title
    ImportFocus focus = ImportFocus::None;
    std::map<std::string, int32_t> indexShares; ///< by symbol, a later line replacing an earlier
};

/// Stores the basket row (never on a button) and every line with its index shares in one
/// transaction: all of it or, on any refusal or database error, nothing. Refuses an empty
/// basket or button name, a basket name in use, and a basket that is not storable.
SpreadsheetImportResult StoreSpreadsheetBasket(Database& db, const SpreadsheetBasket& basket,
                                               const std::string& basketName,
                                               const std::string& buttonName);

} // namespace wicker
