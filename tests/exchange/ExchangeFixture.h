#pragma once

// wicker-exchange in the test's own process, and the options the tests start it with.

#include "exchange/BasicVenue.h"
#include "exchange/ExchangeServer.h"
#include "support/TempDir.h"

#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace wicker::test {

/// Listening on a free port, journalling to orders.txt in `dir`, quoting every 20 ms.
inline ExchangeOptions Options(const TempDir& dir) {
    ExchangeOptions o;
    o.port = 0;
    o.journalFile = (dir / "orders.txt").string();
    o.quoteIntervalMs = 20;
    return o;
}

/// The server polled on its own thread.
class RunningExchange {
public:
    RunningExchange(const ExchangeOptions& o, std::unique_ptr<ExchangeVenue> venue)
        : m_venue(std::move(venue)), m_server(o, *m_venue) {
        const Result<void> started = m_server.start();
        EXPECT_TRUE(started.ok()) << (started.ok() ? "" : started.error().message);
        m_thread = std::thread([this] {
            while (!m_stop.load()) {
                m_server.runOnce(5);
            }
        });
    }
    /// On the basic venue the options describe.
    explicit RunningExchange(const ExchangeOptions& o)
        : RunningExchange(o, std::make_unique<BasicVenue>(
                                 o.seed, o.clipSize, std::chrono::milliseconds(o.fillDelayMs))) {}
    ~RunningExchange() {
        m_stop.store(true);
        m_thread.join();
    }
    int port() const { return m_server.port(); }
    double midPrice(const std::string& symbol) const {
        return dynamic_cast<const BasicVenue&>(*m_venue).midPrice(symbol);
    }

private:
    std::unique_ptr<ExchangeVenue> m_venue;
    ExchangeServer m_server;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace wicker::test
