#include "exchange/SimVenue.h"

#include "common/Text.h"

#include <cmath>

namespace wicker {
namespace {

std::optional<double> Price(double p) {
    return p == kQVXNoPrice ? std::nullopt : std::optional<double>(p);
}

std::optional<int32_t> Size(int32_t n) {
    return n == kQVXNoValue ? std::nullopt : std::optional<int32_t>(n);
}

void Merge(QVXQuoteStruct& into, const QVXQuoteStruct& q) {
    const auto take = [&](uint32_t field, auto& to, const auto& from) {
        if (q.Carries(field)) {
            to = from;
        }
    };
    take(QVXQuoteField::Bid, into.BidPrice, q.BidPrice);
    take(QVXQuoteField::Ask, into.AskPrice, q.AskPrice);
    take(QVXQuoteField::Last, into.LastPrice, q.LastPrice);
    take(QVXQuoteField::BidSize, into.BidSize, q.BidSize);
    take(QVXQuoteField::AskSize, into.AskSize, q.AskSize);
    take(QVXQuoteField::LastSize, into.LastSize, q.LastSize);
    take(QVXQuoteField::CumVolume, into.CumVolume, q.CumVolume);
    take(QVXQuoteField::Open, into.OpenPrice, q.OpenPrice);
    take(QVXQuoteField::High, into.HighPrice, q.HighPrice);
    take(QVXQuoteField::Low, into.LowPrice, q.LowPrice);
    take(QVXQuoteField::Close, into.ClosePrice, q.ClosePrice);
    take(QVXQuoteField::Vwap, into.Vwap, q.Vwap);
    into.Fields |= q.Fields;
}

// Collects what the simulator reports, for the venue to hand on in order.
class Collector : public QVXEvents, public QVXQuoteEvents {
public:
    std::vector<QVXOrderStruct> updates;
    std::vector<QVXQuoteStruct> quotes;
    void OnQVXOrderUpdate(const QVXOrderStruct& u) override { updates.push_back(u); }
    void OnQVXOrderReject(const QVXRejectStruct&) override {}  // an update follows
    void OnQVXOrderWarning(const QVXOrderWarning&) override {} // the simulator never warns
    void OnQVXShutdown() override {}
    void OnPlatformStatus(bool, const std::string&) override {}
    void OnQVXQuoteSnap(const QVXQuoteStruct& q) override { quotes.push_back(q); }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override { quotes.push_back(q); }
};

SimSettings AsVenue(SimSettings settings) {
    settings.routes = false;
    return settings;
}

} // namespace

SimVenue::SimVenue(SimSettings settings, std::chrono::steady_clock::time_point start)
    : m_sim(AsVenue(std::move(settings)), m_clock, SimDriver::Manual), m_start(start),
      m_virtualStart(m_sim.now()) {
    // The venue never fails to start: the simulator only refuses after a shutdown.
    (void)m_sim.Start();
}

void SimVenue::accept(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                      Sink& sink) {
    std::unique_ptr<QVXOrder> o = m_sim.CreateOrder();
    o->setAccount(order.account.empty() ? "EXCH" : order.account);
    o->setSide(order.side);
    o->setSymbol(order.symbol);
    o->setQuantity(leaves);
    o->setLmtPrice(order.price);
    o->setPriceType(order.priceType);
    // The simulator knows orders by its own ids: a client may reuse its ids after a restart.
    o->setClOrderID("V" + std::to_string(++m_nextId));
    o->setTif(order.tif);
    o->setDestination(order.destination);
    o->setMaxFloor(order.maxFloor);
    const int32_t recordId = o->SubmitOrder();
    if (recordId <= 0) {
        sink.onExpired(orderKey);
        return;
    }
    m_recordOf[orderKey] = recordId;
    m_working[recordId] =
        Working{orderKey, o->ClOrderID(), 0, 0, order.tif == "I" || order.tif == "F"};
    Deliver(&sink);
    if (const auto it = m_working.find(recordId); it != m_working.end() && it->second.immediate) {
        m_sim.CancelOrder(it->second.clOrderID, recordId, "", "");
        Deliver(&sink);
    }
}

bool SimVenue::cancel(int64_t orderKey) {
    const auto it = m_recordOf.find(orderKey);
    if (it == m_recordOf.end() || m_working.count(it->second) == 0) {
        return false;
    }
    const int32_t recordId = it->second;
    m_sim.CancelOrder(m_working[recordId].clOrderID, recordId, "", "");
    // The cancel's own update ends the order; the exchange reports the cancel itself.
    m_working.erase(recordId);
    m_recordOf.erase(it);
    Deliver(nullptr);
    return true;
}

bool SimVenue::replace(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                       Sink& sink) {
    const auto it = m_recordOf.find(orderKey);
    if (it == m_recordOf.end() || leaves <= 0) {
        return false;
    }
    const auto w = m_working.find(it->second);
    if (w == m_working.end()) {
        return false;
    }
    QVXOrderChange change;
    change.newClOrderID = "V" + std::to_string(++m_nextId);
    // The simulator's order counts its own fills (its quantity was the leaves it was given).
    change.quantity = w->second.cum + leaves;
    change.priceType = order.priceType;
    change.lmtPrice = order.price;
    if (m_sim.ReplaceOrder(w->second.clOrderID, it->second, change) != 0) {
        return false;
    }
    w->second.clOrderID = change.newClOrderID;
    Deliver(&sink);
    return true;
}

FixQuoteFields SimVenue::quote(const std::string& symbol) {
    const std::string key = UCase(Trim(symbol));
    if (m_quotes.count(key) == 0) {
        m_sim.RegisterSymbol(symbol, "*");
        Deliver(nullptr);
    }
    const QVXQuoteStruct& q = m_quotes[key];
    FixQuoteFields f;
    f.symbol = symbol;
    f.snapshot = true;
    f.bid = Price(q.BidPrice);
    f.ask = Price(q.AskPrice);
    f.last = Price(q.LastPrice);
    f.open = Price(q.OpenPrice);
    f.close = Price(q.ClosePrice);
    f.high = Price(q.HighPrice);
    f.low = Price(q.LowPrice);
    f.vwap = Price(q.Vwap);
    f.bidSize = Size(q.BidSize);
    f.askSize = Size(q.AskSize);
    f.lastSize = Size(q.LastSize);
    f.volume = Size(q.CumVolume);
    return f;
}

void SimVenue::advance(std::chrono::steady_clock::time_point now, Sink& sink) {
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(now - m_start);
    if (m_virtualStart + elapsed > m_sim.now()) {
        m_sim.advanceTo(m_virtualStart + elapsed);
    }
    Deliver(&sink);
}

void SimVenue::Deliver(Sink* sink) {
    Collector c;
    while (m_sim.Events().drain(c, c) > 0) {
    }
    for (const QVXQuoteStruct& q : c.quotes) {
        Merge(m_quotes[UCase(Trim(q.Symbol))], q);
    }
    for (const QVXOrderStruct& u : c.updates) {
        OnUpdate(u, sink);
    }
}

void SimVenue::OnUpdate(const QVXOrderStruct& u, Sink* sink) {
    const auto it = m_working.find(u.OrderRecordId);
    if (it == m_working.end()) {
        return; // cancelled by the exchange: nothing more to report
    }
    Working& w = it->second;
    const double notional = u.AvgExecPrice * u.CumExecQuantity;
    if (u.CumExecQuantity > w.cum && sink != nullptr) {
        const int32_t shares = u.CumExecQuantity - w.cum;
        // The simulator reports the average; this fill's own price follows from it.
        const double price = std::round((notional - w.notional) / shares * 10000.0) / 10000.0;
        sink->onFill(w.key, shares, price);
    }
    w.cum = u.CumExecQuantity;
    w.notional = notional;
    if (u.LvsQuantity == 0) {
        if (u.CumExecQuantity < u.Quantity && sink != nullptr) {
            sink->onExpired(w.key);
        }
        m_recordOf.erase(w.key);
        m_working.erase(it);
    }
}

} // namespace wicker
