#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The new terms of an open order, for QVXOrderMaintenance::ReplaceOrder. Everything an
/// order was sent with and not named here (account, side, symbol, destination, TIF, max
/// floor, memo) stays as it was.
struct QVXOrderChange {
    /// The client order id the order carries once replaced. Empty: the platform makes one
    /// from the current id ("<id>-R<n>").
    std::string newClOrderID;
    /// The new total order quantity, fills included; it must stay above what is filled.
    int32_t quantity = 0;
    /// 1 market (market-on-open with the order's TIF "O"), 2 market-on-close, 5 limit.
    int32_t priceType = 0;
    /// The new limit price; only read for a limit (price type 5), where it must be > 0.
    double lmtPrice = 0;
};

/// Result of ReplaceOrder for an order that cannot be changed: unknown, already done
/// (filled, cancelled, rejected), a change of it still unanswered, or a new client order
/// id that is already in use.
inline constexpr int32_t kReplaceOrderNotOpen = -26;

/// The platform's order-maintenance object, as the cancel menus and the order summary use it.
class QVXOrderMaintenance {
public:
    virtual ~QVXOrderMaintenance() = default;
    /// Asks the platform to cancel the order with this client order id and record id; the
    /// third and fourth arguments are always empty. The answer comes as order events.
    virtual void CancelOrder(const std::string& clOrderId, int32_t orderRecordId,
                             const std::string& third, const std::string& fourth) = 0;
    /// Changes quantity, price type and price of one open order in one step at the broker
    /// (never cancel-then-new, which can overfill when a fill races the cancel). The order
    /// is found by its record id, as for CancelOrder; `clOrderId` may be any id the order
    /// has carried. Returns 0 when the request is on its way, else a refusal: -3 quantity
    /// (<= 0, or not above the filled quantity), -5 price type (or a limit without a
    /// positive price), -8 exposure limit, -16 offline, kReplaceOrderNotOpen (-26).
    /// The outcome comes as order updates with the same OrderRecordId: the new Quantity,
    /// LvsQuantity, LmtPrice and PriceTypeCode, ClOrderID the new id, fills kept. A
    /// replace the broker refuses comes as OnQVXOrderReject (ClOrderID the refused new
    /// id) followed by an update of the order unchanged.
    virtual int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                                 const QVXOrderChange& change) = 0;
};

} // namespace wicker
