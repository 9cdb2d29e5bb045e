#pragma once

#include "trading/basket/BasketIndexes.h"
#include "trading/orders/OrderRow.h"
#include "trading/quotes/QuoteBoard.h"

#include <string>

namespace wicker {

/// The "Index" column of a sent basket: for a "Price Weighted" basket (the type of a
/// basket without one) the sum of index shares times last price over the basket's
/// distinct symbols, divided by its divisor, "#0.0000". Empty for the other index types
/// and for a basket without a usable divisor.
std::string BasketIndexText(const OrderRow& row, const BasketIndexes& indexes,
                            const QuoteBoard& quotes);

} // namespace wicker
