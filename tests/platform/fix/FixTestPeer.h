#pragma once

// An in-process accepting FIX peer on a loopback port, polled on its own thread, whose
// replies a test scripts. Header-only so that every FIX test program can use it.

#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/engine/FixAcceptor.h"
#include "support/WaitFor.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace wicker::test {

/// The counterparty's end of the session Wicker opens.
inline FixSessionConfig PeerSide(FixVersion v = FixVersion::Fix42) {
    FixSessionConfig c;
    c.beginString = BeginStringOf(v);
    c.senderCompID = "EXCH";
    c.targetCompID = "WICKER";
    return c;
}

/// Wicker's end, to a peer on `port`, reconnecting after a second.
inline FixSessionConfig ClientSide(int port, FixVersion v = FixVersion::Fix42) {
    FixSessionConfig c;
    c.beginString = BeginStringOf(v);
    c.senderCompID = "WICKER";
    c.targetCompID = "EXCH";
    c.port = port;
    c.reconnectInterval = 1;
    return c;
}

class FixTestPeer : public FixAcceptorListener {
public:
    using Reply = std::function<void(FixAcceptor&, const FixMessage&)>;

    explicit FixTestPeer(std::vector<FixSessionConfig> sessions, int port = 0)
        : m_acceptor(std::make_unique<FixAcceptor>(std::move(sessions), *this)) {
        m_acceptor->start("127.0.0.1", port);
        m_thread = std::thread([this] {
            while (!m_stop.load()) {
                m_acceptor->poll(5);
                std::vector<std::function<void(FixAcceptor&)>> tasks;
                {
                    std::lock_guard lock(m_mutex);
                    tasks.swap(m_tasks);
                }
                for (auto& t : tasks) {
                    t(*m_acceptor);
                }
            }
        });
    }
    ~FixTestPeer() override {
        m_stop.store(true);
        m_thread.join();
        m_acceptor.reset(); // its last callbacks still reach this object
    }

    int port() const { return m_acceptor->port(); }
    /// Called on the peer's thread for every application message received.
    void setReply(Reply reply) {
        std::lock_guard lock(m_mutex);
        m_reply = std::move(reply);
    }
    /// Runs `task` on the peer's thread (the acceptor is not thread-safe), soon.
    void run(std::function<void(FixAcceptor&)> task) {
        std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    std::vector<FixMessage> received() const {
        std::lock_guard lock(m_mutex);
        return m_received;
    }
    int logons() const { return m_logons.load(); }

    /// Waits until pred() holds or the time is up; returns pred(). pred may call the
    /// accessors above.
    template <class Pred> bool waitFor(Pred pred, std::chrono::milliseconds limit) {
        return WaitFor(pred, limit);
    }

    void onLogon(int) override { ++m_logons; }
    void onLogout(int) override {}
    void onMessage(int, const FixMessage& message) override {
        Reply reply;
        {
            std::lock_guard lock(m_mutex);
            m_received.push_back(message);
            reply = m_reply;
        }
        if (reply) {
            reply(*m_acceptor, message);
        }
    }

private:
    mutable std::mutex m_mutex;
    std::vector<FixMessage> m_received;
    Reply m_reply;
    std::vector<std::function<void(FixAcceptor&)>> m_tasks;
    std::atomic<int> m_logons{0};
    std::atomic<bool> m_stop{false};
    std::unique_ptr<FixAcceptor> m_acceptor;
    std::thread m_thread;
};

} // namespace wicker::test
