#pragma once

#include "exchange/NewOrderDecoding.h"
#include "platform/fix/FixMarketData.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace wicker {

/// The market behind wicker-exchange: it decides when and at what price orders fill and
/// what the quotes are. The FIX side keeps the orders' books and speaks to the clients.
class ExchangeVenue {
public:
    /// What the market does to accepted orders, reported by their key.
    class Sink {
    public:
        virtual ~Sink() = default;
        virtual void onFill(int64_t orderKey, int32_t shares, double price) = 0;
        /// The market ended the order (an IOC/FOK remainder, a market-on-open/close that
        /// found no price): nothing more will fill.
        virtual void onExpired(int64_t orderKey) = 0;
    };

    virtual ~ExchangeVenue() = default;
    /// Takes a new order; fills may be reported at once or later.
    virtual void accept(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                        Sink& sink) = 0;
    /// Takes the order off the market; false when it is no longer there.
    virtual bool cancel(int64_t orderKey) = 0;
    /// Changes a working order in place: `order` holds its new terms (side, symbol and TIF
    /// as before), `leaves` what is still to fill under them. The order is judged again
    /// as on arrival, so fills may be reported at once. False when the order is no longer
    /// there (nothing changed).
    virtual bool replace(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                         Sink& sink) = 0;
    /// The current picture of a symbol, as a snapshot.
    virtual FixQuoteFields quote(const std::string& symbol) = 0;
    /// Moves the market to `now`: prices move, resting orders may fill.
    virtual void advance(std::chrono::steady_clock::time_point now, Sink& sink) = 0;
};

} // namespace wicker
