#pragma once

#include "common/Result.h"
#include "platform/OrderTicket.h"
#include "platform/PlatformEventQueue.h"
#include "platform/QVXOrder.h"
#include "platform/QVXOrderMaintenance.h"

#include <string>

namespace wicker {

/// An order of today that an earlier run of the program handed to a platform, as the
/// order ledger kept it.
struct KnownOrder {
    OrderTicket ticket;           ///< as it was sent; clOrderID is the id it was sent with
    std::string currentClOrderId; ///< the latest id (a replace changes it)
    int32_t cum = 0;
    double avgPx = 0;
    int32_t leaves = 0;
    bool acknowledged = false; ///< the broker had reported on it
};

/// A trading platform as the rest of Wicker sees it: it makes order objects, cancels orders,
/// streams quotes for registered symbols, and reports everything through its event queue,
/// which the owner drains on its own thread (the UI thread in the program).
class Platform : public QVXOrderFactory, public QVXOrderMaintenance {
public:
    /// What the window title shows, e.g. "SIMULATED".
    virtual std::string DisplayName() const = 0;
    /// Engine, session and state for the system information; empty when there is nothing
    /// beyond the display name.
    virtual std::string Details() const { return {}; }
    /// Starts delivering: the simulated market starts its clock, a broker link connects.
    /// An error when the platform cannot work at all.
    virtual Result<void> Start() = 0;
    /// Stops delivering and lets go of the connection; may block briefly.
    virtual void Stop() = 0;

    /// Quotes for `symbol` on `exchange` ("*" for all exchanges): a snapshot soon after,
    /// then updates, until deregistered. Registering a registered symbol again only asks for
    /// a fresh snapshot.
    virtual void RegisterSymbol(const std::string& symbol, const std::string& exchange) = 0;
    virtual void DeregisterSymbol(const std::string& symbol, const std::string& exchange) = 0;

    /// Takes an order of an earlier run back into the platform's care: reports about it
    /// arrive under the returned record id (> 0), as for an order of this run. 0 when the
    /// platform does not know the order (it never reached the broker, or the broker keeps
    /// nothing across a restart).
    virtual int32_t AdoptOrder(const KnownOrder& order) = 0;

    PlatformEventQueue& Events() { return m_events; }

protected:
    PlatformEventQueue m_events;
};

} // namespace wicker
