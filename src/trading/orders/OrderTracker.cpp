#include "trading/orders/OrderTracker.h"

#include "common/Formats.h"
#include "common/RuntimeError.h"
#include "platform/OrderTicket.h"
#include "trading/orders/BasketOrderIds.h"

#include <optional>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace wicker {

namespace {

/// A memo names a basket when it parses and its name is not empty.
bool IsBasket(const std::optional<BasketMemoId>& basket) {
    return basket && !basket->basketId.empty();
}

} // namespace

OrderTracker::OrderTracker(MessageBoxes& boxes, const Clock& clock)
    : m_boxes(boxes), m_clock(clock) {}

OrderTracker::UpdateOutcome
OrderTracker::OnQVXOrderUpdate(const QVXOrderStruct& structOrderUpdate) {
    if (const auto found = m_byRecordId.find(structOrderUpdate.OrderRecordId)) {
        m_orders[*found].UpdateOrder(structOrderUpdate, false, &m_recentTexts);
        m_answers.Answered(*found);
        MarkChanged(*found);
        if (!structOrderUpdate.ClOrderID.empty()) {
            SetCurrentClOrderId(*found, structOrderUpdate.ClOrderID);
        }
        m_ordersChanged = true;
        return UpdateOutcome::Updated;
    }
    try {
        if (!IsBasket(BasketOf(structOrderUpdate.Memo))) {
            return UpdateOutcome::NotABasketOrder;
        }
    } catch (const RuntimeError&) {
        // Only a memo of someone else's making can get here; such an order is not ours.
        return UpdateOutcome::BadMemo;
    }
    OrderUpdate order;
    order.m_strBasketId = m_recentTexts.basketId.of(m_lastBasket->basketId);
    order.m_nBasketSeq = m_lastBasket->basketSeq;
    order.m_strClOrderId = structOrderUpdate.ClOrderID;
    order.UpdateOrder(structOrderUpdate, false, &m_recentTexts);
    Append(std::move(order), NowText(), true);
    m_ordersChanged = true;
    return UpdateOutcome::Added;
}

namespace {

// What a hand-off knows of an order before any report: one rule for the record and for the
// tracked order a send fills in place.
constexpr const char* kHandedOffAction = "Pending New";
/// "BUY" leaves as it was sent; every report gives the one-letter code.
std::string_view HandedOffSide(std::string_view side) {
    return side.substr(0, 1);
}
bool IsMarketOnOpen(int32_t priceType, const std::string& tif) {
    return priceType == OrderPriceType::Market && tif == "O";
}
bool IsMarketOnClose(int32_t priceType) {
    return priceType == OrderPriceType::MarketOnClose;
}

QVXOrderStruct HandedOffTicketRecord(const OrderTicket& t, int32_t orderRecordId,
                                     std::string orderTime) {
    QVXOrderStruct r;
    r.Account = t.account;
    r.Action = kHandedOffAction;
    r.Destination = t.destination;
    r.Side = HandedOffSide(t.side);
    r.Tif = t.tif;
    r.OrderTime = std::move(orderTime);
    r.LmtPrice = t.lmtPrice;
    r.Display = t.maxFloor;
    r.LvsQuantity = t.quantity;
    r.OrderRecordId = orderRecordId;
    r.OrderStatus = QVXOrderStatus::PendingNew;
    r.PriceTypeCode = t.priceType;
    r.Moo = IsMarketOnOpen(r.PriceTypeCode, r.Tif);
    r.Moc = IsMarketOnClose(r.PriceTypeCode);
    r.Quantity = t.quantity;
    r.Memo = t.memo;
    r.ClOrderID = t.clOrderID;
    r.Symbol = t.symbol;
    return r;
}

OrderTicket TicketOf(const QVXOrder& order) {
    return {order.Account(),     order.Side(),      order.Symbol(),    order.Quantity(),
            order.LmtPrice(),    order.PriceType(), order.ClOrderID(), order.Tif(),
            order.Destination(), order.MaxFloor(),  order.Memo()};
}

} // namespace

QVXOrderStruct HandedOffRecord(const QVXOrder& order, int32_t orderRecordId,
                               std::string orderTime) {
    return HandedOffTicketRecord(TicketOf(order), orderRecordId, std::move(orderTime));
}

void OrderTracker::OnOrderHandedOff(const QVXOrder& order, int32_t orderRecordId) {
    OnOrderHandedOff(TicketOf(order), orderRecordId);
}

void OrderTracker::OnOrderHandedOff(OrderTicket&& ticket, int32_t orderRecordId) {
    if (m_byRecordId.find(orderRecordId)) {
        // Already tracked under this id: the hand-off updates it as a report would.
        OnQVXOrderUpdate(HandedOffTicketRecord(ticket, orderRecordId, NowText()));
        return;
    }
    // A send hands off thousands of orders while the trader waits: the record is made
    // straight from the ticket, with what HandedOffRecord would give it, its texts moved.
    try {
        if (!IsBasket(BasketOf(ticket.memo))) {
            return;
        }
    } catch (const RuntimeError&) {
        return;
    }
    const std::string& now = NowText();
    const auto position = static_cast<uint32_t>(m_orders.size());
    OrderUpdate& o = m_orders.emplace_back();
    try {
        o.m_strBasketId = m_recentTexts.basketId.of(m_lastBasket->basketId);
        o.m_nBasketSeq = m_lastBasket->basketSeq;
        o.m_strClOrderId = std::move(ticket.clOrderID);
        o.m_strAccount = m_recentTexts.account.of(ticket.account);
        o.m_strAction = m_recentTexts.action.of(kHandedOffAction);
        o.m_strDestination = m_recentTexts.destination.of(ticket.destination);
        o.m_strInstrument = std::move(ticket.symbol);
        o.m_strOrderTime = m_recentTexts.orderTime.of(now);
        o.m_strSide = m_recentTexts.side.of(HandedOffSide(ticket.side));
        o.m_strTif = m_recentTexts.tif.of(ticket.tif);
        o.m_fLmtPrice = ticket.lmtPrice;
        o.m_nDisplay = ticket.maxFloor;
        o.m_nLvsQuantity = ticket.quantity;
        o.m_nOrderRecordId = orderRecordId;
        o.m_nOrderStatus = QVXOrderStatus::PendingNew;
        o.m_nPriceType = ticket.priceType;
        o.m_nQuantity = ticket.quantity;
        o.m_bMoo = IsMarketOnOpen(o.m_nPriceType, o.m_strTif);
        o.m_bMoc = IsMarketOnClose(o.m_nPriceType);
        // The send's own record has it: not a change to write.
        IndexLast(now, false);
    } catch (...) {
        m_orders.pop_back(); // never an order the indexes do not know
        throw;
    }
    m_answers.Expect(position, m_clock.now());
    m_ordersChanged = true;
}

const std::optional<BasketMemoId>& OrderTracker::BasketOf(const std::string& memo) {
    if (m_lastMemo.empty() || memo != m_lastMemo) {
        m_lastMemo.clear();
        m_lastBasket = ParseBasketMemo(memo); // may throw: then nothing is kept
        m_lastMemo = memo;
    }
    return m_lastBasket;
}

void OrderTracker::SetCurrentClOrderId(uint32_t position, const std::string& clOrderId) {
    // Most reports repeat the id the order was sent with: no entry, and no lookup then.
    if (clOrderId == m_orders[position].m_strClOrderId) {
        if (!m_currentClOrderIds.empty()) {
            m_currentClOrderIds.erase(position);
        }
        return;
    }
    m_currentClOrderIds[position] = clOrderId;
}

const std::string& OrderTracker::Note(size_t orderIndex) const {
    static const std::string none;
    const auto found = m_notes.find(static_cast<uint32_t>(orderIndex));
    return found == m_notes.end() ? none : found->second;
}

const std::string& OrderTracker::NowText() {
    const auto second =
        std::chrono::duration_cast<std::chrono::seconds>(m_clock.now().time_since_epoch()).count();
    if (second != m_nowTextSecond || m_nowText.empty()) {
        m_nowText = FormatTime12(m_clock.localNow());
        m_nowTextSecond = second;
    }
    return m_nowText;
}

std::string OrderTracker::StatusText(size_t orderIndex) const {
    if (const std::string& note = Note(CheckedPosition(orderIndex)); !note.empty()) {
        return note;
    }
    switch (m_answers.StateOf(static_cast<uint32_t>(orderIndex))) {
    case AnswerWatch::State::Pending:
        return "Pending New";
    case AnswerWatch::State::NoAnswer:
        return "No answer";
    case AnswerWatch::State::Answered:
        break;
    }
    return QVXOrderStatusText(m_orders[orderIndex].m_nOrderStatus);
}

void OrderTracker::Append(OrderUpdate&& order, const std::string& seenAt, bool changed) {
    m_orders.push_back(std::move(order));
    IndexLast(seenAt, changed);
}

void OrderTracker::IndexLast(const std::string& seenAt, bool changed) {
    const auto position = static_cast<uint32_t>(m_orders.size() - 1);
    const OrderUpdate& order = m_orders.back();
    // A send's orders follow one another: the group of the last order is tried first.
    uint32_t group = 0;
    if (const BasketGroup* last = m_groupOf.empty() ? nullptr : &m_groups[m_groupOf.back()];
        last != nullptr && last->seq == order.m_nBasketSeq && last->id == order.m_strBasketId) {
        group = m_groupOf.back();
    } else {
        auto [found, isNew] =
            m_groupIndex.try_emplace(BasketKey{order.m_strBasketId, order.m_nBasketSeq}, 0);
        if (isNew) {
            found->second = static_cast<uint32_t>(m_groups.size());
            m_groups.push_back(BasketGroup{order.m_strBasketId, order.m_nBasketSeq, seenAt});
        }
        group = found->second;
    }
    if (m_seenTexts.empty() || m_seenTexts.back() != seenAt) {
        m_seenTexts.push_back(seenAt);
    }
    m_seenAtOf.push_back(static_cast<uint32_t>(m_seenTexts.size() - 1));
    m_isChanged.push_back(false);
    if (changed) {
        MarkChanged(position);
    }
    m_groupOf.push_back(group);
    m_byRecordId.emplace(order.m_nOrderRecordId, position);
}

void OrderTracker::OnQVXOrderReject(const QVXRejectStruct& structOrderReject) {
    ByClOrderId().forEach(structOrderReject.ClOrderID, FirstClOrderIdOf(), [&](uint32_t position) {
        m_orders[position].m_nLvsQuantity = 0;
        MarkChanged(position);
        if (m_answers.StateOf(position) != AnswerWatch::State::Answered) {
            // Refused before any report: the reject is its only answer.
            m_orders[position].m_nOrderStatus = QVXOrderStatus::Rejected;
            m_answers.Answered(position);
        }
        // The open counts shown changed; without this they would wait for the next update.
        m_ordersChanged = true;
    });
    m_rejects.push_back(
        "Order: " + structOrderReject.Side + " " + std::to_string(structOrderReject.Quantity) +
        " " + structOrderReject.Symbol +
        " was rejected. Code:  " + std::to_string(structOrderReject.RejectReason) +
        (structOrderReject.ReasonText.empty() ? "" : " - " + structOrderReject.ReasonText) +
        "\r\n");
}

void OrderTracker::OnQVXOrderWarning(const QVXOrderWarning& warning) {
    std::optional<uint32_t> position;
    if (const auto found = m_byRecordId.find(warning.OrderRecordId)) {
        position = *found;
    } else {
        position = ByClOrderId().first(warning.ClOrderID, FirstClOrderIdOf());
    }
    if (position) {
        m_notes[*position] = warning.Text;
        MarkChanged(*position);
        m_ordersChanged = true;
    }
    m_rejects.push_back("Warning: order " + warning.ClOrderID + " " + warning.Symbol + ": " +
                        warning.Text + "\r\n");
}

bool OrderTracker::Timer1sec() {
    if (m_inTick) {
        return false;
    }
    m_inTick = true;
    struct TickEnd {
        bool& inTick;
        ~TickEnd() { inTick = false; }
    } tickEnd{m_inTick};

    if (m_answers.Flag(m_clock.now(), m_noAnswerAfter) > 0) {
        m_ordersChanged = true;
    }

    if (!m_rejects.empty()) {
        std::string text;
        for (const std::string& reject : m_rejects) {
            text += reject;
        }
        // Taken before the box opens: rejects arriving while it is shown wait for the next
        // tick instead of being cleared unseen.
        m_rejects.clear();
        m_boxes.show(text, 48, "Rejection Notification");
    }
    if (!m_ordersChanged) {
        return false;
    }
    m_ordersChanged = false;
    FillOrderList();
    // A window may close itself while it refreshes: walk a copy.
    std::vector<std::function<void()>> fills;
    fills.reserve(m_summaryWindows.size());
    for (const auto& [handle, fillList] : m_summaryWindows) {
        fills.push_back(fillList);
    }
    for (const auto& fillList : fills) {
        fillList();
    }
    return true;
}

void OrderTracker::Clear() {
    m_orders.clear();
    m_groupOf.clear();
    m_currentClOrderIds.clear();
    m_notes.clear();
    m_seenAtOf.clear();
    m_seenTexts.clear();
    m_changed.clear();
    m_isChanged.clear();
    m_answers.Clear();
    m_byRecordId.clear();
    m_byClOrderId.clear();
    m_clOrderIdsIndexed = 0;
    m_groupIndex.clear();
    m_groups.clear();
    m_rows.clear();
    m_lines.clear();
    m_symbols.clear();
    m_rejects.clear();
    // Open summary windows still list the old orders: the next tick refills them.
    m_ordersChanged = true;
}

void OrderTracker::FillOrderList() {
    m_rows.clear();
    m_lines.clear();
    m_symbols.clear();
    m_rows.resize(m_groups.size());
    for (size_t g = 0; g < m_groups.size(); ++g) {
        OrderRow& row = m_rows[g];
        row.m_nBasketNum = m_groups[g].seq;
        row.m_strBasketName = m_groups[g].id;
        row.m_strTime = m_groups[g].firstSeen;
        row.m_strListKey = "Basket " + std::to_string(m_groups[g].seq);
    }
    std::unordered_set<std::string> seenSymbols;
    for (size_t i = 0; i < m_orders.size(); ++i) {
        const OrderUpdate& order = m_orders[i];
        m_rows[m_groupOf[i]].Add(order);
        if (seenSymbols.insert(order.m_strInstrument).second) {
            m_symbols.push_back(order.m_strInstrument);
        }
    }
    m_lines.reserve(m_rows.size());
    for (OrderRow& row : m_rows) {
        row.m_fPercentFill = row.PercentFilled();
        m_lines.push_back(BasketListTexts(row, IndexText(row)));
    }
}

void OrderTracker::UpdateLiveColumns() {
    for (size_t r = 0; r < m_rows.size() && r < m_lines.size(); ++r) {
        OrderRow& row = m_rows[r];
        row.m_fPercentFill = row.PercentFilled();
        m_lines[r][colPercentFilled] = Format(row.m_fPercentFill, "#0.00");
        m_lines[r][colIndex] = IndexText(row);
        m_lines[r][colSide] = SideDisplayText(row.m_strSide);
    }
}

std::string OrderTracker::IndexText(const OrderRow& row) const {
    return m_indexText ? m_indexText(row) : std::string();
}

void OrderTracker::setIndexText(std::function<std::string(const OrderRow&)> indexText) {
    m_indexText = std::move(indexText);
}

int OrderTracker::AddOrderSummaryWindow(std::function<void()> fillList) {
    const int handle = m_nextWindowHandle++;
    m_summaryWindows.emplace(handle, std::move(fillList));
    return handle;
}

void OrderTracker::RemoveOrderSummaryWindow(int handle) {
    m_summaryWindows.erase(handle);
}

const OrderUpdate* OrderTracker::FindOrder(int32_t orderRecordId) const {
    const auto found = m_byRecordId.find(orderRecordId);
    return found ? &m_orders[*found] : nullptr;
}

const std::string& OrderTracker::CurrentClOrderId(size_t orderIndex) const {
    const uint32_t position = CheckedPosition(orderIndex);
    const auto current = m_currentClOrderIds.find(position);
    return current == m_currentClOrderIds.end() ? m_orders[position].m_strClOrderId
                                                : current->second;
}

const ClOrderIdIndex& OrderTracker::ByClOrderId() const {
    for (; m_clOrderIdsIndexed < m_orders.size(); ++m_clOrderIdsIndexed) {
        m_byClOrderId.add(m_orders[m_clOrderIdsIndexed].m_strClOrderId,
                          static_cast<uint32_t>(m_clOrderIdsIndexed));
    }
    return m_byClOrderId;
}

uint32_t OrderTracker::CheckedPosition(size_t orderIndex) const {
    if (orderIndex >= m_orders.size()) {
        throw std::out_of_range("no tracked order at position " + std::to_string(orderIndex));
    }
    return static_cast<uint32_t>(orderIndex);
}

void OrderTracker::ZeroLeaves(size_t orderIndex) {
    m_orders[CheckedPosition(orderIndex)].m_nLvsQuantity = 0;
    MarkChanged(static_cast<uint32_t>(orderIndex));
}

std::optional<size_t> OrderTracker::PositionOf(int32_t orderRecordId) const {
    const auto found = m_byRecordId.find(orderRecordId);
    return found ? std::optional<size_t>(*found) : std::nullopt;
}

std::optional<size_t> OrderTracker::PositionOf(const std::string& clOrderId) const {
    const auto found = ByClOrderId().first(clOrderId, FirstClOrderIdOf());
    return found ? std::optional<size_t>(*found) : std::nullopt;
}

void OrderTracker::EndWithNote(size_t orderIndex, std::string note) {
    const uint32_t position = CheckedPosition(orderIndex);
    m_notes[position] = std::move(note);
    m_orders[orderIndex].m_nLvsQuantity = 0;
    m_answers.Answered(position);
    MarkChanged(position);
    m_ordersChanged = true;
}

void OrderTracker::MarkChanged(uint32_t position) {
    if (!m_isChanged[position]) {
        m_isChanged[position] = true;
        m_changed.push_back(position);
    }
}

std::vector<uint32_t> OrderTracker::TakeChangedOrders() {
    for (const uint32_t position : m_changed) {
        m_isChanged[position] = false;
    }
    return std::exchange(m_changed, {});
}

TrackedOrder OrderTracker::Snapshot(size_t orderIndex) const {
    const OrderUpdate& o = m_orders.at(orderIndex);
    TrackedOrder t;
    QVXOrderStruct& r = t.state;
    r.Account = o.m_strAccount;
    r.Action = o.m_strAction;
    r.Destination = o.m_strDestination;
    r.ExchClOrderId = o.m_strExchClOrderId;
    r.ExchOrderId = o.m_strExchOrderId;
    r.Instrument = o.m_strInstrument;
    r.LogMessage = o.m_strLogMessage;
    r.OrderTime = o.m_strOrderTime;
    r.PriceType = o.m_strPriceType;
    r.Side = o.m_strSide;
    r.Tif = o.m_strTif;
    r.UpdateTime = o.m_strUpdateTime;
    r.AvgExecPrice = o.m_fAvgExecPrice;
    r.ExecPriceLmt = o.m_fExecPriceLmt;
    r.LmtPrice = o.m_fLmtPrice;
    r.SeqNum = o.m_nSeqNum;
    r.CumExecQuantity = o.m_nCumExecQuantity;
    r.Display = o.m_nDisplay;
    r.LvsQuantity = o.m_nLvsQuantity;
    r.OrderRecordId = o.m_nOrderRecordId;
    r.OrderStatus = o.m_nOrderStatus;
    r.PriceTypeCode = o.m_nPriceType;
    r.Quantity = o.m_nQuantity;
    r.Moo = o.m_bMoo;
    r.Moc = o.m_bMoc;
    // The memo's pieces come back as the basket id and send number: this memo gives them again.
    r.Memo = BasketMemo(o.m_strBasketId.str(), o.m_nBasketSeq);
    r.ClOrderID = o.m_strClOrderId;
    r.Symbol = o.m_strInstrument;
    t.currentClOrderId = CurrentClOrderId(orderIndex);
    t.note = Note(orderIndex);
    t.seenAt = SeenAt(orderIndex);
    t.answer = m_answers.StateOf(static_cast<uint32_t>(orderIndex));
    return t;
}

void OrderTracker::Restore(const TrackedOrder& tracked) {
    OrderUpdate order;
    order.UpdateOrder(tracked.state, true);
    if (order.m_strBasketId.empty() || m_byRecordId.find(tracked.state.OrderRecordId)) {
        return;
    }
    const auto position = static_cast<uint32_t>(m_orders.size());
    // The ledger has it as it is: not a change to write.
    Append(std::move(order), tracked.seenAt, false);
    if (!tracked.currentClOrderId.empty()) {
        SetCurrentClOrderId(position, tracked.currentClOrderId);
    }
    if (!tracked.note.empty()) {
        m_notes[position] = tracked.note;
    }
    if (tracked.answer != AnswerWatch::State::Answered) {
        m_answers.Expect(position, m_clock.now());
    }
    m_ordersChanged = true;
}

} // namespace wicker
