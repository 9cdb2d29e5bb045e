#pragma once

#include "common/Clock.h"
#include "platform/OrderTicket.h"
#include "platform/Platform.h"
#include "platform/sim/SimBookFile.h"
#include "platform/sim/SimMarket.h"
#include "platform/sim/SimOrderBook.h"
#include "platform/sim/SimRealTimeDriver.h"
#include "platform/sim/SimSettings.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>

namespace wicker {

/// Whether the simulator follows the wall clock on a thread of its own, or moves only when
/// advance() is called (tests, benchmarks).
enum class SimDriver { RealTime, Manual };

/// The built-in simulated market and broker. All its state sits behind one mutex: orders
/// and cancels come from the UI thread, the market moves on the driver's thread (or on the
/// caller's with SimDriver::Manual), and every event goes to the event queue.
class SimPlatform final : public Platform {
public:
    /// Virtual time starts at `clock.now()`; the real-time driver also reads `clock`.
    SimPlatform(SimSettings settings, const Clock& clock, SimDriver driver = SimDriver::RealTime);
    /// Stops the driver thread.
    ~SimPlatform() override;

    /// "SIMULATED".
    std::string DisplayName() const override;
    /// Goes online: snapshots for the registered symbols, then quotes and fills as time
    /// passes. An error once the platform has shut down.
    Result<void> Start() override;
    /// Goes offline: no quotes, no fills, orders refused with -16, until started again.
    void Stop() override;
    std::unique_ptr<QVXOrder> CreateOrder() override;
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string& third,
                     const std::string& fourth) override;
    /// Changes an open order in place (see SimOrderBook::replace); -16 while offline.
    /// The order if the simulated broker still holds it (its state is reported again).
    int32_t AdoptOrder(const KnownOrder& order) override;
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange& change) override;
    void RegisterSymbol(const std::string& symbol, const std::string& exchange) override;
    void DeregisterSymbol(const std::string& symbol, const std::string& exchange) override;

    /// Keeps the simulated broker's book in `file` from now on (before Start and before any
    /// order): today's orders of earlier runs are taken back, resting ones rest again. The
    /// book is written once per drain of the event queue, before that drain delivers: what
    /// the trader sees of an order the book would still hold after a restart. An order the
    /// program died with before that write is unknown to the simulated broker afterwards.
    /// An error when the file cannot be used; it is then left as it is, and not kept.
    Result<void> KeepBook(const std::filesystem::path& file);

    /// The platform closes for good: a shutdown event, then -16 for every order.
    void TriggerShutdown();

    /// Moves virtual time on, with every quote, fill and market-on-open/-close order due.
    void advance(std::chrono::microseconds by);
    void advanceTo(Clock::TimePoint when);
    /// The current virtual time.
    Clock::TimePoint now() const;
    bool online() const;

private:
    int32_t Submit(const OrderTicket& ticket);
    void AdvanceLocked(int64_t targetUs);
    void PushSnapshot(size_t instrument);
    void StopDriver();
    /// Writes the book's changes; with `take`, lets the event queue take what they explain.
    void SaveBook(const std::function<void()>* take);

    SimSettings m_settings;
    const Clock& m_clock;
    const SimDriver m_driverMode;
    const Clock::TimePoint m_origin;
    mutable std::mutex m_mutex;
    int64_t m_nowUs = 0;
    bool m_online = false;
    bool m_shutDown = false;
    SimMarket m_market;
    SimOrderBook m_book;
    std::mutex m_bookMutex;                      // one writer of the book at a time, in order
    std::unique_ptr<SimBookFile> m_kept;         // none: the book lives in memory only
    bool m_replaceKept = false;                  // the next write replaces the day's rows
    std::mutex m_driverMutex;                    // Start/Stop from several threads
    std::unique_ptr<SimRealTimeDriver> m_driver; // last: its thread calls advance()
};

} // namespace wicker
