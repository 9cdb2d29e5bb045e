#pragma once

#include "platform/OrderTicket.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace wicker {

/// "B", "S" or "T" for a side the platform takes ("B" and "BUY" buy, "S" sells, "T"
/// shorts); empty for any other text.
std::string SimSideCode(std::string_view side);

/// Market (1), market-on-close (2) and limit (5).
bool SimPriceTypeValid(int32_t priceType);

/// The one-letter TIF codes the trading screen sends: D G X F I O 1 N E A C.
bool SimTifValid(std::string_view tif);

/// The checks that need nothing but the order, in the order of their codes: -1 account,
/// -2 side, -3 quantity, -4 symbol, -5 price type (a limit order also needs a positive
/// price), -6 TIF; 0 when it passes.
int32_t CheckSimOrderFields(const OrderTicket& ticket);

/// What a broker refuses after taking an order: a missing or unknown destination (one of
/// `enabled` when that is not empty, else a US venue the broker routes to), or a symbol
/// not shaped like a ticker (1 to 5 capitals or digits led by a capital, an optional class
/// suffix such as ".B").
/// The reject's words and code; an empty text when it passes.
struct SimRefusal {
    int32_t code = 0;
    std::string text;
};
SimRefusal SimBrokerRefusal(const OrderTicket& ticket, const std::set<std::string>& enabled,
                            bool routes = true);

} // namespace wicker
