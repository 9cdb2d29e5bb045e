#include "baskets/MainLineEdits.h"

#include "common/Conversions.h"
#include "storage/JetSql.h"

namespace wicker {

const std::vector<std::string>& EditItemTifs() {
    static const std::vector<std::string> tifs = {"AEX", "CHXP", "DAY", "GTC", "GTX", "FOK",
                                                  "IOC", "OPG",  "OS",  "NOW", "ETX"};
    return tifs;
}

std::string StepModifier(std::string_view modifierText, bool up) {
    if (!IsNumeric(modifierText)) {
        return "0";
    }
    double value = CDbl(modifierText) + (up ? 0.01 : -0.01);
    if (value > -0.01 && value < 0.01) {
        value = 0;
    }
    return NumberText(value);
}

std::string AddMainLineSql(int32_t basketNum, const std::string& symbol,
                           const std::string& quantity, const std::string& destination) {
    return "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
           std::to_string(basketNum) + ",'" + SqlText(symbol) + "'," + SqlNumber(quantity) + ",'" +
           SqlText(destination) + "')";
}

std::string EditItemSql(const MainLineEdit& e) {
    std::string sql = "UPDATE tblBasketDetails SET " + std::string("strSym = '") +
                      SqlText(e.symbol) + "', " + "intQty = " + SqlNumber(e.quantity) + ", " +
                      "strDest = '" + SqlText(e.destination) + "'";
    if (e.indexShares) {
        sql += ", nIndexShares = " + SqlNumber(*e.indexShares);
    }
    sql += " " + std::string("WHERE intBasketNum = ") + std::to_string(e.basketNum) + " " +
           "AND intRecordNum = " + std::to_string(e.recordNum) + " " + "AND strSym = '" +
           SqlText(e.oldSymbol) + "' " + "AND intQty = " + SqlNumber(e.oldQuantity) + " " +
           "AND strDest = '" + SqlText(e.oldDestination) + "'";
    return sql;
}

} // namespace wicker
