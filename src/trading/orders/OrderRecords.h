#pragma once

#include "common/MessageBox.h"
#include "platform/Platform.h"
#include "trading/orders/OrderLedger.h"
#include "trading/orders/OrderTracker.h"
#include "trading/orders/SendListener.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace wicker {

/// What a restart found of the day's orders.
struct RestoreReport {
    size_t restored = 0; ///< orders tracked again
    size_t adopted = 0;  ///< open orders the platform follows again
    size_t notSent = 0;  ///< written, but the program stopped before they left
    size_t unknown = 0;  ///< open when the program stopped, unknown to the platform now
};

/// The day's orders, kept: every order of a send is written to the order ledger before it
/// leaves, and tracked once the send has handed its orders to the platform; every report,
/// reject and warning is written as it is applied; a restart tracks the day's orders again.
class OrderRecords final : public SendListener {
public:
    OrderRecords(OrderTracker& tracker, MessageBoxes& boxes);

    /// Keeps the day in `ledger` from now on; none: orders are tracked, not kept.
    void setLedger(std::unique_ptr<OrderLedger> ledger);
    /// No ledger can be kept: sends are refused from now on.
    void Refuse() { m_failed = true; }

    void SendBegins(int16_t basketSeq, std::string_view basketName,
                    std::span<const QVXOrder* const> orders, std::string_view overrides) override;
    void SendContinues(int16_t basketSeq, std::span<const QVXOrder* const> orders) override;
    void Submitted(int32_t result) override;
    void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) override;
    void SendEnds(int16_t basketSeq) override;

    /// Platform events, before tracking applies them: audit rows, and the end of a
    /// restored order that never reached the broker.
    void Reported(const QVXOrderStruct& update);
    void Rejected(const QVXRejectStruct& reject);
    void Warned(const QVXOrderWarning& warning);
    /// Writes what changed in tracking since the last call and commits it: after every
    /// drain of the platform's events, every send and every tick.
    void SaveChanges();

    /// Tracks the day's orders of an earlier run again; `platform` takes back the open ones.
    RestoreReport RestoreToday(Platform& platform);
    /// Orders written by an earlier run that never left, counted since the restart.
    size_t NotSentCount() const { return m_notSent; }
    /// The highest send number the day's ledger holds, if any.
    std::optional<int16_t> HighestBasketSeqToday();

private:
    /// A ledger that cannot be written is dropped after one message: orders stay tracked.
    void LedgerFailed(const std::exception& e);
    void NotSent(size_t position);
    /// Tracks an order the platform took under `recordId`.
    void Track(QVXOrder& order, int32_t recordId);

    OrderTracker& m_tracker;
    MessageBoxes& m_boxes;
    std::unique_ptr<OrderLedger> m_ledger;
    std::unordered_set<std::string> m_unsentSinceRestart; ///< client order ids
    size_t m_notSent = 0;
    std::vector<int32_t> m_results; ///< SubmitOrder's answers of the send under way
    std::string m_handedAt;         ///< when its first order was tracked
    bool m_failed = false;          ///< the ledger failed: nothing may be sent until a restart
};

} // namespace wicker
