#pragma once

#include "storage/Settings.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace wicker {

/// How the quote columns are shown: the decimals setting and the platform's
/// volume-in-thousands option with its threshold.
struct QuoteDisplay {
    int16_t numDecimals = 2;
    bool volThousands = false; ///< VolThousands reads as 1
    double volThreshold = 0;   ///< VolThreshold's value (0 when empty)
};

/// The display rules of the loaded settings ($QvxLast.ini's two keys and "NumDecimals").
QuoteDisplay QuoteDisplayFrom(const Settings& settings);

/// The price format of a decimals setting: "#0.00", "#0.000", "#0.0000"; empty for any
/// other value (the plain number is shown then).
std::string_view PriceFormatFor(int16_t numDecimals);

/// A price shown by the decimals setting: in its format, or the plain number when the
/// setting has none.
std::string PriceText(double price, int16_t numDecimals);

/// The "Volume" column: 0 is "0"; above the threshold with the option on, thousands and
/// "k" ("250k"); otherwise "#,###".
std::string VolumeText(int32_t volume, const QuoteDisplay& display);

} // namespace wicker
