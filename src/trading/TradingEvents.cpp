#include "trading/TradingEvents.h"

#include <utility>

namespace wicker {

TradingEvents::TradingEvents(OrderTracker& tracker, std::function<void()> closeMainScreen)
    : m_tracker(tracker), m_closeMainScreen(std::move(closeMainScreen)) {}

OrderTracker::UpdateOutcome
TradingEvents::OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate) {
    return m_tracker.OnQVXOrderUpdate(structOrderUpdate);
}

void TradingEvents::OnQVXOrderReject(const QVXRejectStruct& structOrderReject) {
    m_tracker.OnQVXOrderReject(structOrderReject);
}

void TradingEvents::OnQVXOrderWarning(const QVXOrderWarning& warning) {
    m_tracker.OnQVXOrderWarning(warning);
}

void TradingEvents::OnQVXShutdown() {
    if (m_platformClosed) {
        return;
    }
    m_platformClosed = true;
    if (m_closeMainScreen) {
        m_closeMainScreen();
    }
}

} // namespace wicker
