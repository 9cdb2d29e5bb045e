#include "trading/orders/OrderRow.h"

#include "common/Formats.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/orders/OrderUpdate.h"

namespace wicker {

void OrderRow::Add(const OrderUpdate& order) {
    ++m_nTotalOrders;
    if (order.m_nLvsQuantity > 0) {
        ++m_nOpenOrders;
    }
    m_nTotalQty += order.m_nQuantity;
    m_nOpenQty += order.m_nLvsQuantity;
    m_nFilledQty += order.m_nCumExecQuantity;
    const double dollars = static_cast<double>(order.m_nCumExecQuantity) * order.m_fAvgExecPrice;
    if (IsBuySide(order.m_strSide)) {
        m_fDlrsBot += dollars;
    } else {
        m_fDlrsSld += dollars;
    }
    m_strSide = order.m_strSide;
    m_cOrders.push_back(&order);
}

double OrderRow::PercentFilled() const {
    if (m_nTotalQty == 0) {
        return 100;
    }
    return static_cast<double>(m_nFilledQty) / static_cast<double>(m_nTotalQty) * 100;
}

bool IsBuySide(const std::string& side) {
    return side == "B" || side == "M" || side == "C";
}

std::string SideDisplayText(const std::string& side) {
    if (side == "B") {
        return "Buy";
    }
    if (side == "S") {
        return "Sell";
    }
    if (side == "T") {
        return "Short";
    }
    return side;
}

BasketListLine BasketListTexts(const OrderRow& row, const std::string& indexText) {
    BasketListLine line;
    line[colBasketNum] = std::to_string(row.m_nBasketNum);
    line[colBasket] = row.m_strBasketName;
    line[colTime] = row.m_strTime;
    line[colTotalOrders] = std::to_string(row.m_nTotalOrders);
    line[colOpenOrders] = std::to_string(row.m_nOpenOrders);
    line[colTotalQty] = std::to_string(row.m_nTotalQty);
    line[colOpenQty] = std::to_string(row.m_nOpenQty);
    line[colFilledQty] = std::to_string(row.m_nFilledQty);
    line[colDlrsBot] = DollarText(row.m_fDlrsBot);
    line[colDlrsSld] = DollarText(row.m_fDlrsSld);
    line[colPercentFilled] = Format(row.m_fPercentFill, "#0.00");
    line[colIndex] = indexText;
    line[colSide] = SideDisplayText(row.m_strSide);
    return line;
}

} // namespace wicker
