#pragma once

#include "common/Clock.h"
#include "exchange/ExchangeVenue.h"
#include "platform/sim/SimPlatform.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

namespace wicker {

/// The exchange's market is Wicker's own simulated market: prices walk, orders fill at the
/// touch or when the market reaches their limit, in clips, and market-on-open/-close orders
/// after the fill delay. The simulator runs on virtual time that advance() moves to the
/// wall time; its order updates become fills for the exchange's books.
class SimVenue : public ExchangeVenue {
public:
    SimVenue(SimSettings settings, std::chrono::steady_clock::time_point start);

    void accept(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                Sink& sink) override;
    bool cancel(int64_t orderKey) override;
    bool replace(int64_t orderKey, const ExchangeOrderRequest& order, int32_t leaves,
                 Sink& sink) override;
    FixQuoteFields quote(const std::string& symbol) override;
    void advance(std::chrono::steady_clock::time_point now, Sink& sink) override;

private:
    struct Working {
        int64_t key = 0;
        std::string clOrderID;
        int32_t cum = 0;
        double notional = 0;    ///< dollars filled so far, to price each new fill
        bool immediate = false; ///< IOC / FOK: what does not fill on arrival expires
    };

    /// Hands every event of the simulator to the books: fills and ends to `sink`, quotes
    /// to the latest picture of their symbol.
    void Deliver(Sink* sink);
    void OnUpdate(const QVXOrderStruct& u, Sink* sink);

    SystemClock m_clock;
    SimPlatform m_sim;
    std::chrono::steady_clock::time_point m_start;
    Clock::TimePoint m_virtualStart;
    int64_t m_nextId = 0;
    std::map<int64_t, int32_t> m_recordOf;          ///< order key -> simulator record id
    std::unordered_map<int32_t, Working> m_working; ///< by record id
    std::unordered_map<std::string, QVXQuoteStruct> m_quotes;
};

} // namespace wicker
