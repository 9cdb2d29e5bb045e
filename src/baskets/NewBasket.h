#pragma once

#include "baskets/BasketIndexStore.h"
#include "common/MessageBox.h"
#include "storage/BasketDatabase.h"
#include "storage/Database.h"

#include <string>
#include <vector>

namespace wicker {

/// The box a refused action puts the focus in.
enum class NewBasketField { None, BasketName, ButtonName, Quantity, Destination };

/// The three index types, in the order the combo offers them; the first is the default.
const std::vector<std::string>& IndexTypes();

/// Checks a stock line about to be added to a new basket: the quantity must pass the
/// numeric test, the destination must not be empty (the symbol is not checked). Shows
/// the message of the first failure; returns its box, or None when the line is fine.
NewBasketField CheckNewBasketLine(MessageBoxes& boxes, const std::string& quantity,
                                  const std::string& destination);

/// The line as the list keeps it: symbol and quantity as typed, destination upper case.
BasketLine MakeNewBasketLine(const std::string& symbol, const std::string& quantity,
                             const std::string& destination);

/// Everything the new-basket dialog stores.
struct NewBasket {
    std::string name;
    std::string button;
    std::string divisorText;
    std::string indexType;
    std::vector<BasketLine> lines;
};

/// Validates (names, duplicate name) and stores the basket ("B" type, lines without
/// index shares), then records its divisor and index type under its name. Refusals are
/// shown and named in `focus`. The rows are written all or nothing: a divisor that is
/// not a number (Type mismatch) or a line the database refuses throws, storing nothing.
/// Returns true when stored.
bool SaveNewBasket(Database& db, MessageBoxes& boxes, BasketIndexStore& index,
                   const NewBasket& basket, NewBasketField& focus);

} // namespace wicker
