#pragma once

#include "common/MessageBox.h"
#include "platform/QVXOrderMaintenance.h"
#include "trading/orders/OrderTracker.h"

#include <cstdint>

namespace wicker {

/// The order summary's "Cancel Order": one cancel request for one open order, asked first
/// when "BeforeCancel" is set. Like the basket cancels it zeroes the order's leaves at once,
/// so a second click finds it closed; the platform's next update tells the outcome.
/// Returns true when the request was sent.
bool CancelSummaryOrder(OrderTracker& tracker, QVXOrderMaintenance& maintenance,
                        MessageBoxes& boxes, int32_t orderRecordId, bool confirmBeforeCancel);

} // namespace wicker
