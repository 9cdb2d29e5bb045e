#pragma once

#include <cstdint>

namespace wicker {

/// The simulator keeps prices as whole ten-thousandths of a dollar, so that every price it
/// quotes lies exactly on its grid and fills add up without rounding drift.
using SimUnits = int64_t;
inline constexpr SimUnits kSimUnitsPerDollar = 10000;

/// The price increment at a price level: a penny from one dollar up, 0.0001 below.
SimUnits SimTickAt(SimUnits price);
/// Rounds to the grid of its level: down (for a buyer) or up (for a seller).
SimUnits SimSnapDown(SimUnits price);
SimUnits SimSnapUp(SimUnits price);

double SimToDollars(SimUnits price);
/// A limit price in units, never more generous than the order allows: down for a buy, up
/// for a sell. Nothing sensible (<= 0, not finite, too large) gives 0.
SimUnits SimLimitUnits(double dollars, bool buy);

} // namespace wicker
