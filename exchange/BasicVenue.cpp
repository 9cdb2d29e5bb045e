#include "exchange/BasicVenue.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace wicker {

BasicVenue::BasicVenue(uint32_t seed, int32_t clipSize, std::chrono::milliseconds fillDelay)
    : m_seed(seed), m_clip(clipSize), m_delay(fillDelay) {}

double BasicVenue::midPrice(const std::string& symbol) const {
    // FNV-1a over the seed and the symbol: a price from 10.00 to 209.99.
    uint32_t h = 2166136261u ^ m_seed;
    for (unsigned char c : symbol) {
        h = (h ^ c) * 16777619u;
    }
    return 10.0 + static_cast<double>(h % 20000) / 100.0;
}

FixQuoteFields BasicVenue::quote(const std::string& symbol) {
    const double mid = midPrice(symbol);
    FixQuoteFields q;
    q.symbol = symbol;
    q.snapshot = true;
    q.bid = mid - 0.005;
    q.ask = mid + 0.005;
    q.bidSize = 500;
    q.askSize = 500;
    q.last = mid;
    q.lastSize = 100;
    q.open = mid;
    q.close = mid;
    q.high = mid;
    q.low = mid;
    q.vwap = mid;
    const auto v = m_volume.find(symbol);
    q.volume = v == m_volume.end() ? 0 : v->second;
    return q;
}

bool BasicVenue::marketable(const Working& w) const {
    if (w.order.priceType != 5) {
        return true;
    }
    // Half a micro-cent of slack: a price that went through decimal text must still meet
    // the quote it was taken from.
    const double mid = midPrice(w.order.symbol);
    return w.order.side == "B" ? w.order.price + 1e-6 >= mid + 0.005
                               : w.order.price - 1e-6 <= mid - 0.005;
}

double BasicVenue::fillPrice(const Working& w) const {
    const double mid = midPrice(w.order.symbol);
    return std::round((w.order.side == "B" ? mid + 0.005 : mid - 0.005) * 1000.0) / 1000.0;
}

void BasicVenue::accept(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                        Sink& sink) {
    Working w{order, leaves, std::chrono::steady_clock::now()};
    const bool atOpenOrClose = order.priceType == 2 || (order.priceType == 1 && order.tif == "O");
    if (atOpenOrClose) {
        w.due += m_delay;
    }
    m_working[orderKey] = w;
    if (atOpenOrClose || marketable(w)) {
        m_active.insert(orderKey);
    } else if (order.tif == "I" || order.tif == "F") {
        m_working.erase(orderKey);
        sink.onExpired(orderKey);
        return;
    }
    if (!atOpenOrClose && m_active.count(orderKey) > 0) {
        work(orderKey, sink);
    }
}

bool BasicVenue::cancel(int64_t orderKey) {
    m_active.erase(orderKey);
    return m_working.erase(orderKey) > 0;
}

bool BasicVenue::replace(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                         Sink& sink) {
    const auto it = m_working.find(orderKey);
    if (it == m_working.end() || leaves <= 0) {
        return false;
    }
    Working& w = it->second;
    w.order = order;
    w.leaves = leaves;
    w.due = std::chrono::steady_clock::now();
    m_active.erase(orderKey);
    const bool atOpenOrClose = order.priceType == 2 || (order.priceType == 1 && order.tif == "O");
    if (atOpenOrClose) {
        w.due += m_delay;
        m_active.insert(orderKey);
    } else if (marketable(w)) {
        m_active.insert(orderKey);
        work(orderKey, sink);
    }
    return true;
}

void BasicVenue::work(int64_t key, Sink& sink) {
    Working& w = m_working.at(key);
    const int32_t shares = m_clip > 0 ? std::min(m_clip, w.leaves) : w.leaves;
    w.leaves -= shares;
    m_volume[w.order.symbol] += shares;
    const double price = fillPrice(w);
    if (w.leaves == 0) {
        m_working.erase(key);
        m_active.erase(key);
    }
    sink.onFill(key, shares, price);
}

void BasicVenue::advance(std::chrono::steady_clock::time_point now, Sink& sink) {
    // Prices never move here, so only orders already marketable (working off their clips)
    // and market-on-open/close orders that came due have anything to do.
    const std::vector<int64_t> keys(m_active.begin(), m_active.end());
    for (int64_t key : keys) {
        const auto it = m_working.find(key);
        if (it != m_working.end() && now >= it->second.due) {
            work(key, sink);
        }
    }
}

} // namespace wicker
