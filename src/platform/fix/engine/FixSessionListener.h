#pragma once

#include "platform/fix/engine/FixWire.h"

#include <string>

namespace wicker {

/// What a FIX session reports to its owner. Called on the engine's network thread; an
/// implementation must not block and must not throw.
class FixSessionListener {
public:
    virtual ~FixSessionListener() {}
    virtual void onLogon() = 0;
    /// Logout or disconnect.
    virtual void onLogout() = 0;
    /// An application message, or a session-level Reject (35=3).
    virtual void onMessage(const FixMessage& message) = 0;
    /// The same, read in place (no copy of its fields); by default copied for onMessage.
    virtual void onReceived(const FixFieldReader& message) { onMessage(message.copy()); }
    /// An application message is about to go on the wire with this sequence number (called
    /// with its ClOrdID, or a market data request's MDReqID; called on the sending thread,
    /// inside QuickFIX: keep it short and call nothing back).
    virtual void onSending(const std::string& msgType, int msgSeqNum,
                           const std::string& clOrdID) = 0;
    /// An application message that the counterparty asked to have resent: it is never sent
    /// again (a stale order must not reach the market late), a gap fill takes its place.
    virtual void onStaleNotResent(const std::string& msgType, int msgSeqNum,
                                  const std::string& clOrdID) = 0;
    /// What the session went through, in the engine's words: "Connection failed", a
    /// Logout's text (received: "Logout received: <text>"; sent: "Logout sent: <text>"),
    /// messages rejected ("Message 2 Rejected: CompID problem"), timeouts. For telling the trader
    /// why a session is down; by default ignored.
    virtual void onSessionEvent(const std::string& text) { (void)text; }
};

} // namespace wicker
