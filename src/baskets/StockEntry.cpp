#include "baskets/StockEntry.h"

#include "common/Conversions.h"
#include "common/Text.h"
#include "storage/JetSql.h"

namespace wicker {
namespace {

void ZeroWhenEmpty(std::string& box) {
    if (box.empty()) {
        box = "0";
    }
}

} // namespace

std::optional<StockRow> AddStockToBasket(Database& db, MessageBoxes& boxes, int32_t basketNum,
                                         StockEntry& entry, StockField& focus) {
    focus = StockField::None;
    if (entry.symbol.empty()) {
        boxes.show("Please enter symbol.", 48, "Symbol");
        focus = StockField::Symbol;
        return std::nullopt;
    }
    if (entry.destination.empty()) {
        boxes.show("Please enter destination.", 48, "Destination");
        focus = StockField::Destination;
        return std::nullopt;
    }
    ZeroWhenEmpty(entry.quantity);
    ZeroWhenEmpty(entry.indexShares);
    db.ExecuteSql(AddStockSql(basketNum, entry));
    return StockRow{0, entry.symbol, std::to_string(CLng(entry.quantity)), UCase(entry.destination),
                    entry.indexShares};
}

std::string AddStockSql(int32_t basketNum, const StockEntry& entry) {
    // Two blanks before VALUES: the statement has always been written so.
    return "INSERT INTO tblBasketDetails(intBasketNum, strSym, intQty, strDest, nIndexShares) " +
           std::string(" VALUES(") + std::to_string(basketNum) + ",'" + SqlText(entry.symbol) +
           "'," + std::to_string(CLng(entry.quantity)) + ",'" + SqlText(UCase(entry.destination)) +
           "'," + SqlNumber(entry.indexShares) + ")";
}

std::string EditStockSql(const StockLineKey& old, const StockEntry& entry) {
    return "UPDATE tblBasketDetails SET " + std::string("strSym = '") + SqlText(entry.symbol) +
           "', " + "intQty = " + std::to_string(CLng(entry.quantity)) + ", " + "strDest = '" +
           SqlText(UCase(entry.destination)) + "', " +
           "nIndexShares = " + std::to_string(CLng(entry.indexShares)) + " " +
           "WHERE intBasketNum = " + std::to_string(old.basketNum) + " " + "AND strSym = '" +
           SqlText(old.symbol) + "' " + "AND intQty = " + std::to_string(old.quantity) + " " +
           "AND strDest = '" + SqlText(old.destination) + "' " +
           "AND (nIndexShares = " + std::to_string(old.indexShares) + " " +
           "OR ISNULL(nIndexShares))";
}

std::optional<StockRow> UpdateStockLine(Database& db, MessageBoxes& boxes, const StockLineKey& old,
                                        StockEntry& entry) {
    if (entry.symbol.empty()) {
        boxes.show("Please enter symbol.", 0, "Symbol");
        return std::nullopt;
    }
    ZeroWhenEmpty(entry.quantity);
    ZeroWhenEmpty(entry.indexShares);
    try {
        db.ExecuteSql(EditStockSql(old, entry));
        return StockRow{0, entry.symbol, std::to_string(CLng(entry.quantity)),
                        UCase(entry.destination), std::to_string(CLng(entry.indexShares))};
    } catch (const std::exception&) {
        boxes.show("Changes could not be saved.", 0, "Database Error");
        return std::nullopt;
    }
}

} // namespace wicker
