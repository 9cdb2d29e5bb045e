#pragma once

#include "platform/fix/engine/FixSessionListener.h"
#include "platform/fix/engine/FixWire.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace wicker {

/// A FIX configuration or start-up failure, with QuickFIX's own explanation.
class FixEngineError : public std::runtime_error {
public:
    explicit FixEngineError(const std::string& what) : std::runtime_error(what) {}
};

/// One initiating FIX session on QuickFIX's SocketInitiator: a single network thread that
/// connects, logs on and calls the listener, and a timer that lets it reconnect after a
/// growing wait. Sending is safe from any thread.
class FixInitiator {
public:
    FixInitiator(const FixSessionConfig& config, FixSessionListener& listener);
    /// Stops the session; this may wait for the logout handshake, so never destroy an
    /// initiator on the UI thread.
    ~FixInitiator();
    FixInitiator(const FixInitiator&) = delete;
    FixInitiator& operator=(const FixInitiator&) = delete;

    /// Starts the network thread. Throws FixEngineError on a bad configuration.
    void start();
    /// Logs out and joins the network thread (may take the logout timeout).
    void stop();
    /// True between the logon handshake and the logout or disconnect.
    bool isLoggedOn() const;
    /// Puts the message on the wire when the session is logged on and returns its
    /// MsgSeqNum (also stored in message.msgSeqNum); 0 when nothing was sent and no
    /// sequence number was used.
    int send(FixMessage& message);
    /// The wait planned before the next connection attempt, in seconds, after a failed
    /// connection or a disconnect (it doubles up to a minute); 0 when none is planned.
    int secondsToNextAttempt() const;
    /// "FIX.4.2:SENDER->TARGET".
    std::string sessionName() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace wicker
