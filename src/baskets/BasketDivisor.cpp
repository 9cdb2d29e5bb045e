#include "baskets/BasketDivisor.h"

#include "common/Conversions.h"

namespace wicker {

std::string DivisorTextOrOne(std::string_view text) {
    if (text.empty() || text == "0") {
        return "1";
    }
    return std::string(text);
}

double StoreEditedDivisor(BasketIndexStore& index, const std::string& basketName,
                          std::string_view divisorText, const std::string& indexType) {
    const double divisor = CDbl(DivisorTextOrOne(divisorText));
    index.setDivisor(basketName, divisor);
    index.setIndexType(basketName, indexType);
    return divisor;
}

} // namespace wicker
