#include "trading/basket/BasketCalculation.h"

#include "common/Conversions.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/basket/RoundMath.h"

namespace wicker {
namespace {

constexpr const char* EmptyListTotal = "0.00";

} // namespace

int16_t UsableLot(int16_t shareRounding) {
    return shareRounding >= 1 ? shareRounding : 1;
}

std::string NotionalText(double total) {
    return FixedText(total, 2, false);
}

std::string CalcBasket(StockList& lines, const CalcFields& fields, int16_t lot,
                       std::vector<float>& lineNotional) {
    if (lines.Empty()) {
        return EmptyListTotal;
    }
    lot = UsableLot(lot);
    lineNotional.assign(static_cast<size_t>(lines.Count()), 0.0f);
    const double multiplier = Val(fields.multiplier);
    const double delta = Val(fields.delta);
    double total = 0;
    for (int row = 0; row < lines.Count(); ++row) {
        const StockLine& line = lines.Line(row);
        const double x = CDbl(line.cells[stkBasketQty]) * multiplier * delta / 100;
        const int32_t n = CLng(x);
        const float notional = static_cast<float>(n * Val(line.cells[stkLast]));
        lineNotional[static_cast<size_t>(row)] = notional;
        total += notional;
        // Lines of 100 shares or fewer are rounded to whole shares, never to lots.
        const double quantity = n <= 100 ? RoundMath(x, 0) : lot * RoundMath(x / lot, 0);
        lines.SetCell(row, stkOrderQty, QuantityText(quantity));
    }
    return NotionalText(total);
}

std::string CalcCheckedTotal(StockList& lines, std::vector<float>& lineNotional) {
    if (lines.Empty()) {
        return EmptyListTotal;
    }
    lineNotional.assign(static_cast<size_t>(lines.Count()), 0.0f);
    double total = 0;
    for (int row = 0; row < lines.Count(); ++row) {
        const StockLine& line = lines.Line(row);
        const int32_t q = CLng(Val(line.cells[stkOrderQty]));
        const double p = Val(line.cells[stkLast]);
        if (line.checked) {
            const float notional = static_cast<float>(q * p);
            lineNotional[static_cast<size_t>(row)] = notional;
            total += notional;
        }
    }
    return NotionalText(total);
}

void SetMod(StockList& lines, const std::string& modText) {
    for (int row = 0; row < lines.Count(); ++row) {
        lines.SetCell(row, stkMod, modText);
    }
}

void SetTif(StockList& lines, const std::string& tifText) {
    const std::string tif = tifText.empty() ? std::string("DAY") : tifText;
    for (int row = 0; row < lines.Count(); ++row) {
        lines.SetCell(row, stkTif, tif);
    }
}

} // namespace wicker
