#include "trading/orders/OrderSummary.h"

#include "common/Conversions.h"
#include "common/Formats.h"

#include <cmath>
#include <limits>
#include <utility>

namespace wicker {

std::optional<BasketSend> BasketSendOf(const std::string& basketNum,
                                       const std::string& basketName) {
    if (!IsNumeric(basketNum)) {
        return std::nullopt;
    }
    const double n = Val(basketNum);
    if (n != std::floor(n) || n < std::numeric_limits<int16_t>::min() ||
        n > std::numeric_limits<int16_t>::max()) {
        return std::nullopt;
    }
    return BasketSend{basketName, static_cast<int16_t>(n)};
}

namespace {

std::string PriceText(const OrderUpdate& order, int decimals) {
    switch (order.m_nPriceType) {
    case 1:
        return order.m_bMoo ? "MOO" : "MKT";
    case 2:
        return "MOC";
    default:
        return FormatDecimals(order.m_fLmtPrice, decimals);
    }
}

} // namespace

OrderSummaryTexts OrderSummaryTextsOf(const OrderUpdate& order, const std::string& clOrderId,
                                      std::string status, int decimals) {
    OrderSummaryTexts t;
    t[ocSymbol] = order.m_strInstrument;
    t[ocSide] = SideDisplayText(order.m_strSide);
    t[ocQuantity] = std::to_string(order.m_nQuantity);
    t[ocPrice] = PriceText(order, decimals);
    t[ocFilled] = std::to_string(order.m_nCumExecQuantity);
    t[ocLeaves] = std::to_string(order.m_nLvsQuantity);
    t[ocAvgPrice] =
        order.m_nCumExecQuantity > 0 ? FormatDecimals(order.m_fAvgExecPrice, decimals) : "";
    t[ocStatus] = std::move(status);
    t[ocDestination] = order.m_strDestination;
    t[ocClOrderId] = clOrderId;
    return t;
}

std::vector<OrderSummaryLine> OrderSummaryLines(const OrderTracker& tracker, const BasketSend& send,
                                                int decimals) {
    std::vector<OrderSummaryLine> lines;
    const auto& orders = tracker.Orders();
    for (size_t i = 0; i < orders.size(); ++i) {
        const OrderUpdate& order = orders[i];
        if (order.m_nBasketSeq == send.basketSeq && order.m_strBasketId == send.basketName) {
            lines.push_back(OrderSummaryLine{order.m_nOrderRecordId,
                                             OrderSummaryTextsOf(order, tracker.CurrentClOrderId(i),
                                                                 tracker.StatusText(i), decimals)});
        }
    }
    return lines;
}

std::optional<size_t> TrackedOrderIndex(const OrderTracker& tracker, int32_t orderRecordId) {
    const auto& orders = tracker.Orders();
    for (size_t i = 0; i < orders.size(); ++i) {
        if (orders[i].m_nOrderRecordId == orderRecordId) {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace wicker
