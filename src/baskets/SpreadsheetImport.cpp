#include "baskets/SpreadsheetImport.h"

#include "baskets/OrdinaryError.h"
#include "storage/JetSql.h"

namespace wicker {
namespace {

const char* const kImportErrorTitle = "Basket Import Error";

SpreadsheetImportResult Refused(std::string text, std::string title, ImportFocus focus) {
    SpreadsheetImportResult result;
    result.refusal = std::move(text);
    result.title = std::move(title);
    result.focus = focus;
    return result;
}

std::string DetailInsert(int32_t basketNum, const SpreadsheetLine& line) {
    return "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest,nIndexShares) "
           "VALUES(" +
           std::to_string(basketNum) + ",'" + SqlText(line.symbol) + "'," +
           std::to_string(line.quantity) + ",'" + SqlText(line.destination) + "'," +
           (line.indexShares ? std::to_string(*line.indexShares) : std::string("NULL")) + ")";
}

} // namespace

SpreadsheetImportResult StoreSpreadsheetBasket(Database& db, const SpreadsheetBasket& basket,
                                               const std::string& basketName,
                                               const std::string& buttonName) {
    if (basketName.empty()) {
        return Refused("Please enter a name for this basket.", kImportErrorTitle,
                       ImportFocus::BasketName);
    }
    if (buttonName.empty()) {
        return Refused("Please enter a button name for this basket.", kImportErrorTitle,
                       ImportFocus::ButtonName);
    }
    if (!basket.storable()) {
        return Refused("Nothing was imported: the file has problems.\n" +
                           SpreadsheetProblemsText(basket, 20),
                       kImportErrorTitle, ImportFocus::FileName);
    }
    try {
        const std::string name = SqlText(basketName);
        Database::Transaction tx(db);
        if (!db.OpenRecordset("SELECT * FROM tblBaskets WHERE strBasketName = '" + name + "'")
                 .IsEOF()) {
            return Refused("There is an existing basket with this name.\nPlease choose a "
                           "different basket name.",
                           "Error loading basket.", ImportFocus::BasketName);
        }
        db.ExecuteSql(
            "INSERT INTO tblBaskets(strBasketName, strButtonName, intOnButton, chType) VALUES('" +
            name + "','" + SqlText(buttonName) + "',0,'B')");
        auto rs = db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" +
                                   name + "'");
        if (rs.IsEOF()) {
            return Refused("The new basket's number could not be read back. Nothing was imported.",
                           kImportErrorTitle, ImportFocus::None);
        }
        SpreadsheetImportResult result;
        result.basketNum = rs.Field("intBasketNum").toLong();
        for (const auto& line : basket.lines) {
            db.ExecuteSql(DetailInsert(result.basketNum, line));
            if (line.indexShares) {
                result.indexShares[line.symbol] = *line.indexShares;
            }
        }
        tx.commit();
        return result;
    } catch (const std::exception& e) {
        return Refused("Nothing was imported.\n" + OrdinaryErrorText(e), kImportErrorTitle,
                       ImportFocus::None);
    }
}

} // namespace wicker
