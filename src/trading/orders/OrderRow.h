#pragma once

#include "common/Clock.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace wicker {

class OrderUpdate;

/// Number of columns of lvBaskets.
inline constexpr int BasketListColumnCount = 13;

/// Column captions of lvBaskets, in order.
inline constexpr std::array<const char*, BasketListColumnCount> BasketListCaptions{
    "Bsk. Num.", "Basket",   "Time",       "Tot. Orders", "Open Orders",
    "Total Qty", "Open Qty", "Filled Qty", "Total $ Bot", "Total $ Sld",
    "% Filled",  "Index",    "Side"};

/// Column positions of lvBaskets.
enum BasketListColumn {
    colBasketNum,
    colBasket,
    colTime,
    colTotalOrders,
    colOpenOrders,
    colTotalQty,
    colOpenQty,
    colFilledQty,
    colDlrsBot,
    colDlrsSld,
    colPercentFilled,
    colIndex,
    colSide,
};

/// The texts of one lvBaskets line, by BasketListColumn.
using BasketListLine = std::array<std::string, BasketListColumnCount>;

/// One sent basket (basket id and send number) with its totals: one line of lvBaskets.
struct OrderRow {
    int16_t m_nBasketNum = 0; ///< send number
    std::string m_strBasketName;
    std::string m_strTime;    ///< when the basket's first order was seen, "hh:mm:ss AM/PM"
    std::string m_strListKey; ///< "Basket " and the send number
    int32_t m_nTotalOrders = 0;
    int32_t m_nOpenOrders = 0;
    int64_t m_nTotalQty = 0;
    int64_t m_nOpenQty = 0;
    int64_t m_nFilledQty = 0;
    double m_fDlrsBot = 0;
    double m_fDlrsSld = 0;
    double m_fPercentFill = 0;
    std::string m_strSide; ///< side code of the last order of the basket seen
    /// The basket's orders, owned by the order tracker, in order of first appearance.
    std::vector<const OrderUpdate*> m_cOrders;

    /// Adds one order to the counters and the dollar totals.
    void Add(const OrderUpdate& order);
    /// Filled share of the total quantity in percent; 100 when the total is 0.
    double PercentFilled() const;
};

/// True for the side codes that buy: "B", "M" and "C". Everything else sells.
bool IsBuySide(const std::string& side);

/// "Buy", "Sell" or "Short" for the codes B, S and T; any other code as it stands.
std::string SideDisplayText(const std::string& side);

/// The 13 texts of the row's lvBaskets line; `indexText` goes into the "Index" column.
BasketListLine BasketListTexts(const OrderRow& row, const std::string& indexText);

} // namespace wicker
