#pragma once

#include <cstdint>

namespace wicker {

/// The program's rounding of basket quantities: the fraction is judged by its first
/// decimal after a round-half-even conversion, so a fraction above 0.45 rounds up and one
/// of exactly 0.45 rounds down (10.45 -> 10, 10.46 -> 11). Negative values are floored
/// first (-1.3 -> -1). With decimals the value is scaled by 10^decimals first and back after.
double RoundMath(double vNumberToRound, int16_t iDecimalPlaces);

} // namespace wicker
