#include "trading/orders/ExitWithOpenOrders.h"

#include <string>

namespace wicker {

size_t OpenOrderCount(const OrderTracker& tracker) {
    size_t open = 0;
    for (const OrderUpdate& order : tracker.Orders()) {
        open += order.m_nLvsQuantity > 0 ? 1 : 0;
    }
    return open;
}

bool ConfirmExitWithOpenOrders(const OrderTracker& tracker, BasketCancel& cancel,
                               MessageBoxes& boxes, bool askBeforeExit) {
    const size_t open = OpenOrderCount(tracker);
    if (open == 0 || !askBeforeExit) {
        return true;
    }
    const std::string count = std::to_string(open);
    const std::string orders = open == 1 ? "1 order is" : count + " orders are";
    // 3 + 32 + 256: Yes/No/Cancel, question, No the default.
    switch (boxes.show(orders +
                           " still open.\r\n\r\n"
                           "Yes: cancel " +
                           (open == 1 ? std::string("it") : "all " + count) +
                           " and exit.\r\n"
                           "No: exit and leave " +
                           (open == 1 ? "it" : "them") +
                           " working.\r\n"
                           "Cancel: stay in Wicker.",
                       291, "Exit Wicker")) {
    case MsgAnswer::Yes:
        cancel.mnuCxlAll(false); // the question was just answered: no second one
        return true;
    case MsgAnswer::No:
        return true;
    case MsgAnswer::Ok:
    case MsgAnswer::Cancel:
        break;
    }
    return false;
}

} // namespace wicker
