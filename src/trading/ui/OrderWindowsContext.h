#pragma once

#include "common/MessageBox.h"
#include "platform/QVXOrderMaintenance.h"
#include "trading/TradingDesk.h"
#include "trading/orders/ModifyClOrderIds.h"
#include "trading/orders/OrderReplace.h"

namespace wicker {

/// What the order summary and the modify dialogs work with; all of it outlives them.
struct OrderWindowsContext {
    TradingDesk& desk;
    QVXOrderMaintenance& maintenance;
    MessageBoxes& boxes;
    ModifyIdIssuer& ids; ///< one for the run, so no id is handed out twice

    /// A replacer over the desk's orders and database (only once the desk is loaded).
    OrderReplace MakeReplace() const {
        return OrderReplace(desk.Tracker(), maintenance, desk.db(), desk.Tracker().clock(), ids);
    }
};

} // namespace wicker
