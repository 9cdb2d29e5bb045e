#pragma once

#include "platform/PreTradeLimits.h"

#include <cstdint>
#include <set>
#include <string>

namespace wicker {

/// The knobs of the simulated market and broker.
struct SimSettings {
    uint64_t seed = 1;            ///< same seed, same quotes
    double updatesPerSecond = 4;  ///< quote updates per registered symbol, on average
    int32_t fillDelayMs = 3000;   ///< market-on-open / -close orders fill this long after
    int32_t clipSize = 1000;      ///< larger orders fill in clips of this many; 0 = at once
    std::set<std::string> halted; ///< upper case; their orders are rejected after acceptance
    PreTradeLimits limits;        ///< enabled destinations (-7) and notional per order (-8)
    /// A broker routes: an order must name a destination it knows. A venue (wicker-exchange)
    /// is the destination itself and takes orders that name none.
    bool routes = true;
};

/// Reason code of the reject an order for a halted symbol gets.
inline constexpr int32_t kSimRejectHalted = 1;
/// Reason code of the reject a cancel of a done order gets (FIX's CxlRejReason "too late").
inline constexpr int32_t kSimRejectTooLateToCancel = 0;
/// Reason code of the reject of an order without a destination the broker routes to.
inline constexpr int32_t kSimRejectDestination = 2;
/// Reason code of the reject of an order whose symbol is not shaped like a ticker.
inline constexpr int32_t kSimRejectSymbol = 3;

} // namespace wicker
