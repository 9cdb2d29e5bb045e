#pragma once

#include "trading/orders/OrderTracker.h"

namespace wicker {

/// Sets the leaves quantity of every tracked order that has some left to 0, so that no
/// order counts as open any more; returns how many orders changed.
int ZeroOpenLeaves(OrderTracker& tracker);

} // namespace wicker
