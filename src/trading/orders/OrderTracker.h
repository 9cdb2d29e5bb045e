#pragma once

#include "common/ChunkedList.h"
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/OrderTicket.h"
#include "platform/QVXOrder.h"
#include "platform/QVXOrderStruct.h"
#include "trading/orders/AnswerWatch.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/ClOrderIdIndex.h"
#include "trading/orders/OrderRow.h"
#include "trading/orders/OrderUpdate.h"
#include "trading/orders/RecordIdIndex.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace wicker {

/// Everything order tracking knows of one order: what the order ledger keeps so that a
/// restarted program shows the order as it was.
struct TrackedOrder {
    QVXOrderStruct state;         ///< the fields the platforms report, the first client id
    std::string currentClOrderId; ///< the latest client order id (a replace changes it)
    std::string note;             ///< a warning about its reports
    std::string seenAt;           ///< when it was first tracked, "hh:mm:ss AM/PM"
    AnswerWatch::State answer = AnswerWatch::State::Answered;
};

/// The record of an order handed to the platform under `orderRecordId` before any answer:
/// "Pending New", open for its whole quantity.
QVXOrderStruct HandedOffRecord(const QVXOrder& order, int32_t orderRecordId, std::string orderTime);

/// Follows every basket order through the platform's order events: one OrderUpdate per
/// order in order of first appearance, the reject queue, the orders-changed flag, and the
/// per-basket totals of lvBaskets rebuilt by the one-second tick. All calls come from the
/// UI thread.
class OrderTracker {
public:
    /// What an order update did.
    enum class UpdateOutcome { Updated, Added, NotABasketOrder, BadMemo };

    OrderTracker(MessageBoxes& boxes, const Clock& clock);

    /// OnQVXOrderUpdate: updates the first order with the record's id, else records a new
    /// basket order. Orders of no basket are ignored; so is a new order whose memo has a send
    /// number that is no number (it is never recorded).
    UpdateOutcome OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate);

    /// An order of a basket send was handed to the platform, which took it under
    /// `orderRecordId`: it is tracked from now on, "Pending New" and open for its whole
    /// quantity until the broker's first report. An order of no basket is not tracked. The
    /// hand-off does not count as a change (TakeChangedOrders): the send's own record has it.
    void OnOrderHandedOff(const QVXOrder& order, int32_t orderRecordId);
    /// The same for an order object the send is done with: the ticket's texts are moved into
    /// tracking instead of copied, and the ticket is left empty.
    void OnOrderHandedOff(OrderTicket&& ticket, int32_t orderRecordId);
    /// When the order at `orderIndex` was first tracked, "hh:mm:ss AM/PM".
    const std::string& SeenAt(size_t orderIndex) const {
        return m_seenTexts[m_seenAtOf.at(orderIndex)];
    }
    /// How long an order may wait for the broker's first report before it shows "No answer".
    void setNoAnswerAfter(std::chrono::milliseconds limit) { m_noAnswerAfter = limit; }
    /// Orders flagged "No answer" and not answered since.
    size_t NoAnswerCount() const { return m_answers.NoAnswerCount(); }
    /// The status an order shows: a warning about its reports first, then "Pending New" or
    /// "No answer" until the broker's first report, then the broker's status.
    std::string StatusText(size_t orderIndex) const;
    /// OnQVXOrderReject: every order with the reject's client order id stops counting as
    /// open, and the reject waits in the queue for the next tick.
    void OnQVXOrderReject(const QVXRejectStruct& structOrderReject);
    /// A report the platform could not use: the order (found by record id, else by client
    /// order id) carries the text as its note, and a line waits in the reject queue.
    void OnQVXOrderWarning(const QVXOrderWarning& warning);
    /// What Wicker itself knows of order `orderIndex` beyond the broker's status (a warning
    /// about its reports); empty when nothing.
    const std::string& Note(size_t orderIndex) const;

    /// The order at `orderIndex` as the ledger keeps it.
    TrackedOrder Snapshot(size_t orderIndex) const;
    /// Tracks an order of an earlier run again, as Snapshot gave it (with the record id the
    /// platform follows it under now). A pending order waits for its answer from now on.
    void Restore(const TrackedOrder& order);
    /// Positions of the orders changed since the last call, each once, in order of change.
    std::vector<uint32_t> TakeChangedOrders();
    /// Timer1sec: flags orders that waited too long for an answer, shows the queued rejects in one
    /// "Rejection Notification", then, when orders changed, rebuilds lvBaskets and refreshes every
    /// open order-summary window. Returns true when lvBaskets was rebuilt. A tick that starts while
    /// an earlier tick's box is still open does nothing.
    bool Timer1sec();

    /// Rebuilds the OrderRow collection and the lvBaskets texts from all orders.
    void FillOrderList();

    /// Timer2sec's share: writes "% Filled", "Index" and "Side" of every lvBaskets line anew.
    void UpdateLiveColumns();

    /// Text of the "Index" column of a basket (the quote board computes it); empty without.
    void setIndexText(std::function<std::string(const OrderRow&)> indexText);

    /// Registers an open order-summary window's FillList; returns its handle.
    int AddOrderSummaryWindow(std::function<void()> fillList);
    void RemoveOrderSummaryWindow(int handle);

    /// All basket orders seen, in order of first appearance.
    const ChunkedList<OrderUpdate>& Orders() const { return m_orders; }
    /// Position of the order with this record id, or of the first order sent under this
    /// client order id.
    std::optional<size_t> PositionOf(int32_t orderRecordId) const;
    std::optional<size_t> PositionOf(const std::string& clOrderId) const;
    /// Puts a note on an order (shown as its status) and counts it as answered and done.
    void EndWithNote(size_t orderIndex, std::string note);
    /// The first order with this platform order record id, or null.
    const OrderUpdate* FindOrder(int32_t orderRecordId) const;
    /// The client order id of order `orderIndex` as last reported (a replace changes it;
    /// OrderUpdate keeps the first one, by which rejects find the order).
    const std::string& CurrentClOrderId(size_t orderIndex) const;
    /// Sets an order's remaining quantity to 0, so that it no longer counts as open.
    void ZeroLeaves(size_t orderIndex);
    /// Forgets every order, reject and lvBaskets row ("Clear Trading Data"). The open
    /// order-summary windows stay registered and are refreshed at the next tick.
    void Clear();

    /// Rows and lvBaskets lines of the last FillOrderList, in the same order.
    const std::vector<OrderRow>& Rows() const { return m_rows; }
    const std::vector<BasketListLine>& BasketListLines() const { return m_lines; }
    /// Distinct symbols of the basket orders at the last FillOrderList, in first-seen order.
    const std::vector<std::string>& Symbols() const { return m_symbols; }

    bool OrdersChanged() const { return m_ordersChanged; }
    /// The clock the tracker stamps times with; what acts on its orders stamps with it too.
    const Clock& clock() const { return m_clock; }
    /// Reject texts not yet shown, in arrival order.
    const std::vector<std::string>& PendingRejects() const { return m_rejects; }

private:
    struct BasketKey {
        std::string id;
        int16_t seq = 0;
        bool operator<(const BasketKey& o) const { return seq != o.seq ? seq < o.seq : id < o.id; }
    };
    struct BasketGroup {
        std::string id;
        int16_t seq = 0;
        std::string firstSeen; ///< "hh:mm:ss AM/PM"
    };

    /// `changed`: the order is listed for TakeChangedOrders (not when a record has it already).
    void Append(OrderUpdate&& order, const std::string& seenAt, bool changed);
    /// Files the last order of m_orders (at its position) in every index and list.
    void IndexLast(const std::string& seenAt, bool changed);
    /// The basket of a memo; the last memo's answer is kept, as a send's orders share one.
    const std::optional<BasketMemoId>& BasketOf(const std::string& memo);
    /// The client order id index with every order in it.
    const ClOrderIdIndex& ByClOrderId() const;
    /// `orderIndex` as a position; std::out_of_range when no order is there.
    uint32_t CheckedPosition(size_t orderIndex) const;
    /// How the client order id index reads an order's first id.
    auto FirstClOrderIdOf() const {
        return [this](uint32_t position) -> const std::string& {
            return m_orders[position].m_strClOrderId;
        };
    }
    /// Sets the latest client order id of the order at `position`.
    void SetCurrentClOrderId(uint32_t position, const std::string& clOrderId);
    /// The clock's time as "hh:mm:ss AM/PM", made once a second: a send stamps thousands.
    const std::string& NowText();
    void MarkChanged(uint32_t position);
    std::string IndexText(const OrderRow& row) const;

    MessageBoxes& m_boxes;
    const Clock& m_clock;

    ChunkedList<OrderUpdate> m_orders;
    SharedOrderTexts m_recentTexts;  ///< what the orders tracked lately share
    std::vector<uint32_t> m_groupOf; ///< basket group of each order, by position
    /// Latest client order id of the few orders whose id changed (a replace), by position.
    std::unordered_map<uint32_t, std::string> m_currentClOrderIds;
    std::unordered_map<uint32_t, std::string> m_notes; ///< local note of the few orders with one
    /// When each order was first tracked: a position in m_seenTexts, which holds each
    /// "hh:mm:ss AM/PM" once (a send's thousands of orders share a few seconds).
    std::vector<uint32_t> m_seenAtOf;
    std::vector<std::string> m_seenTexts;
    std::vector<uint32_t> m_changed; ///< positions changed since TakeChangedOrders
    std::vector<bool> m_isChanged;   ///< by position: listed in m_changed
    AnswerWatch m_answers;
    std::chrono::milliseconds m_noAnswerAfter{std::chrono::seconds(10)};
    RecordIdIndex m_byRecordId;
    /// By the first client order id (OrderUpdate::m_strClOrderId). Only rejects and warnings
    /// look orders up by it: orders are added when it is read, not while a send hands them off.
    mutable ClOrderIdIndex m_byClOrderId;
    mutable size_t m_clOrderIdsIndexed = 0; ///< orders before this position are in it
    std::map<BasketKey, uint32_t> m_groupIndex;
    std::vector<BasketGroup> m_groups;

    std::vector<OrderRow> m_rows;
    std::vector<BasketListLine> m_lines;
    std::vector<std::string> m_symbols;
    std::vector<std::string> m_rejects;
    bool m_ordersChanged = false;
    bool m_inTick = false;
    int64_t m_nowTextSecond = 0;
    std::string m_nowText;
    std::string m_lastMemo;
    std::optional<BasketMemoId> m_lastBasket;

    std::function<std::string(const OrderRow&)> m_indexText;
    std::map<int, std::function<void()>> m_summaryWindows;
    int m_nextWindowHandle = 1;
};

} // namespace wicker
