#include "admin/MainTradingDataReset.h"

#include "admin/OpenLeaves.h"
#include "trading/TradingDesk.h"

namespace wicker {

void MainTradingDataReset::ClearTradingData() {
    m_desk.ClearTradingData();
}

void MainTradingDataReset::MarkAllOrdersClosed() {
    ZeroOpenLeaves(m_desk.Tracker());
    // The open counts changed: show them now rather than at the next order event.
    m_desk.RefreshBasketTotals();
}

} // namespace wicker
