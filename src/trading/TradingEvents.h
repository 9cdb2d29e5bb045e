#pragma once

#include "platform/QVXOrderStruct.h"
#include "trading/orders/OrderTracker.h"

#include <functional>

namespace wicker {

/// The main screen's handlers of the platform's event object (m_QVXEvents): order updates
/// and rejects go to order tracking; a shutdown of the platform closes the program.
class TradingEvents {
public:
    /// `closeMainScreen` unloads the main screen, which ends the program.
    TradingEvents(OrderTracker& tracker, std::function<void()> closeMainScreen);

    OrderTracker::UpdateOutcome OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate);
    void OnQVXOrderReject(const QVXRejectStruct& structOrderReject);
    void OnQVXOrderWarning(const QVXOrderWarning& warning);
    /// Marks the platform closed and closes the main screen (once).
    void OnQVXShutdown();

    bool PlatformClosed() const { return m_platformClosed; }

private:
    OrderTracker& m_tracker;
    std::function<void()> m_closeMainScreen;
    bool m_platformClosed = false;
};

} // namespace wicker
