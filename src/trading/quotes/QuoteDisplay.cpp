#include "trading/quotes/QuoteDisplay.h"

#include "common/Conversions.h"
#include "trading/basket/DisplayNumbers.h"

namespace wicker {

QuoteDisplay QuoteDisplayFrom(const Settings& settings) {
    QuoteDisplay d;
    d.numDecimals = settings.numDecimals;
    d.volThousands = Val(settings.volThousands) == 1;
    d.volThreshold = Val(settings.volThreshold);
    return d;
}

std::string_view PriceFormatFor(int16_t numDecimals) {
    switch (numDecimals) {
    case 2:
        return "#0.00";
    case 3:
        return "#0.000";
    case 4:
        return "#0.0000";
    default:
        return {};
    }
}

std::string PriceText(double price, int16_t numDecimals) {
    return PriceFormatFor(numDecimals).empty() ? NumberText(price) : FixedText(price, numDecimals);
}

std::string VolumeText(int32_t volume, const QuoteDisplay& display) {
    if (volume == 0) {
        return "0";
    }
    if (display.volThousands && volume > display.volThreshold) {
        return ThousandsText(volume / 1000.0) + "k";
    }
    return ThousandsText(volume);
}

} // namespace wicker
