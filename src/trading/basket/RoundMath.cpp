#include "trading/basket/RoundMath.h"

#include "common/Conversions.h"

#include <cmath>

namespace wicker {

double RoundMath(double vNumberToRound, int16_t iDecimalPlaces) {
    const double scale = iDecimalPlaces != 0 ? std::pow(10.0, iDecimalPlaces) : 1.0;
    const double x = iDecimalPlaces != 0 ? vNumberToRound * scale : vNumberToRound;
    const double whole = Int(x);
    // The first decimal of the fraction, converted half-to-even: 4.5 -> 4, so 0.45 stays down.
    const int16_t firstDecimal = CInt((x - whole) * 10);
    const double r = firstDecimal >= 5 ? whole + 1 : whole;
    return iDecimalPlaces != 0 ? r / scale : r;
}

} // namespace wicker
