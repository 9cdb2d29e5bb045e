#include "baskets/NewBasket.h"

#include "common/Conversions.h"
#include "common/Text.h"
#include "storage/JetSql.h"

namespace wicker {

const std::vector<std::string>& IndexTypes() {
    static const std::vector<std::string> types = {"Price Weighted", "Mkt Cap Weighted",
                                                   "Eql Dlr Weighted"};
    return types;
}

NewBasketField CheckNewBasketLine(MessageBoxes& boxes, const std::string& quantity,
                                  const std::string& destination) {
    if (!IsNumeric(quantity)) {
        boxes.show("Please enter a valid quantity.", 1, "Invalid Quantity.");
        return NewBasketField::Quantity;
    }
    if (destination.empty()) {
        boxes.show("Destination cannot be blank. Please enter a destination.", 0,
                   "Invalid Destination.");
        return NewBasketField::Destination;
    }
    return NewBasketField::None;
}

BasketLine MakeNewBasketLine(const std::string& symbol, const std::string& quantity,
                             const std::string& destination) {
    return BasketLine{symbol, quantity, UCase(destination)};
}

bool SaveNewBasket(Database& db, MessageBoxes& boxes, BasketIndexStore& index,
                   const NewBasket& basket, NewBasketField& focus) {
    focus = NewBasketField::None;
    if (basket.name.empty()) {
        boxes.show("Please type a basket name.", 0, "Missing Basket Name");
        focus = NewBasketField::BasketName;
        return false;
    }
    if (basket.button.empty()) {
        boxes.show("Please type a button name.", 0, "Missing Button Name");
        focus = NewBasketField::ButtonName;
        return false;
    }
    const std::string name = SqlText(basket.name);
    if (!db.OpenRecordset("SELECT * FROM tblBaskets WHERE strBasketName = '" + name + "'")
             .IsEOF()) {
        boxes.show("There is an existing basket with this name.\nPlease choose a different "
                   "basket name.",
                   0, "Error loading basket.");
        focus = NewBasketField::BasketName;
        return false;
    }
    const double divisor = CDbl(basket.divisorText);

    Database::Transaction tx(db);
    db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,chType) VALUES('" + name +
                  "','" + SqlText(basket.button) + "','B')");
    const int16_t number =
        db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + name + "'")
            .Field("intBasketNum")
            .toInt();
    for (const auto& line : basket.lines) {
        db.ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
                      std::to_string(number) + ",'" + SqlText(line.symbol) + "'," +
                      SqlNumber(line.quantity) + ",'" + SqlText(line.destination) + "')");
    }
    tx.commit();

    index.setDivisor(basket.name, divisor);
    index.setIndexType(basket.name, basket.indexType);
    return true;
}

} // namespace wicker
