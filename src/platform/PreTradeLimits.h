#pragma once

#include "common/Result.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace wicker {

/// The platform's own checks of an order beyond its fields, from basket.ini section
/// "Platform": "EnabledDestinations" (comma list; empty = every destination) and
/// "MaxOrderNotional" (dollars per order; 0 = no limit).
struct PreTradeLimits {
    std::set<std::string> enabledDestinations; ///< upper case
    double maxOrderNotional = 0;
};

/// -7 when the destination is not enabled, -8 when quantity x price exceeds the limit, else
/// 0. `price` is the limit price, or for a market order the last known price; 0 when none
/// is known, which refuses the order under a limit: the exposure cannot be bounded.
int32_t CheckPreTradeLimits(const PreTradeLimits& limits, std::string_view destination,
                            int32_t quantity, double price);

/// Reads the two keys through `key` (nothing when absent). An error names a bad value.
Result<PreTradeLimits>
ReadPreTradeLimits(const std::function<std::optional<std::string>(std::string_view)>& key);

} // namespace wicker
