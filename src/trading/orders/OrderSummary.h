#pragma once

#include "trading/orders/OrderTracker.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// Columns of the order summary (frmBasketDetails), one line per order of a send.
enum OrderSummaryColumn {
    ocSymbol,
    ocSide,
    ocQuantity,
    ocPrice,
    ocFilled,
    ocLeaves,
    ocAvgPrice,
    ocStatus,
    ocDestination,
    ocClOrderId,
    OrderSummaryColumnCount
};

inline constexpr std::array<const char*, OrderSummaryColumnCount> OrderSummaryCaptions{
    "Symbol", "Side",       "Quantity", "Price",       "Filled",
    "Leaves", "Avg. Price", "Status",   "Destination", "Client Order ID"};

using OrderSummaryTexts = std::array<std::string, OrderSummaryColumnCount>;

/// One line of the summary: the order's record id (how the buttons find it) and its texts.
struct OrderSummaryLine {
    int32_t orderRecordId = 0;
    OrderSummaryTexts texts;
};

/// A send of a basket: the basket id and send number as lvBaskets shows them.
struct BasketSend {
    std::string basketName;
    int16_t basketSeq = 0;
    bool operator==(const BasketSend&) const = default;
};

/// The send of an lvBaskets line from its "Bsk. Num." and "Basket" texts; none when the
/// number is no send number.
std::optional<BasketSend> BasketSendOf(const std::string& basketNum, const std::string& basketName);

/// The texts of one order: prices with `decimals` decimals, a market order's price as "MKT"
/// ("MOO", "MOC"), no average price before a fill, the current client order id, and the
/// status the tracker gives it.
OrderSummaryTexts OrderSummaryTextsOf(const OrderUpdate& order, const std::string& clOrderId,
                                      std::string status, int decimals);

/// The lines of every order of `send`, in order of first appearance.
std::vector<OrderSummaryLine> OrderSummaryLines(const OrderTracker& tracker, const BasketSend& send,
                                                int decimals);

/// Position of the order with this record id in the tracker, or none.
std::optional<size_t> TrackedOrderIndex(const OrderTracker& tracker, int32_t orderRecordId);

} // namespace wicker
