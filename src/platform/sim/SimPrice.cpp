#include "platform/sim/SimPrice.h"

#include <cmath>

namespace wicker {

SimUnits SimTickAt(SimUnits price) {
    return price >= kSimUnitsPerDollar ? 100 : 1;
}

SimUnits SimSnapDown(SimUnits price) {
    const SimUnits tick = SimTickAt(price);
    return price - price % tick;
}

SimUnits SimSnapUp(SimUnits price) {
    const SimUnits down = SimSnapDown(price);
    return down == price ? price : down + SimTickAt(down);
}

double SimToDollars(SimUnits price) {
    return static_cast<double>(price) / static_cast<double>(kSimUnitsPerDollar);
}

SimUnits SimLimitUnits(double dollars, bool buy) {
    constexpr double kMaxDollars = 1.0e9;
    if (!std::isfinite(dollars) || dollars <= 0 || dollars > kMaxDollars) {
        return 0;
    }
    // The tolerance keeps 10.015 from turning into 10.0149999 on the way.
    const double units = dollars * static_cast<double>(kSimUnitsPerDollar);
    return static_cast<SimUnits>(buy ? std::floor(units + 1e-6) : std::ceil(units - 1e-6));
}

} // namespace wicker
