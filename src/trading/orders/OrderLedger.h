#pragma once

#include "common/Clock.h"
#include "platform/QVXOrder.h"
#include "storage/SqliteFile.h"
#include "trading/orders/OrderTracker.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// How far an order of the ledger got on its way to the broker.
enum class HandOffState : int {
    Written = 0, ///< written, then the program stopped before the platform answered SubmitOrder
    Taken = 1,   ///< the platform took it (or reported it: an order sent by other means)
    Refused = 2, ///< SubmitOrder refused it; it never left
};

/// An order of today as the ledger kept it.
struct LedgerOrder {
    TrackedOrder tracked;
    HandOffState handOff = HandOffState::Written;
    int32_t submitResult = 0;
    int32_t maxFloor = 0;
};

/// The day's orders on disk (orders.db in the data folder, SQLite in WAL mode), so that a
/// restart or a crash loses none of them: each order is written before it is handed to the
/// platform, every change of what tracking knows of it as it is applied, and every report,
/// reject and warning as an audit row. Writes wait in one transaction until Flush (once per
/// send and per drain of the platform's events). Earlier days stay in the file as the audit
/// trail; only today's orders are read back.
class OrderLedger {
public:
    /// Opens or creates the file; SqliteError when it cannot be used (it is then left as it is).
    OrderLedger(const std::filesystem::path& file, const Clock& clock);
    ~OrderLedger();
    OrderLedger(const OrderLedger&) = delete;
    OrderLedger& operator=(const OrderLedger&) = delete;

    /// A basket send with these orders is about to leave: the send and every order are
    /// written and committed before the first is handed to the platform. `overrides` names
    /// the limits the trader chose to override. SqliteError when they cannot be written (a
    /// client order id already used today included): then nothing may leave.
    void SendBegins(int16_t basketSeq, std::string_view basketName,
                    std::span<const QVXOrder* const> orders, std::string_view overrides = {});
    /// SubmitOrder refused the order: it never left.
    void Refused(std::string_view clOrderId, int32_t result);
    /// What tracking now knows of an order (when handed off, after an update, reject or
    /// warning).
    void Save(const TrackedOrder& order);
    /// Audit rows of the platform's events, as they arrive.
    void Reported(const QVXOrderStruct& update);
    void Rejected(const QVXRejectStruct& reject);
    void Warned(const QVXOrderWarning& warning);
    /// Commits what was written since the last Flush.
    void Flush();

    /// Today's orders, in the order they were first written.
    std::vector<LedgerOrder> TodaysOrders();
    /// The highest basket send number used today, if any send was made.
    std::optional<int16_t> HighestBasketSeqToday();

private:
    struct Statements;
    void Begin();
    void Event(std::string_view kind, std::string_view clOrderId, int32_t recordId,
               const QVXOrderStruct* update, int32_t reason, std::string_view text);
    std::string Today() const;
    std::string Now() const;

    const Clock& m_clock;
    SqliteFile m_file;
    std::unique_ptr<Statements> m_stmts;
    bool m_inTransaction = false;
};

} // namespace wicker
