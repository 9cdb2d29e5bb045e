#include "trading/basket/BasketIndexValue.h"

#include "common/Formats.h"
#include "trading/orders/OrderUpdate.h"

#include <cmath>
#include <unordered_set>

namespace wicker {

std::string BasketIndexText(const OrderRow& row, const BasketIndexes& indexes,
                            const QuoteBoard& quotes) {
    std::string type;
    indexes.GetIndexType(row.m_strBasketName, type);
    if (type != "Price Weighted") {
        return {};
    }
    double divisor = 0;
    indexes.GetDivisor(row.m_strBasketName, divisor);
    if (divisor == 0 || !std::isfinite(divisor)) {
        return {};
    }
    const std::optional<int32_t> basketNum = indexes.BasketNumOf(row.m_strBasketName);
    double sum = 0;
    std::unordered_set<std::string> seen;
    for (const OrderUpdate* order : row.m_cOrders) {
        const std::string& symbol = order->m_strInstrument;
        if (!seen.insert(SymbolKeyOf(symbol)).second) {
            continue;
        }
        int32_t shares = 0;
        if (basketNum) {
            indexes.GetIndexShares(*basketNum, symbol, shares);
        }
        const Quote* quote = quotes.Latest(symbol);
        if (shares != 0 && quote != nullptr) {
            sum += shares * quote->m_fLastPrice;
        }
    }
    return Format(sum / divisor, "#0.0000");
}

} // namespace wicker
