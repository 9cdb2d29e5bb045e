#pragma once

#include "common/Clock.h"
#include "platform/QVXOrder.h"
#include "storage/FolderLock.h"
#include "storage/SqliteFile.h"
#include "trading/orders/OrderTracker.h"

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace wicker {

/// How far an order of the ledger got on its way to the broker.
enum class HandOffState : int {
    Written = 0, ///< written, then the program stopped before its send was over
    Taken = 1,   ///< the platform took it (or reported it: an order sent by other means)
};

/// An order of today as the ledger kept it.
struct LedgerOrder {
    TrackedOrder tracked;
    HandOffState handOff = HandOffState::Written;
    int32_t maxFloor = 0;
};

class SendRecord;

/// The day's orders on disk (orders.db in the data folder, SQLite in WAL mode), so that a
/// restart or a crash loses none of them: a send's orders are written as one record, in
/// parts, each committed before its orders are handed to the platform; the platform's
/// answers when the send is over, what tracking knows of an order each time a report
/// changes it, and every report, reject and warning as an audit row. Writes after a send
/// wait in one transaction until Flush (once per drain of the platform's events). Earlier
/// days stay in the file as the audit trail; only today's orders are read back.
class OrderLedger {
public:
    /// Opens or creates the file; SqliteError when it cannot be used (it is then left as it is).
    OrderLedger(const std::filesystem::path& file, const Clock& clock);
    ~OrderLedger();
    OrderLedger(const OrderLedger&) = delete;
    OrderLedger& operator=(const OrderLedger&) = delete;

    /// A basket send begins with these orders, about to leave: the send and its orders are
    /// written and committed before the first is handed to the platform. `overrides` names
    /// the limits the trader chose to override. SqliteError when they cannot be written:
    /// then none of them may leave.
    void SendBegins(int16_t basketSeq, std::string_view basketName,
                    std::span<const QVXOrder* const> orders, std::string_view overrides = {});
    /// The send's next orders, written and committed after those before them, before any of
    /// them is handed to the platform. May be called on another thread than the one that
    /// sends, which does not use the ledger until the send's last part is written.
    /// SqliteError when they cannot be written: then none of them may leave.
    void SendContinues(int16_t basketSeq, std::span<const QVXOrder* const> orders);
    /// The send is over: what SubmitOrder answered for each of its orders, in order (a
    /// record id, or a refusal below 0), and when the first was tracked ("hh:mm:ss AM/PM").
    void SendEnds(int16_t basketSeq, const std::vector<int32_t>& results,
                  std::string_view handedAt);
    /// What tracking now knows of an order, after a report, reject or warning changed it.
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
    /// Runs `write` in the open transaction and commits it; rolls back on SqliteError.
    template <class Write> void Committed(const Write& write);
    void Event(std::string_view kind, std::string_view clOrderId, int32_t recordId,
               const QVXOrderStruct* update, int32_t reason, std::string_view text);
    std::string Today() const;
    std::string Now() const;

    const Clock& m_clock;
    std::optional<FolderLock> m_lock; // none when the program holds the folder already
    SqliteFile m_file;
    std::unique_ptr<Statements> m_stmts;
    std::unique_ptr<SendRecord> m_record; ///< the send being written, its room kept
    std::string m_sendDay;                ///< the day of the send's row

    bool m_inTransaction = false;
    // Copies the write-ahead log into the file once a second on its own connection, so the
    // disk syncs a copy needs never fall on a send.
    std::mutex m_checkpointMutex;
    std::condition_variable m_checkpointWake;
    bool m_stopping = false;
    std::thread m_checkpointer;
};

} // namespace wicker
