#include "trading/orders/BasketTotalsFilter.h"

#include <stdexcept>

namespace wicker {

ShownBasketTotals FilterBasketTotals(const std::vector<OrderRow>& rows,
                                     const std::vector<BasketListLine>& lines,
                                     const std::optional<std::string>& basketId) {
    if (rows.size() != lines.size()) {
        throw std::logic_error("Basket totals rows and lines differ in number");
    }
    ShownBasketTotals shown;
    if (!basketId) {
        shown.lines = lines;
        return shown;
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].m_strBasketName == *basketId) {
            shown.lines.push_back(lines[i]);
        } else {
            ++shown.hiddenSends;
            shown.hiddenOpenSends += rows[i].m_nOpenOrders > 0;
        }
    }
    return shown;
}

std::string HiddenSendsText(const ShownBasketTotals& shown) {
    if (shown.hiddenSends == 0) {
        return {};
    }
    std::string text =
        std::to_string(shown.hiddenSends) +
        (shown.hiddenSends == 1 ? " send of other baskets is" : " sends of other baskets are") +
        " not shown";
    if (shown.hiddenOpenSends > 0) {
        text += ", " + std::to_string(shown.hiddenOpenSends) + " of them with open orders";
    }
    return text + " (View > General Settings... > show all baskets).";
}

} // namespace wicker
