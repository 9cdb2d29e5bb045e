#pragma once

#include "platform/fix/engine/FixInitiator.h"
#include "platform/fix/engine/FixWire.h"

#include <memory>
#include <string>
#include <vector>

namespace wicker {

/// What an accepting FIX endpoint reports; sessions are numbered in the order of the
/// configurations given to the acceptor. Called inside FixAcceptor::poll.
class FixAcceptorListener {
public:
    virtual ~FixAcceptorListener() {}
    virtual void onLogon(int session) = 0;
    virtual void onLogout(int session) = 0;
    virtual void onMessage(int session, const FixMessage& message) = 0;
};

/// Accepting FIX sessions on a listening socket of our own, bound to one address
/// (loopback by default): QuickFIX's acceptor listens on every interface, so the bytes
/// are carried here and handed to QuickFIX sessions through its Responder interface.
/// Single-threaded: everything happens inside poll().
class FixAcceptor {
public:
    FixAcceptor(std::vector<FixSessionConfig> sessions, FixAcceptorListener& listener);
    ~FixAcceptor();
    FixAcceptor(const FixAcceptor&) = delete;
    FixAcceptor& operator=(const FixAcceptor&) = delete;

    /// Creates the sessions and listens on address:port (port 0 picks a free one).
    /// Throws FixEngineError.
    void start(const std::string& bindAddress, int port);
    /// The port actually listened on.
    int port() const;
    /// Waits up to timeoutMs for network events and handles them (reads, writes, logons,
    /// heartbeats, disconnects).
    void poll(int timeoutMs);
    /// Sends on a session. While the client is away the message is stored and numbered,
    /// and reaches it through its resend request when it logs on again.
    bool send(int session, FixMessage& message);
    bool isLoggedOn(int session) const;
    /// The application messages this side sent on the session and still holds in its
    /// store (for rebuilding state after a restart), oldest first.
    std::vector<FixMessage> sentMessages(int session) const;
    /// Drops every connection, as a crash would (no logout).
    void dropConnections();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace wicker
