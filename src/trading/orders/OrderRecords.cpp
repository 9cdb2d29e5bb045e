#include "trading/orders/OrderRecords.h"

#include "platform/TicketOrder.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace wicker {

namespace {

constexpr const char* kNotSentNote = "Not sent (program stopped)";
constexpr const char* kUnknownNote = "Unknown to the broker after the restart";

bool IsOpen(const LedgerOrder& o) {
    const int32_t status = o.tracked.state.OrderStatus;
    return o.handOff == HandOffState::Written ||
           (o.tracked.state.LvsQuantity > 0 && status != QVXOrderStatus::Cancelled &&
            status != QVXOrderStatus::Rejected && status != QVXOrderStatus::Filled &&
            status != QVXOrderStatus::DoneForDay);
}

KnownOrder KnownOrderOf(const LedgerOrder& o) {
    const QVXOrderStruct& r = o.tracked.state;
    KnownOrder k;
    k.ticket.account = r.Account;
    k.ticket.side = r.Side;
    k.ticket.symbol = r.Symbol;
    k.ticket.quantity = r.Quantity;
    k.ticket.lmtPrice = r.LmtPrice;
    k.ticket.priceType = r.PriceTypeCode;
    k.ticket.clOrderID = r.ClOrderID;
    k.ticket.tif = r.Tif;
    k.ticket.destination = r.Destination;
    k.ticket.maxFloor = o.maxFloor;
    k.ticket.memo = r.Memo;
    k.currentClOrderId = o.tracked.currentClOrderId;
    k.cum = r.CumExecQuantity;
    k.avgPx = r.AvgExecPrice;
    k.leaves = r.LvsQuantity;
    k.acknowledged = o.tracked.answer == AnswerWatch::State::Answered;
    return k;
}

} // namespace

OrderRecords::OrderRecords(OrderTracker& tracker, MessageBoxes& boxes)
    : m_tracker(tracker), m_boxes(boxes) {}

void OrderRecords::setLedger(std::unique_ptr<OrderLedger> ledger) {
    m_ledger = std::move(ledger);
}

void OrderRecords::SendBegins(int16_t basketSeq, std::string_view basketName,
                              std::span<const QVXOrder* const> orders, std::string_view overrides) {
    if (m_failed) {
        throw SqliteError("The order journal could not be written earlier today, so nothing was "
                          "sent: orders sent now would not survive a restart. Start Wicker again "
                          "once its data folder can be written.");
    }
    m_results.clear();
    m_results.reserve(orders.size());
    m_handedAt.clear();
    if (m_ledger == nullptr) {
        return;
    }
    try {
        m_ledger->SendBegins(basketSeq, basketName, orders, overrides);
    } catch (const SqliteError& e) {
        // Orders that would not survive a crash do not leave.
        throw SqliteError(
            std::string("The order journal cannot be written, so nothing was sent. ") + e.what());
    }
}

void OrderRecords::SendContinues(int16_t basketSeq, std::span<const QVXOrder* const> orders) {
    if (m_ledger == nullptr) {
        return;
    }
    try {
        m_ledger->SendContinues(basketSeq, orders);
    } catch (const SqliteError& e) {
        throw SqliteError(std::string("The order journal cannot be written, so the rest of the "
                                      "basket was not sent. ") +
                          e.what());
    }
}

void OrderRecords::Submitted(int32_t result) {
    m_results.push_back(result);
}

void OrderRecords::Handed(std::span<const std::unique_ptr<QVXOrder>> orders) {
    const size_t handed = std::min(orders.size(), m_results.size());
    for (size_t i = 0; i < handed; ++i) {
        // A refusal is in the send's summary; nothing of it reached the broker.
        if (m_results[i] > 0) {
            Track(*orders[i], m_results[i]);
        }
    }
}

void OrderRecords::Track(QVXOrder& order, int32_t recordId) {
    const size_t before = m_tracker.Orders().size();
    if (typeid(order) == typeid(TicketOrder)) {
        // The send destroys the order next: its texts move into tracking, not copied.
        m_tracker.OnOrderHandedOff(std::move(static_cast<TicketOrder&>(order).ticket()), recordId);
    } else {
        m_tracker.OnOrderHandedOff(std::as_const(order), recordId);
    }
    if (m_handedAt.empty() && m_tracker.Orders().size() > before) {
        m_handedAt = m_tracker.SeenAt(before);
    }
}

void OrderRecords::SendEnds(int16_t basketSeq) {
    if (m_ledger != nullptr) {
        try {
            m_ledger->SendEnds(basketSeq, m_results, m_handedAt);
        } catch (const SqliteError& e) {
            LedgerFailed(e);
        }
    }
    m_results.clear();
    m_handedAt.clear();
    SaveChanges();
}

void OrderRecords::Reported(const QVXOrderStruct& update) {
    if (m_ledger != nullptr) {
        try {
            m_ledger->Reported(update);
        } catch (const SqliteError& e) {
            LedgerFailed(e);
        }
    }
    if (m_unsentSinceRestart.empty()) {
        return;
    }
    const auto unsent = m_unsentSinceRestart.find(update.ClOrderID);
    if (unsent == m_unsentSinceRestart.end()) {
        return;
    }
    const auto position = m_tracker.PositionOf(update.OrderRecordId);
    if (update.OrderStatus == QVXOrderStatus::Rejected && update.CumExecQuantity == 0 && position) {
        NotSent(*position);
    }
    // Any other word from the broker: it had the order after all.
    m_unsentSinceRestart.erase(unsent);
}

void OrderRecords::Rejected(const QVXRejectStruct& reject) {
    if (m_ledger != nullptr) {
        try {
            m_ledger->Rejected(reject);
        } catch (const SqliteError& e) {
            LedgerFailed(e);
        }
    }
    if (m_unsentSinceRestart.erase(reject.ClOrderID) != 0) {
        if (const auto position = m_tracker.PositionOf(reject.ClOrderID)) {
            NotSent(*position);
        }
    }
}

void OrderRecords::Warned(const QVXOrderWarning& warning) {
    if (m_ledger != nullptr) {
        try {
            m_ledger->Warned(warning);
        } catch (const SqliteError& e) {
            LedgerFailed(e);
        }
    }
}

void OrderRecords::NotSent(size_t position) {
    m_tracker.EndWithNote(position, kNotSentNote);
    ++m_notSent;
}

void OrderRecords::SaveChanges() {
    const std::vector<uint32_t> changed = m_tracker.TakeChangedOrders();
    if (m_ledger == nullptr) {
        return;
    }
    try {
        for (const uint32_t position : changed) {
            m_ledger->Save(m_tracker.Snapshot(position));
        }
        m_ledger->Flush();
    } catch (const SqliteError& e) {
        LedgerFailed(e);
    }
}

void OrderRecords::LedgerFailed(const std::exception& e) {
    m_ledger.reset();
    m_failed = true;
    m_boxes.show(std::string("The order journal cannot be written any more: ") + e.what() +
                     "\r\nOrders are still tracked on screen, but the day will not survive a "
                     "restart of Wicker. No order can be sent until Wicker is started again "
                     "with a journal it can write.",
                 48, "Order Journal");
}

RestoreReport OrderRecords::RestoreToday(Platform& platform) {
    RestoreReport report;
    if (m_ledger == nullptr) {
        return report;
    }
    // Orders the platform does not follow get record ids of their own, below any it gives.
    int32_t ownRecordId = 0;
    std::vector<LedgerOrder> today;
    try {
        today = m_ledger->TodaysOrders();
    } catch (const std::exception& e) {
        LedgerFailed(e);
        return report;
    }
    for (LedgerOrder& o : today) {
        TrackedOrder& t = o.tracked;
        const bool open = IsOpen(o);
        const int32_t recordId = open ? platform.AdoptOrder(KnownOrderOf(o)) : 0;
        if (recordId > 0) {
            t.state.OrderRecordId = recordId;
            ++report.adopted;
            if (o.handOff == HandOffState::Written) {
                m_unsentSinceRestart.insert(t.state.ClOrderID);
            }
        } else {
            t.state.OrderRecordId = --ownRecordId;
        }
        const size_t position = m_tracker.Orders().size();
        m_tracker.Restore(t);
        if (m_tracker.Orders().size() == position) {
            continue; // not a basket order
        }
        ++report.restored;
        if (open && recordId <= 0) {
            const bool written = o.handOff == HandOffState::Written;
            m_tracker.EndWithNote(position, written ? kNotSentNote : kUnknownNote);
            ++(written ? report.notSent : report.unknown);
        }
    }
    SaveChanges();
    m_notSent += report.notSent;
    return report;
}

std::optional<int16_t> OrderRecords::HighestBasketSeqToday() {
    if (m_ledger == nullptr) {
        return std::nullopt;
    }
    try {
        return m_ledger->HighestBasketSeqToday();
    } catch (const SqliteError& e) {
        LedgerFailed(e);
        return std::nullopt;
    }
}

} // namespace wicker
