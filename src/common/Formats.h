#pragma once

#include "common/Clock.h"

#include <string>
#include <string_view>

namespace wicker {

/// Formats a number with one of the patterns the screens use: "#0.00", "#0.000",
/// "#0.0000", "#.00" (no leading zero: 0 shows ".00"), "#,###" (thousands
/// separators, 0 shows as an empty text). Rounding is half away from zero on the
/// number's 15-digit decimal form, as the display always did.
/// Throws std::invalid_argument for a pattern it does not know.
std::string Format(double value, std::string_view pattern);

/// "#0.00" with the given number of decimals (0 to 8): "#0", "#0.0", "#0.00", ...
std::string FormatDecimals(double value, int decimals);

/// "hh:mm:ss AM/PM", for example "03:04:05 PM".
std::string FormatTime12(const LocalDateTime& t);

/// "yyyymmdd", for example "20261122".
std::string FormatYyyymmdd(const LocalDateTime& t);

} // namespace wicker
