#pragma once

#include "common/Clock.h"
#include "platform/OrderTicket.h"
#include "platform/QVXOrderMaintenance.h"
#include "storage/Database.h"
#include "trading/orders/ModifyClOrderIds.h"
#include "trading/orders/OrderJournal.h"
#include "trading/orders/OrderTracker.h"

#include <cstdint>
#include <set>
#include <string>

namespace wicker {

/// New terms for one tracked order.
struct OrderTerms {
    int32_t quantity = 0; ///< total, fills included
    int32_t priceType = OrderPriceType::Limit;
    double price = 0; ///< limit price; ignored otherwise
};

/// What one replace did.
struct ReplaceAttempt {
    enum class Status {
        Sent,        ///< the platform took the change; the journal row is written
        Refused,     ///< the platform refused it (code)
        NoId,        ///< no unused client order id was left; nothing was sent
        NotJournal,  ///< the journal cannot hold the order's values; nothing was sent
        JournalLost, ///< sent, but the database refused the journal row (error)
    };
    Status status = Status::Sent;
    int32_t code = 0;
    std::string clOrderId; ///< the id the change went under
    std::string error;     ///< the database's words for NotJournal / JournalLost

    bool sent() const { return status == Status::Sent || status == Status::JournalLost; }
};

/// Changes a tracked order at the broker with one cancel-replace under a fresh client order
/// id, and writes its journal row. The row's statement is built before the request goes out
/// (a value the journal cannot hold stops the change), and run once the platform has taken
/// it (a refused change leaves no row).
class OrderReplace {
public:
    OrderReplace(const OrderTracker& tracker, QVXOrderMaintenance& maintenance, Database& db,
                 const Clock& clock, ModifyIdIssuer& ids);

    ReplaceAttempt Replace(size_t orderIndex, const OrderTerms& terms);

private:
    std::string NextId(size_t orderIndex);

    const OrderTracker& m_tracker;
    QVXOrderMaintenance& m_maintenance;
    OrderJournal m_journal;
    const Clock& m_clock;
    ModifyIdIssuer& m_ids;
    std::set<int16_t> m_seededSends; ///< sends whose journalled ids the issuer knows
};

/// True when `terms` are the order's terms already (nothing to change).
bool SameTerms(const OrderUpdate& order, const OrderTerms& terms);

} // namespace wicker
