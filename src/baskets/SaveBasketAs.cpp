#include "baskets/SaveBasketAs.h"

#include "storage/JetSql.h"

namespace wicker {

std::optional<int16_t> SaveBasketAs(Database& db, MessageBoxes& boxes, const std::string& name,
                                    const std::string& button,
                                    const std::vector<BasketLine>& lines) {
    if (name.empty() || button.empty()) {
        boxes.show("You must enter both a basket name and a button name.", 64, "");
        return std::nullopt;
    }
    const std::string n = SqlText(name);
    const std::string b = SqlText(button);
    if (!db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + n +
                          "' Or strButtonName = '" + b + "'")
             .IsEOF()) {
        boxes.show("The basket name or button name you have entered is already in use.", 64, "");
        return std::nullopt;
    }
    Database::Transaction tx(db);
    db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) " +
                  std::string("VALUES('") + n + "','" + b + "'," + "0" + ",'B')");
    const int16_t number =
        db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + n + "'")
            .Field("intBasketNum")
            .toInt();
    for (const auto& line : lines) {
        db.ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) " +
                      std::string("VALUES(") + std::to_string(number) + ",'" +
                      SqlText(line.symbol) + "'," + SqlNumber(line.quantity) + ",'" +
                      SqlText(line.destination) + "')");
    }
    tx.commit();
    return number;
}

} // namespace wicker
