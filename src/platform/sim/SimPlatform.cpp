#include "platform/sim/SimPlatform.h"

#include "common/Formats.h"
#include "common/Text.h"
#include "platform/TicketOrder.h"

#include <algorithm>

namespace wicker {

SimPlatform::SimPlatform(SimSettings settings, const Clock& clock, SimDriver driver)
    : m_settings(std::move(settings)), m_clock(clock), m_driverMode(driver), m_origin(clock.now()),
      m_market(m_settings.seed, m_settings.updatesPerSecond),
      m_book(m_settings, m_market, m_events, m_origin) {}

SimPlatform::~SimPlatform() {
    StopDriver();
    SaveBook(nullptr);
}

Result<void> SimPlatform::KeepBook(const std::filesystem::path& file) {
    try {
        auto kept = std::make_unique<SimBookFile>(file, FormatYyyymmdd(m_clock.localNow()));
        std::vector<SimKeptOrder> orders = kept->Load();
        std::lock_guard bookLock(m_bookMutex);
        std::lock_guard lock(m_mutex);
        m_book.keepChanges();
        m_replaceKept = m_book.restore(std::move(orders), m_nowUs);
        m_kept = std::move(kept);
    } catch (const std::exception& e) {
        return Error{"The simulated broker's book " + file.string() + " cannot be used (" +
                     e.what() +
                     "). Orders of earlier runs are not restored, and orders from "
                     "now on will not survive a restart. The file is left as it is."};
    }
    m_events.setTakeGate([this](const std::function<void()>& take) { SaveBook(&take); });
    return {};
}

void SimPlatform::SaveBook(const std::function<void()>* take) {
    // The book lock is taken before the market's is let go, so writes land in the order
    // their snapshots were taken.
    std::lock_guard bookLock(m_bookMutex);
    std::vector<SimKeptOrder> changed;
    {
        std::lock_guard lock(m_mutex);
        if (m_kept) {
            changed = m_book.takeChanged();
        }
        if (take != nullptr) {
            (*take)();
        }
    }
    if (changed.empty()) {
        return;
    }
    try {
        m_kept->Save(changed, m_replaceKept);
        m_replaceKept = false;
    } catch (const SqliteError& e) {
        m_kept.reset();
        m_events.push(PlatformEventQueue::Status{
            online(), std::string("Simulated market: its book cannot be written any more (") +
                          e.what() + "); resting orders will not survive a restart."});
    }
}

std::string SimPlatform::DisplayName() const {
    return "SIMULATED";
}

Result<void> SimPlatform::Start() {
    {
        std::lock_guard lock(m_mutex);
        if (m_shutDown) {
            return Error{"The simulated platform has shut down; restart the program."};
        }
        if (m_online) {
            return {};
        }
        m_online = true;
        m_market.restartSchedule(m_nowUs);
        m_events.push(PlatformEventQueue::Status{true, "Simulated market open"});
        for (const size_t i : m_market.subscribedInstruments()) {
            PushSnapshot(i);
        }
    }
    if (m_driverMode == SimDriver::RealTime) {
        std::lock_guard lock(m_driverMutex);
        if (!m_driver) {
            m_driver =
                std::make_unique<SimRealTimeDriver>(m_clock, [this](std::chrono::microseconds by) {
                    advance(by);
                    // Also while the UI thread is busy (a long send): the book follows in
                    // batches off the send's path.
                    SaveBook(nullptr);
                });
        }
    }
    return {};
}

void SimPlatform::Stop() {
    StopDriver();
    {
        std::lock_guard lock(m_mutex);
        if (m_online) {
            m_online = false;
            m_events.push(PlatformEventQueue::Status{false, "Simulated market stopped"});
        }
    }
    SaveBook(nullptr);
}

void SimPlatform::TriggerShutdown() {
    StopDriver();
    std::lock_guard lock(m_mutex);
    m_online = false;
    if (!m_shutDown) {
        m_shutDown = true;
        m_events.push(PlatformEventQueue::Shutdown{});
    }
}

void SimPlatform::StopDriver() {
    std::unique_ptr<SimRealTimeDriver> driver;
    {
        std::lock_guard lock(m_driverMutex);
        driver = std::move(m_driver);
    }
    driver.reset(); // joins, outside every lock the driver's thread takes
}

std::unique_ptr<QVXOrder> SimPlatform::CreateOrder() {
    return std::make_unique<TicketOrder>([this](const OrderTicket& t) { return Submit(t); });
}

int32_t SimPlatform::Submit(const OrderTicket& ticket) {
    std::lock_guard lock(m_mutex);
    if (!m_online) {
        return -16;
    }
    return m_book.submit(ticket, m_nowUs);
}

void SimPlatform::CancelOrder(const std::string& clOrderId, int32_t orderRecordId,
                              const std::string&, const std::string&) {
    std::lock_guard lock(m_mutex);
    if (m_online) {
        m_book.cancel(clOrderId, orderRecordId, m_nowUs);
    }
}

int32_t SimPlatform::AdoptOrder(const KnownOrder& order) {
    std::lock_guard lock(m_mutex);
    return m_book.adopt(order.ticket.clOrderID, m_nowUs);
}

int32_t SimPlatform::ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                                  const QVXOrderChange& change) {
    std::lock_guard lock(m_mutex);
    if (!m_online) {
        return -16;
    }
    return m_book.replace(clOrderId, orderRecordId, change, m_nowUs);
}

void SimPlatform::RegisterSymbol(const std::string& symbol, const std::string&) {
    // One picture per symbol whatever the exchange asked for: the simulator has one market.
    if (Trim(symbol).empty()) {
        return; // nothing to quote
    }
    std::lock_guard lock(m_mutex);
    const size_t i = m_market.instrumentOf(symbol);
    m_market.subscribe(i, symbol, m_nowUs);
    if (m_online) {
        PushSnapshot(i);
    }
}

void SimPlatform::DeregisterSymbol(const std::string& symbol, const std::string&) {
    std::lock_guard lock(m_mutex);
    if (const std::optional<size_t> i = m_market.find(symbol)) {
        m_market.unsubscribe(*i);
    }
}

void SimPlatform::PushSnapshot(size_t i) {
    m_events.push(
        PlatformEventQueue::QuoteSnap{m_market.instrument(i).snapshot(m_market.quoteSymbol(i))});
}

void SimPlatform::advance(std::chrono::microseconds by) {
    std::lock_guard lock(m_mutex);
    AdvanceLocked(m_nowUs + std::max<int64_t>(0, by.count()));
}

void SimPlatform::advanceTo(Clock::TimePoint when) {
    std::lock_guard lock(m_mutex);
    const auto target = std::chrono::duration_cast<std::chrono::microseconds>(when - m_origin);
    AdvanceLocked(std::max<int64_t>(m_nowUs, target.count()));
}

Clock::TimePoint SimPlatform::now() const {
    std::lock_guard lock(m_mutex);
    return m_origin + std::chrono::microseconds(m_nowUs);
}

bool SimPlatform::online() const {
    std::lock_guard lock(m_mutex);
    return m_online;
}

void SimPlatform::AdvanceLocked(int64_t targetUs) {
    // Offline, time passes but the market stands still (Start schedules it afresh).
    while (m_online) {
        const int64_t quoteDue = m_market.nextDueUs();
        const int64_t auctionDue = m_book.nextAuctionUs();
        const int64_t due = std::min(quoteDue, auctionDue);
        if (due > targetUs) {
            break;
        }
        m_nowUs = std::max(m_nowUs, due);
        if (auctionDue <= quoteDue) {
            m_book.runAuctions(m_nowUs);
            continue;
        }
        const SimMarket::Step step = m_market.stepNext();
        if (!step.moved) {
            continue;
        }
        if (step.fields != 0 && m_market.subscribed(step.instrument)) {
            m_events.push(PlatformEventQueue::QuoteUpdate{
                m_market.instrument(step.instrument)
                    .update(m_market.quoteSymbol(step.instrument), step.fields)});
        }
        m_book.onTick(step.instrument, m_nowUs);
    }
    m_nowUs = std::max(m_nowUs, targetUs);
}

} // namespace wicker
