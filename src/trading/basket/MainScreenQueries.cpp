#include "trading/basket/MainScreenQueries.h"

#include "storage/JetSql.h"

namespace wicker {

AccountList ReadAccounts(Database& db) {
    AccountList list;
    Recordset rs = db.OpenRecordset("SELECT * FROM tblAccount ORDER BY strAcct");
    for (; !rs.IsEOF(); rs.MoveNext()) {
        std::string account = rs.Field("strAcct").text();
        const DbValue& isDefault = rs.Field("lngDefault");
        if (!isDefault.isNull() && isDefault.toDouble() == 1) {
            list.text = account;
        }
        list.accounts.push_back(std::move(account));
    }
    return list;
}

std::vector<std::string> ReadBasketNames(Database& db) {
    std::vector<std::string> names;
    Recordset rs = db.OpenRecordset("SELECT strBasketName FROM tblBaskets ORDER BY strBasketName");
    for (; !rs.IsEOF(); rs.MoveNext()) {
        names.push_back(rs.Field("strBasketName").text());
    }
    return names;
}

std::array<QuickLoadButton, QuickLoadButtonCount> ReadQuickLoadButtons(Database& db) {
    std::array<QuickLoadButton, QuickLoadButtonCount> buttons{};
    Recordset rs = db.OpenRecordset(
        "SELECT strBasketName, strButtonName, intBasketNum FROM tblBaskets WHERE intOnButton = 1");
    for (size_t i = 0; i < buttons.size() && !rs.IsEOF(); ++i, rs.MoveNext()) {
        buttons[i].caption = rs.Field("strButtonName").text();
        buttons[i].basketName = rs.Field("strBasketName").text();
        buttons[i].basketNum = rs.Field("intBasketNum").toLong();
    }
    return buttons;
}

std::optional<int32_t> ReadBasketNum(Database& db, const std::string& basketName) {
    Recordset rs = db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" +
                                    SqlText(basketName) + "'");
    if (rs.IsEOF()) {
        return std::nullopt;
    }
    return rs.Field("intBasketNum").toLong();
}

std::vector<StockLine> ReadBasketLines(Database& db, int32_t basketNum) {
    std::vector<StockLine> lines;
    Recordset rs = db.OpenRecordset(
        "SELECT intRecordNum, strSym, intQty, strDest FROM tblBasketDetails WHERE intBasketNum = " +
        std::to_string(basketNum));
    lines.reserve(rs.RowCount());
    for (; !rs.IsEOF(); rs.MoveNext()) {
        StockLine line;
        line.cells[stkSymbol] = rs.Field("strSym").text();
        line.cells[stkBasketQty] = rs.Field("intQty").text();
        line.cells[stkDest] = rs.Field("strDest").text();
        line.checked = true;
        line.recordNum = rs.Field("intRecordNum").toLong();
        lines.push_back(std::move(line));
    }
    return lines;
}

const std::vector<std::string>& TifChoices() {
    static const std::vector<std::string> tifs{"DAY", "OPG", "FOK", "IOC", "GTC",
                                               "GTX", "EXT", "OS",  "AEX", "NOW"};
    return tifs;
}

std::array<bool, OrderButtonCount> OrderButtonStates(bool priceButtons) {
    std::array<bool, OrderButtonCount> states{};
    for (int i = 0; i < OrderButtonCount; ++i) {
        states[static_cast<size_t>(i)] = i <= 17 ? !priceButtons : priceButtons;
    }
    return states;
}

} // namespace wicker
