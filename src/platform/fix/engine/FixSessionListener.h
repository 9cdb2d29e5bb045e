#pragma once

#include "platform/fix/engine/FixWire.h"

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
    /// An application message that the counterparty asked to have resent: it is never sent
    /// again (a stale order must not reach the market late), a gap fill takes its place.
    virtual void onStaleNotResent(const FixMessage& message) = 0;
};

} // namespace wicker
