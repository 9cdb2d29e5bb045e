#pragma once

namespace wicker {

/// What the utilities screen asks of the main screen's in-memory trading data. The main
/// screen implements it; nothing here touches the database or the platform.
class TradingDataReset {
public:
    virtual ~TradingDataReset() = default;
    /// "Clear Trading Data": forgets every tracked order and the reject queue, and empties
    /// the sent-baskets list (lvBaskets) and its rows. tblOrders keeps its journal.
    virtual void ClearTradingData() = 0;
    /// "Mark All Orders as Closed": every tracked order with leaves quantity above 0 gets
    /// leaves 0 (ZeroOpenLeaves does it on an OrderTracker). No request to the platform.
    virtual void MarkAllOrdersClosed() = 0;
};

} // namespace wicker
