#pragma once

#include "common/Clock.h"
#include "platform/OrderTicket.h"
#include "platform/PlatformEventQueue.h"
#include "platform/QVXOrderMaintenance.h"
#include "platform/sim/SimBookFile.h"
#include "platform/sim/SimMarket.h"
#include "platform/sim/SimSettings.h"
#include "platform/sim/SimTicket.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace wicker {

/// The simulated broker's orders: accepts them after the local checks, fills them against
/// the simulated market and reports every change as an order update in the event queue.
/// Market orders and marketable limits fill at the touch at once, resting limits at their
/// limit when the market reaches them, market-on-open/-close orders after the fill delay at
/// the then price; anything above the clip size fills one clip per tick of its symbol.
class SimOrderBook {
public:
    /// `origin` is the wall time of virtual time 0, for the order and update times.
    SimOrderBook(const SimSettings& settings, SimMarket& market, PlatformEventQueue& events,
                 Clock::TimePoint origin);

    /// The order's record id (> 0) when accepted, else the negative refusal code.
    int32_t submit(const OrderTicket& ticket, int64_t nowUs);
    /// Cancels an open order. A done order gets a reject "Too late to cancel"; an unknown
    /// order, or a client order id that does not belong to the record id, is left alone.
    void cancel(const std::string& clOrderId, int32_t recordId, int64_t nowUs);
    /// Changes an open order in place: new quantity (fills kept, leaves recomputed), price
    /// type and limit, then treats it as arriving again (a limit that now crosses fills at
    /// the touch, a market order fills, market-on-open/-close waits for the fill delay).
    /// `clOrderId` may be any id the order carried (or empty). 0 when done, else -3, -5,
    /// -7 / -8 (pre-trade limits) or kReplaceOrderNotOpen (unknown, done, or `clOrderId`
    /// is none of its ids). An empty new id becomes "<current id>-R<n>".
    int32_t replace(const std::string& clOrderId, int32_t recordId, const QVXOrderChange& change,
                    int64_t nowUs);

    /// The record id of the order that carried `clOrderId`, after reporting its state again;
    /// 0 when the book has no such order.
    int32_t adopt(const std::string& clOrderId, int64_t nowUs);
    /// The symbol of instrument `i` has just moved: its working orders get their chance.
    void onTick(size_t instrument, int64_t nowUs);

    /// From now on every order whose state changes is noted for takeChanged.
    void keepChanges() { m_keeping = true; }
    /// The orders that changed since the last call, as the book keeps them.
    std::vector<SimKeptOrder> takeChanged();
    /// Takes back the orders of an earlier run (an empty book only): working ones work
    /// again, auction orders wait the fill delay from `nowUs`. Record ids follow the kept
    /// order; true when they had to be renumbered (a gap), so the kept rows need replacing.
    bool restore(std::vector<SimKeptOrder> kept, int64_t nowUs);

    /// When the next market-on-open/-close order is due; SimMarket::kNever when none is.
    int64_t nextAuctionUs() const;
    /// Fills the market-on-open/-close orders due at or before `nowUs`.
    void runAuctions(int64_t nowUs);

private:
    enum class Kind { Market, Limit, OnOpen, OnClose };
    struct Order {
        SimTicket ticket;
        char side = 0; // 'B', 'S' or 'T' (0 for a kept order of no known side)
        size_t instrument = 0;
        Kind kind = Kind::Market;
        SimUnits limit = 0;
        int32_t recordId = 0;
        int32_t status = 0;
        int32_t cum = 0;
        int64_t notional = 0; // units x shares filled
        int32_t updates = 0;
        bool resting = false; // was not marketable when it arrived
        std::string orderTime;
        std::string lastFill;
        std::vector<std::string> formerIds; // client order ids before its replaces
        int32_t replaces = 0;
        bool changed = false; // noted for takeChanged

        bool buy() const { return side == 'B'; }
        std::string sideText() const { return side == 0 ? std::string() : std::string(1, side); }
        bool working() const;
        bool knows(const std::string& clOrderId) const;
    };
    using Due = std::pair<int64_t, int32_t>; // time, record id

    int32_t Refusal(const OrderTicket& ticket, size_t instrument) const;
    Order& Accept(const OrderTicket& ticket, size_t instrument, int64_t nowUs);
    void OnArrival(Order& o, const OrderTicket& ticket, int64_t nowUs);
    static Kind KindOf(int32_t priceType, std::string_view tif);
    /// Queues an order for the auction or lets it trade now, as on arrival.
    void Work(Order& o, int64_t nowUs);
    void ListWorking(const Order& o);
    /// One clip (or all, with `whole`) if the order can trade now; false when it cannot.
    bool TryFill(Order& o, bool arrival, bool whole, int64_t nowUs);
    void Fill(Order& o, int32_t quantity, SimUnits price, int64_t nowUs);
    void Finish(Order& o, int32_t status, int64_t nowUs);
    void Publish(Order& o, int64_t nowUs);
    /// Notes a changed order for takeChanged while the book is kept.
    void Note(Order& o);
    std::string TimeText(int64_t nowUs) const;

    const SimSettings& m_settings;
    SimMarket& m_market;
    PlatformEventQueue& m_events;
    Clock::TimePoint m_origin;
    std::deque<Order> m_orders;                  // record id - 1; grows without moving any
    std::vector<std::vector<int32_t>> m_working; // by instrument: record ids in arrival order
    std::vector<Due> m_auctions;                 // min-heap
    bool m_keeping = false;
    std::vector<int32_t> m_changed; // record ids
};

} // namespace wicker
