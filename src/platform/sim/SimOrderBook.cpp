#include "platform/sim/SimOrderBook.h"

#include "common/Text.h"
#include "platform/sim/SimOrderChecks.h"

#include <algorithm>
#include <cstdio>
#include <functional>

namespace wicker {
namespace {

std::string PriceTypeText(int32_t priceType, bool onOpen) {
    switch (priceType) {
    case OrderPriceType::Market:
        return onOpen ? "MOO" : "MKT";
    case OrderPriceType::MarketOnClose:
        return "MOC";
    default:
        return "LMT";
    }
}

std::string DollarText(SimUnits units) {
    char text[32];
    // Penny prices with two decimals, sub-penny ones with four.
    if (units % 100 == 0) {
        std::snprintf(text, sizeof text, "%.2f", SimToDollars(units));
    } else {
        std::snprintf(text, sizeof text, "%.4f", SimToDollars(units));
    }
    return text;
}

/// The side as the one letter of the reports; 0 when the side is none the simulator knows.
char SideLetter(std::string_view side) {
    const std::string code = SimSideCode(side);
    return code.empty() ? char{0} : code.front();
}

} // namespace

bool SimOrderBook::Order::working() const {
    return status == QVXOrderStatus::Open || status == QVXOrderStatus::PartiallyFilled;
}

bool SimOrderBook::Order::knows(const std::string& clOrderId) const {
    return clOrderId == ticket.clOrderID() ||
           std::find(formerIds.begin(), formerIds.end(), clOrderId) != formerIds.end();
}

SimOrderBook::Kind SimOrderBook::KindOf(int32_t priceType, std::string_view tif) {
    if (priceType == OrderPriceType::Limit) {
        return Kind::Limit;
    }
    if (priceType == OrderPriceType::MarketOnClose) {
        return Kind::OnClose;
    }
    return tif == "O" ? Kind::OnOpen : Kind::Market;
}

SimOrderBook::SimOrderBook(const SimSettings& settings, SimMarket& market,
                           PlatformEventQueue& events, Clock::TimePoint origin)
    : m_settings(settings), m_market(market), m_events(events), m_origin(origin) {}

int32_t SimOrderBook::Refusal(const OrderTicket& t, size_t instrument) const {
    const SimQuoteState& s = m_market.instrument(instrument).state();
    const bool buy = SimSideCode(t.side) == "B";
    // The exposure of a market order is judged at the price it would trade at now.
    const double price =
        t.priceType == OrderPriceType::Limit ? t.lmtPrice : SimToDollars(buy ? s.ask : s.bid);
    return CheckPreTradeLimits(m_settings.limits, t.destination, t.quantity, price);
}

int32_t SimOrderBook::submit(const OrderTicket& ticket, int64_t nowUs) {
    if (const int32_t code = CheckSimOrderFields(ticket); code != 0) {
        return code;
    }
    const size_t instrument = m_market.instrumentOf(ticket.symbol);
    if (const int32_t code = Refusal(ticket, instrument); code != 0) {
        return code;
    }
    Order& o = Accept(ticket, instrument, nowUs);
    const int32_t recordId = o.recordId;
    OnArrival(o, ticket, nowUs);
    return recordId;
}

SimOrderBook::Order& SimOrderBook::Accept(const OrderTicket& ticket, size_t instrument,
                                          int64_t nowUs) {
    Order o;
    o.ticket.set(ticket);
    o.side = SideLetter(ticket.side);
    o.instrument = instrument;
    o.recordId = static_cast<int32_t>(m_orders.size() + 1);
    o.status = QVXOrderStatus::Open;
    o.orderTime = TimeText(nowUs);
    o.kind = KindOf(ticket.priceType, ticket.tif);
    if (o.kind == Kind::Limit) {
        o.limit = SimLimitUnits(ticket.lmtPrice, o.buy());
    }
    m_orders.push_back(std::move(o));
    Order& accepted = m_orders.back();
    Publish(accepted, nowUs);
    return accepted;
}

int32_t SimOrderBook::adopt(const std::string& clOrderId, int64_t nowUs) {
    for (Order& o : m_orders) {
        if (o.knows(clOrderId)) {
            Publish(o, nowUs);
            return o.recordId;
        }
    }
    return 0;
}

void SimOrderBook::OnArrival(Order& o, const OrderTicket& ticket, int64_t nowUs) {
    SimRefusal refusal =
        SimBrokerRefusal(ticket, m_settings.limits.enabledDestinations, m_settings.routes);
    if (refusal.text.empty() && m_settings.halted.count(UCase(Trim(ticket.symbol))) != 0) {
        refusal = {kSimRejectHalted, "Symbol halted"};
    }
    if (!refusal.text.empty()) {
        QVXRejectStruct reject;
        reject.ClOrderID = ticket.clOrderID;
        reject.Side = o.sideText();
        reject.Quantity = ticket.quantity;
        reject.Symbol = ticket.symbol;
        reject.RejectReason = refusal.code;
        reject.ReasonText = std::move(refusal.text);
        o.lastFill = reject.ReasonText;
        m_events.push(std::move(reject));
        Finish(o, QVXOrderStatus::Rejected, nowUs);
        return;
    }
    m_market.pin(o.instrument, nowUs);
    Work(o, nowUs);
}

void SimOrderBook::Work(Order& o, int64_t nowUs) {
    if (o.kind == Kind::OnOpen || o.kind == Kind::OnClose) {
        m_auctions.emplace_back(nowUs + int64_t{m_settings.fillDelayMs} * 1000, o.recordId);
        std::push_heap(m_auctions.begin(), m_auctions.end(), std::greater<>{});
        return;
    }
    const bool fok = o.ticket.tif() == "F";
    const bool ioc = o.ticket.tif() == "I";
    TryFill(o, true, fok, nowUs);
    if ((fok || ioc) && o.working()) {
        o.lastFill = "Not marketable at once";
        Finish(o, QVXOrderStatus::Cancelled, nowUs);
        return;
    }
    if (o.working()) {
        ListWorking(o);
    }
}

void SimOrderBook::ListWorking(const Order& o) {
    if (m_working.size() <= o.instrument) {
        m_working.resize(o.instrument + 1);
    }
    m_working[o.instrument].push_back(o.recordId);
}

bool SimOrderBook::TryFill(Order& o, bool arrival, bool whole, int64_t nowUs) {
    const SimQuoteState& s = m_market.instrument(o.instrument).state();
    const SimUnits touch = o.buy() ? s.ask : s.bid;
    SimUnits price = touch;
    if (o.kind == Kind::Limit) {
        const bool marketable = o.buy() ? touch <= o.limit : touch >= o.limit;
        if (!marketable) {
            o.resting = o.resting || arrival;
            return false;
        }
        // A resting order trades at its own limit (on the grid, never worse than asked).
        if (o.resting) {
            price = o.buy() ? SimSnapDown(o.limit) : SimSnapUp(o.limit);
        }
    }
    const int32_t leaves = o.ticket.quantity - o.cum;
    const int32_t clip = m_settings.clipSize;
    const int32_t quantity = whole || clip <= 0 ? leaves : std::min(leaves, clip);
    Fill(o, quantity, price, nowUs);
    return true;
}

void SimOrderBook::Fill(Order& o, int32_t quantity, SimUnits price, int64_t nowUs) {
    o.cum += quantity;
    o.notional += price * quantity;
    o.lastFill = "Filled " + std::to_string(quantity) + " at " + DollarText(price);
    if (o.cum == o.ticket.quantity) {
        Finish(o, QVXOrderStatus::Filled, nowUs);
    } else {
        o.status = QVXOrderStatus::PartiallyFilled;
        Publish(o, nowUs);
    }
}

void SimOrderBook::Finish(Order& o, int32_t status, int64_t nowUs) {
    const bool pinned = o.working() && status != QVXOrderStatus::Rejected;
    o.status = status;
    if (pinned) {
        m_market.unpin(o.instrument);
    }
    Publish(o, nowUs);
}

void SimOrderBook::onTick(size_t instrument, int64_t nowUs) {
    if (instrument >= m_working.size() || m_working[instrument].empty()) {
        return;
    }
    std::vector<int32_t>& list = m_working[instrument];
    size_t kept = 0;
    for (size_t i = 0; i < list.size(); ++i) {
        Order& o = m_orders[static_cast<size_t>(list[i] - 1)];
        // An order replaced into market-on-open/-close waits for its auction instead.
        const bool trades = o.kind == Kind::Market || o.kind == Kind::Limit;
        if (trades && o.working()) {
            TryFill(o, false, false, nowUs);
        }
        if (trades && o.working()) {
            list[kept++] = list[i];
        }
    }
    list.resize(kept);
}

void SimOrderBook::cancel(const std::string& clOrderId, int32_t recordId, int64_t nowUs) {
    if (recordId <= 0 || static_cast<size_t>(recordId) > m_orders.size()) {
        return;
    }
    Order& o = m_orders[static_cast<size_t>(recordId - 1)];
    if (!clOrderId.empty() && !o.knows(clOrderId)) {
        return;
    }
    if (!o.working()) {
        // As a broker answers a cancel that comes too late: the trader learns it did not
        // happen, the order's fills stay as they are.
        QVXRejectStruct reject;
        reject.ClOrderID = clOrderId.empty() ? std::string(o.ticket.clOrderID()) : clOrderId;
        reject.Side = o.sideText();
        reject.Quantity = o.ticket.quantity;
        reject.Symbol = o.ticket.symbol();
        reject.RejectReason = kSimRejectTooLateToCancel;
        reject.ReasonText = "Too late to cancel";
        m_events.push(std::move(reject));
        return;
    }
    o.lastFill = "Cancelled by request";
    Finish(o, QVXOrderStatus::Cancelled, nowUs);
}

int32_t SimOrderBook::replace(const std::string& clOrderId, int32_t recordId,
                              const QVXOrderChange& change, int64_t nowUs) {
    if (recordId <= 0 || static_cast<size_t>(recordId) > m_orders.size()) {
        return kReplaceOrderNotOpen;
    }
    Order& o = m_orders[static_cast<size_t>(recordId - 1)];
    if (!o.working() || (!clOrderId.empty() && !o.knows(clOrderId))) {
        return kReplaceOrderNotOpen;
    }
    if (change.quantity <= o.cum) {
        return -3; // also <= 0: cum is never negative
    }
    OrderTicket changed = o.ticket.full();
    changed.quantity = change.quantity;
    changed.priceType = change.priceType;
    changed.lmtPrice = change.priceType == OrderPriceType::Limit ? change.lmtPrice : 0.0;
    if (!SimPriceTypeValid(changed.priceType) || (changed.priceType == OrderPriceType::Limit &&
                                                  SimLimitUnits(changed.lmtPrice, true) <= 0)) {
        return -5;
    }
    if (const int32_t code = Refusal(changed, o.instrument); code != 0) {
        return code;
    }
    const bool listed = o.kind == Kind::Market || o.kind == Kind::Limit;
    const bool queued = o.kind == Kind::OnOpen || o.kind == Kind::OnClose;
    o.formerIds.emplace_back(o.ticket.clOrderID());
    ++o.replaces;
    changed.clOrderID = change.newClOrderID.empty()
                            ? std::string(o.ticket.clOrderID()) + "-R" + std::to_string(o.replaces)
                            : change.newClOrderID;
    o.ticket.set(changed);
    o.kind = KindOf(o.ticket.priceType, o.ticket.tif());
    o.limit = o.kind == Kind::Limit ? SimLimitUnits(o.ticket.lmtPrice, o.buy()) : 0;
    o.resting = false; // judged afresh, like a new arrival
    o.lastFill = "Replaced";
    Publish(o, nowUs);
    const bool auction = o.kind == Kind::OnOpen || o.kind == Kind::OnClose;
    if (auction && queued) {
        return 0; // keeps its place in the auction queue
    }
    if (!auction && listed) {
        // Still listed for the ticks; it gets its chance at once, as on arrival.
        TryFill(o, true, false, nowUs);
        return 0;
    }
    Work(o, nowUs);
    return 0;
}

int64_t SimOrderBook::nextAuctionUs() const {
    return m_auctions.empty() ? SimMarket::kNever : m_auctions.front().first;
}

void SimOrderBook::runAuctions(int64_t nowUs) {
    while (!m_auctions.empty() && m_auctions.front().first <= nowUs) {
        std::pop_heap(m_auctions.begin(), m_auctions.end(), std::greater<>{});
        const int32_t recordId = m_auctions.back().second;
        m_auctions.pop_back();
        Order& o = m_orders[static_cast<size_t>(recordId - 1)];
        if (!o.working() || (o.kind != Kind::OnOpen && o.kind != Kind::OnClose)) {
            continue; // cancelled or replaced into a market or limit order while it waited
        }
        const SimQuoteState& s = m_market.instrument(o.instrument).state();
        // The cross happens at the last sale, or mid-market for a symbol without one.
        const SimUnits price = s.last > 0 ? s.last : SimSnapDown((s.bid + s.ask) / 2);
        Fill(o, o.ticket.quantity - o.cum, price, nowUs);
    }
}

std::vector<SimKeptOrder> SimOrderBook::takeChanged() {
    std::vector<SimKeptOrder> kept;
    kept.reserve(m_changed.size());
    for (const int32_t recordId : m_changed) {
        Order& o = m_orders[static_cast<size_t>(recordId - 1)];
        o.changed = false;
        kept.push_back({o.ticket.full(), o.formerIds, o.recordId, o.status, o.cum, o.notional,
                        o.updates, o.replaces, o.resting, o.orderTime, o.lastFill});
    }
    m_changed.clear();
    return kept;
}

bool SimOrderBook::restore(std::vector<SimKeptOrder> kept, int64_t nowUs) {
    bool renumbered = false;
    for (SimKeptOrder& k : kept) {
        Order o;
        o.recordId = static_cast<int32_t>(m_orders.size() + 1);
        renumbered = renumbered || o.recordId != k.recordId;
        o.ticket.set(k.ticket);
        o.side = SideLetter(k.ticket.side);
        o.instrument = m_market.instrumentOf(k.ticket.symbol);
        o.kind = KindOf(k.ticket.priceType, k.ticket.tif);
        if (o.kind == Kind::Limit) {
            o.limit = SimLimitUnits(o.ticket.lmtPrice, o.buy());
        }
        o.status = k.status;
        o.cum = k.cum;
        o.notional = k.notional;
        o.updates = k.updates;
        o.resting = k.resting;
        o.orderTime = std::move(k.orderTime);
        o.lastFill = std::move(k.lastFill);
        o.formerIds = std::move(k.formerIds);
        o.replaces = k.replaces;
        m_orders.push_back(std::move(o));
        Order& back = m_orders.back();
        if (!back.working()) {
            continue;
        }
        m_market.pin(back.instrument, nowUs);
        if (back.kind == Kind::OnOpen || back.kind == Kind::OnClose) {
            Work(back, nowUs); // its auction, the fill delay from now
        } else {
            ListWorking(back);
        }
    }
    if (renumbered) {
        for (Order& o : m_orders) {
            Note(o);
        }
    }
    return renumbered;
}

void SimOrderBook::Note(Order& o) {
    if (m_keeping && !o.changed) {
        o.changed = true;
        m_changed.push_back(o.recordId);
    }
}

void SimOrderBook::Publish(Order& o, int64_t nowUs) {
    Note(o);
    const SimTicket& t = o.ticket;
    QVXOrderStruct u;
    u.Account = t.account();
    u.Action = QVXOrderStatusText(o.status);
    u.Destination = t.destination();
    u.LogMessage = o.lastFill;
    u.OrderTime = o.orderTime;
    u.PriceType = PriceTypeText(t.priceType, o.kind == Kind::OnOpen);
    u.Side = o.sideText();
    u.Tif = t.tif();
    u.UpdateTime = TimeText(nowUs);
    u.AvgExecPrice = o.cum > 0 ? static_cast<double>(o.notional) / o.cum / kSimUnitsPerDollar : 0.0;
    u.LmtPrice = o.kind == Kind::Limit ? t.lmtPrice : 0.0;
    u.SeqNum = ++o.updates;
    u.CumExecQuantity = o.cum;
    u.Display = t.maxFloor;
    u.LvsQuantity = o.working() ? t.quantity - o.cum : 0;
    u.OrderRecordId = o.recordId;
    u.OrderStatus = o.status;
    u.PriceTypeCode = t.priceType;
    u.Quantity = t.quantity;
    u.Moo = o.kind == Kind::OnOpen;
    u.Moc = o.kind == Kind::OnClose;
    u.Memo = t.memo();
    u.ClOrderID = t.clOrderID();
    u.Symbol = t.symbol();
    m_events.push(std::move(u));
}

std::string SimOrderBook::TimeText(int64_t nowUs) const {
    const LocalDateTime t = ToLocal(m_origin + std::chrono::microseconds(nowUs));
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", t.hour, t.minute, t.second);
    return text;
}

} // namespace wicker
