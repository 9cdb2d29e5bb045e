#pragma once

#include "baskets/BasketSetupStore.h"
#include "common/MessageBox.h"
#include "storage/Database.h"

#include <cstdint>
#include <optional>
#include <string>

namespace wicker {

/// The boxes of a stock-line dialog, as typed.
struct StockEntry {
    std::string symbol;
    std::string quantity;
    std::string destination;
    std::string indexShares;
};

/// The box a refused action puts the focus in.
enum class StockField { None, Symbol, Destination };

/// Add-stock dialog: refuses an empty symbol or destination (message, `focus`); sets an
/// empty quantity or index-shares box to "0" in `entry`, as the dialog shows it; stores
/// the line in basket `basketNum` with its quantity as a 32-bit integer and its
/// destination upper case, and returns the row for the setup screen's list (record
/// number 0: the list is read again when the dialog closes). A quantity that is not a
/// number or a statement the database refuses throws (RuntimeError, DbError).
std::optional<StockRow> AddStockToBasket(Database& db, MessageBoxes& boxes, int32_t basketNum,
                                         StockEntry& entry, StockField& focus);

/// INSERT of the add-stock dialog for a checked entry: quantity as a 32-bit integer,
/// destination upper case, index shares as typed. Throws on values it cannot hold.
std::string AddStockSql(int32_t basketNum, const StockEntry& entry);

/// A stored line as the edit-stock dialog received it.
struct StockLineKey {
    int32_t basketNum = 0;
    std::string symbol;
    int32_t quantity = 0;
    std::string destination;
    int32_t indexShares = 0;
};

/// The UPDATE of the edit-stock dialog. The row is found by its old values, not its
/// record number, so every identical line of the basket changes, and a line whose index
/// shares are null (shown as 0) is found too. Throws on a quantity or index shares that
/// are not numbers, or on a value the statement cannot hold.
std::string EditStockSql(const StockLineKey& old, const StockEntry& entry);

/// Edit-stock dialog: refuses an empty symbol; sets empty quantity or index-shares boxes
/// to "0" in `entry`; runs EditStockSql. Any failure shows "Changes could not be saved."
/// ("Database Error") and returns nothing; on success returns the changed row's texts.
std::optional<StockRow> UpdateStockLine(Database& db, MessageBoxes& boxes, const StockLineKey& old,
                                        StockEntry& entry);

} // namespace wicker
