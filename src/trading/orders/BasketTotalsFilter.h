#pragma once

#include "trading/orders/OrderRow.h"

#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// What lvBaskets shows of the day's sends, and what it leaves out.
struct ShownBasketTotals {
    std::vector<BasketListLine> lines;
    int hiddenSends = 0;
    /// Hidden sends that still have open orders: the trader must not lose sight of them.
    int hiddenOpenSends = 0;
};

/// The lines of the sends of basket `basketId` (a basket name without its dashes, as the
/// memo gives it back), or every line when there is no such basket. `rows` and `lines` are
/// parallel, as order tracking builds them.
ShownBasketTotals FilterBasketTotals(const std::vector<OrderRow>& rows,
                                     const std::vector<BasketListLine>& lines,
                                     const std::optional<std::string>& basketId);

/// One line telling what the filter hides; empty when nothing is hidden.
std::string HiddenSendsText(const ShownBasketTotals& shown);

} // namespace wicker
