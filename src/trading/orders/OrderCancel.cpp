#include "trading/orders/OrderCancel.h"

#include "trading/orders/OrderModify.h"
#include "trading/orders/OrderSummary.h"

namespace wicker {

bool CancelSummaryOrder(OrderTracker& tracker, QVXOrderMaintenance& maintenance,
                        MessageBoxes& boxes, int32_t orderRecordId, bool confirmBeforeCancel) {
    const std::optional<size_t> index = TrackedOrderIndex(tracker, orderRecordId);
    if (!index || tracker.Orders()[*index].m_nLvsQuantity <= 0) {
        boxes.show("That order is not open any more.", 48, "No Open Orders");
        return false;
    }
    const OrderUpdate& order = tracker.Orders()[*index];
    if (confirmBeforeCancel &&
        boxes.show("Do you want to cancel this order?\r\n" + OrderDescription(order), 292,
                   "Cancel Order") != MsgAnswer::Yes) {
        return false;
    }
    const std::string clOrderId = order.m_strClOrderId;
    tracker.ZeroLeaves(*index);
    maintenance.CancelOrder(clOrderId, orderRecordId, "", "");
    return true;
}

} // namespace wicker
