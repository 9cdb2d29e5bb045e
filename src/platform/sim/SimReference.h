#pragma once

#include "platform/sim/SimRandom.h"

#include <string>

namespace wicker {

/// The static facts the simulator tells about a symbol: a plausible company name, a CUSIP
/// with a correct check digit, and the listing exchange (more than three letters trade on
/// NASDAQ, as the trading screen assumes for OTC symbols).
struct SimReference {
    std::string companyName;
    std::string cusip;
    std::string exchange;
};

/// Draws the facts of `symbol` from its own random stream.
SimReference MakeSimReference(const std::string& symbol, SimRandom& random);

/// The ninth character of a CUSIP from its first eight.
char CusipCheckDigit(const std::string& first8);

} // namespace wicker
