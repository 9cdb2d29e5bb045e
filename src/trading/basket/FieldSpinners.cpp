#include "trading/basket/FieldSpinners.h"

#include "baskets/MainLineEdits.h"
#include "common/Conversions.h"

namespace wicker {

std::string SpinPercent(std::string_view percentText, bool up) {
    if (!IsNumeric(percentText)) {
        return "1";
    }
    return NumberText(CDbl(percentText) + (up ? 1 : -1));
}

std::string SpinDelta(std::string_view deltaText, bool up) {
    if (!IsNumeric(deltaText)) {
        return "100";
    }
    double value = CDbl(deltaText) + (up ? 1 : -1);
    if (value < 0) {
        value = 0;
    } else if (value > 100) {
        value = 100;
    }
    return NumberText(value);
}

// The same step as the modifier box of the edit-item dialog.
std::string SpinMod(std::string_view modText, bool up) {
    return StepModifier(modText, up);
}

} // namespace wicker
