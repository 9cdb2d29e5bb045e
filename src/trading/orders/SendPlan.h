#pragma once

#include "trading/orders/SendLines.h"
#include "trading/orders/TickTable.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// One checked line as it will go out, worked out before the first order leaves.
struct PlannedOrder {
    size_t line = 0; ///< position in the lines
    /// Why the line cannot go; empty when it can. The lines the button needs quotes and a
    /// TIF for and that lack them have no reason: they are listed by their report text alone.
    std::string refusal;
    bool sendable = false;
    int32_t quantity = 0;
    bool quantityKnown = false;     ///< the quantity text is a 32-bit number of shares
    std::optional<double> modifier; ///< the line's price modifier, for a limit button
    double limit = 0;               ///< limit price on the tick grid; 0 for a market-type button
    double reference = 0;           ///< last (0 when none): what a market order is valued at
    double value = 0;               ///< quantity x (limit, else last); 0 when no price is known
};

/// The whole basket checked at once: one entry per checked line, in list order.
struct SendPlan {
    std::vector<PlannedOrder> orders;
    int32_t sendableLines = 0;
    double shares = 0;   ///< of the sendable lines
    double notional = 0; ///< of the sendable lines
};

/// Checks every checked line before anything is sent: its quantity as a 32-bit number of
/// shares, its quotes and TIF when the button needs them, and its limit price, taken from
/// the quote's own value (not the rounded cell), plus the modifier, rounded onto the tick
/// grid (buys down, sells and shorts up) and above 0.
/// The plan's orders are made in the room of `room` (an earlier plan's vector, emptied).
SendPlan PlanSend(int index, const SendLines& lines, const TickTable& ticks,
                  std::vector<PlannedOrder> room = {});

/// The line's report text: symbol, quantity, destination ("IBM 40000 NASDAQ"); the
/// quantity as typed when it is no number of shares.
std::string ReportText(const SendLines& lines, const PlannedOrder& order);

/// "BUY", "SELL", "SHORT" for a button, empty outside 0..20.
std::string SideWord(int index);

} // namespace wicker
