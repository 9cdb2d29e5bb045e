#pragma once

#include "exchange/ExchangeVenue.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>

namespace wicker {

/// A plain market with steady prices: every symbol has a price of its own (from the seed
/// and the symbol text), a one-cent spread and no drift. Market and marketable limit
/// orders fill at once at the far side, in clips when a clip size is set (one clip per
/// round); market-on-open/close orders fill after the fill delay; other limits rest.
class BasicVenue : public ExchangeVenue {
public:
    BasicVenue(uint32_t seed, int32_t clipSize, std::chrono::milliseconds fillDelay);

    void accept(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                Sink& sink) override;
    bool cancel(int64_t orderKey) override;
    bool replace(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                 Sink& sink) override;
    FixQuoteFields quote(const std::string& symbol) override;
    void advance(std::chrono::steady_clock::time_point now, Sink& sink) override;

    /// The mid price of a symbol.
    double midPrice(const std::string& symbol) const;

private:
    struct Working {
        ExchangeOrderRequest order;
        int32_t leaves = 0;
        std::chrono::steady_clock::time_point due;
    };
    bool marketable(const Working& w) const;
    void work(int64_t key, Sink& sink);
    double fillPrice(const Working& w) const;

    uint32_t m_seed;
    int32_t m_clip;
    std::chrono::milliseconds m_delay;
    std::map<int64_t, Working> m_working;
    std::set<int64_t> m_active; ///< orders with something to do
    std::map<std::string, int32_t> m_volume;
};

} // namespace wicker
