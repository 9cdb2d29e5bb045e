#include "trading/orders/OrderReplace.h"

#include "platform/OrderTicket.h"
#include "trading/orders/ExecutionButtons.h"

namespace wicker {

namespace {

/// The journal keeps a one-letter TIF; a platform that reports the word gets its code.
std::string TifLetter(const std::string& tif) {
    return tif.size() == 1 ? tif : TifCode(tif);
}

} // namespace

bool SameTerms(const OrderUpdate& order, const OrderTerms& terms) {
    return order.m_nQuantity == terms.quantity && order.m_nPriceType == terms.priceType &&
           (terms.priceType != OrderPriceType::Limit || order.m_fLmtPrice == terms.price);
}

OrderReplace::OrderReplace(const OrderTracker& tracker, QVXOrderMaintenance& maintenance,
                           Database& db, const Clock& clock, ModifyIdIssuer& ids)
    : m_tracker(tracker), m_maintenance(maintenance), m_journal(db), m_clock(clock), m_ids(ids) {}

std::string OrderReplace::NextId(size_t orderIndex) {
    const OrderUpdate& order = m_tracker.Orders().at(orderIndex);
    std::vector<std::string> known{order.m_strClOrderId, m_tracker.CurrentClOrderId(orderIndex)};
    // Ids journalled in an earlier run, refused ones included, are never handed out again.
    if (!m_seededSends.contains(order.m_nBasketSeq)) {
        for (const std::string& id : m_journal.ClOrderIds(order.m_nBasketSeq)) {
            m_ids.Used(id);
        }
        m_seededSends.insert(order.m_nBasketSeq);
    }
    return m_ids.Next(known);
}

ReplaceAttempt OrderReplace::Replace(size_t orderIndex, const OrderTerms& terms) {
    ReplaceAttempt attempt;
    const OrderUpdate& order = m_tracker.Orders().at(orderIndex);
    try {
        attempt.clOrderId = NextId(orderIndex);
    } catch (const DbError& e) {
        attempt.status = ReplaceAttempt::Status::NotJournal;
        attempt.error = e.what();
        return attempt;
    }
    if (attempt.clOrderId.empty()) {
        attempt.status = ReplaceAttempt::Status::NoId;
        return attempt;
    }
    const bool limit = terms.priceType == OrderPriceType::Limit;
    JournalEntry entry;
    entry.sent = m_clock.localNow();
    entry.clOrderId = attempt.clOrderId;
    entry.basketSeq = order.m_nBasketSeq;
    entry.account = order.m_strAccount;
    entry.symbol = order.m_strInstrument;
    entry.side = order.m_strSide;
    entry.destination = order.m_strDestination;
    entry.price = limit ? terms.price : 0.0;
    entry.quantity = terms.quantity;
    entry.leaves = terms.quantity - order.m_nCumExecQuantity;
    entry.basketName = order.m_strBasketId;
    entry.tif = TifLetter(order.m_strTif);
    std::string sql;
    try {
        sql = JournalInsertSql(entry, m_journal.WithTifColumns());
    } catch (const DbError& e) {
        attempt.status = ReplaceAttempt::Status::NotJournal;
        attempt.error = e.what();
        return attempt;
    }

    QVXOrderChange change;
    change.newClOrderID = attempt.clOrderId;
    change.quantity = terms.quantity;
    change.priceType = terms.priceType;
    change.lmtPrice = entry.price;
    attempt.code = m_maintenance.ReplaceOrder(m_tracker.CurrentClOrderId(orderIndex),
                                              order.m_nOrderRecordId, change);
    if (attempt.code < 0) {
        attempt.status = ReplaceAttempt::Status::Refused;
        return attempt;
    }
    try {
        m_journal.Execute(sql);
    } catch (const DbError& e) {
        attempt.status = ReplaceAttempt::Status::JournalLost;
        attempt.error = e.what();
    }
    return attempt;
}

} // namespace wicker
