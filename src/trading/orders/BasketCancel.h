#pragma once

#include "common/MessageBox.h"
#include "platform/QVXOrderMaintenance.h"
#include "trading/orders/OrderTracker.h"

#include <optional>
#include <string>

namespace wicker {

/// The selected line of lvBaskets: its own text (the send number) and sub-item 1 (the
/// basket's name).
struct BasketListSelection {
    std::string basketNum;
    std::string basketName;
};

/// "Basket Options" over lvBaskets: cancel every open basket order, or those of the
/// selected basket. Works on the tracked orders and sends one cancel request per open one.
class BasketCancel {
public:
    BasketCancel(OrderTracker& tracker, QVXOrderMaintenance& maintenance, MessageBoxes& boxes);

    /// mnuCxlAll. Returns the number of cancel requests sent.
    int mnuCxlAll(bool confirmBeforeCancel);

    /// mnuCxlSel; no selection (an empty list) does nothing. Only the orders of the selected
    /// send of the basket are cancelled. Returns the number of cancel requests sent.
    int mnuCxlSel(const std::optional<BasketListSelection>& selected, bool confirmBeforeCancel);

private:
    OrderTracker& m_tracker;
    QVXOrderMaintenance& m_maintenance;
    MessageBoxes& m_boxes;
};

} // namespace wicker
