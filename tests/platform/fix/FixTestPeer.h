#pragma once

// An in-process accepting FIX peer on a loopback port, polled on its own thread, whose
// replies a test scripts. Header-only so that every FIX test program can use it.

#include "platform/fix/engine/FixAcceptor.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace wicker::test {

class FixTestPeer : public FixAcceptorListener {
public:
    using Reply = std::function<void(FixAcceptor&, const FixMessage&)>;

    explicit FixTestPeer(std::vector<FixSessionConfig> sessions)
        : m_acceptor(std::make_unique<FixAcceptor>(std::move(sessions), *this)) {
        m_acceptor->start("127.0.0.1", 0);
        m_thread = std::thread([this] {
            while (!m_stop.load()) {
                m_acceptor->poll(20);
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
    std::vector<FixMessage> received() const {
        std::lock_guard lock(m_mutex);
        return m_received;
    }
    int logons() const { return m_logons.load(); }

    /// Waits until pred() holds or the time is up; returns pred().
    template <class Pred> bool waitFor(Pred pred, std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, pred);
    }

    void onLogon(int) override {
        ++m_logons;
        m_changed.notify_all();
    }
    void onLogout(int) override { m_changed.notify_all(); }
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
        m_changed.notify_all();
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<FixMessage> m_received;
    Reply m_reply;
    std::atomic<int> m_logons{0};
    std::atomic<bool> m_stop{false};
    std::unique_ptr<FixAcceptor> m_acceptor;
    std::thread m_thread;
};

} // namespace wicker::test
