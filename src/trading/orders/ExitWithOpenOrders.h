#pragma once

#include "common/MessageBox.h"
#include "trading/orders/BasketCancel.h"
#include "trading/orders/OrderTracker.h"

namespace wicker {

/// Basket orders still working at the broker (leaves above zero).
size_t OpenOrderCount(const OrderTracker& tracker);

/// File > Exit or closing the main window: with orders open and `askBeforeExit` set, one
/// question (No is the default): Yes cancels them all and exits, No exits and leaves them
/// working, Cancel stays. Returns true when the program may end. The platform's own
/// shutdown never comes here: it ends the program at once.
bool ConfirmExitWithOpenOrders(const OrderTracker& tracker, BasketCancel& cancel,
                               MessageBoxes& boxes, bool askBeforeExit);

} // namespace wicker
