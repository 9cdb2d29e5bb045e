#pragma once

// QuickFIX session settings from Wicker's session configuration (engine only).

#include "platform/fix/engine/FixWire.h"

#include <quickfix/SessionSettings.h>

namespace wicker {

/// Settings of one initiator session; a named QuickFIX settings file replaces them.
/// Throws FIX::ConfigError on an unreadable file.
FIX::SessionSettings InitiatorSettings(const FixSessionConfig& config);
/// Settings of one acceptor session (no socket: the caller supplies the transport).
FIX::Dictionary AcceptorDictionary(const FixSessionConfig& config);

} // namespace wicker
