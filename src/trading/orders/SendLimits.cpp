#include "trading/orders/SendLimits.h"

#include "common/Conversions.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/orders/ExecutionButtons.h"

#include <algorithm>
#include <cmath>

namespace wicker {

namespace {

/// The band is judged against the last and the side the order would trade against: a buy
/// above either by more than N %, a sell or short below either.
std::optional<std::string> BandBreach(double percent, bool buy, double limit,
                                      const SendLines::Line& line) {
    const double last = line.last;
    const double far = buy ? line.ask : line.bid;
    for (const auto& [name, reference] :
         {std::pair{"last", last}, std::pair{buy ? "ask" : "bid", far}}) {
        if (reference <= 0) {
            continue;
        }
        const double through = buy ? limit / reference - 1 : 1 - limit / reference;
        if (through * 100 > percent) {
            return "limit " + NumberText(limit) + " is " + FixedText(through * 100, 2) + "% " +
                   (buy ? "above" : "below") + " the " + name + " " + NumberText(reference) +
                   ", band " + NumberText(percent) + "%";
        }
    }
    return std::nullopt;
}

void CheckLine(const SendLimits& limits, bool limitButton, bool buy, const PlannedOrder& order,
               const SendLines& lines, std::vector<LimitBreach>& out) {
    if (limits.maxOrderShares > 0 && order.quantity > limits.maxOrderShares) {
        out.push_back({ReportText(lines, order), LimitName::OrderShares,
                       ThousandsText(order.quantity) + " shares, limit " +
                           ThousandsText(limits.maxOrderShares)});
    }
    if (limits.maxOrderValue > 0) {
        if (order.value <= 0) {
            out.push_back({ReportText(lines, order), LimitName::OrderValue,
                           "no last price to value the order"});
        } else if (order.value > limits.maxOrderValue) {
            out.push_back(
                {ReportText(lines, order), LimitName::OrderValue,
                 "$" + DollarText(order.value) + ", limit $" + DollarText(limits.maxOrderValue)});
        }
    }
    if (limits.priceBandPercent > 0 && limitButton) {
        if (auto text = BandBreach(limits.priceBandPercent, buy, order.limit, lines[order.line])) {
            out.push_back({ReportText(lines, order), LimitName::PriceBand, std::move(*text)});
        }
    }
}

} // namespace

std::vector<LimitBreach> CheckSendLimits(const SendLimits& limits, int index,
                                         const SendLines& lines, const SendPlan& plan,
                                         std::optional<double> secondsSinceSameSend) {
    std::vector<LimitBreach> out;
    const auto rule = ExecuteButtonRuleFor(index);
    const bool limitButton = rule && rule->kind == ButtonKind::Limit;
    const bool buy = rule && (rule->side == "BUY" || rule->side == "B");
    for (const PlannedOrder& order : plan.orders) {
        if (order.sendable) {
            CheckLine(limits, limitButton, buy, order, lines, out);
        }
    }
    if (limits.maxSendValue > 0 && plan.notional > limits.maxSendValue) {
        out.push_back(
            {"Whole send", LimitName::SendValue,
             "$" + DollarText(plan.notional) + ", limit $" + DollarText(limits.maxSendValue)});
    }
    if (limits.repeatSeconds > 0 && plan.sendableLines > 0 && secondsSinceSameSend &&
        *secondsSinceSameSend < limits.repeatSeconds) {
        out.push_back({"Whole send", LimitName::RepeatSend,
                       "the same basket and side went " +
                           NumberText(std::floor(*secondsSinceSameSend)) + " s ago, limit " +
                           std::to_string(limits.repeatSeconds) + " s"});
    }
    return out;
}

std::vector<std::string> BrokenLimits(const std::vector<LimitBreach>& breaches) {
    std::vector<std::string> names;
    for (const LimitBreach& b : breaches) {
        if (std::find(names.begin(), names.end(), b.limit) == names.end()) {
            names.push_back(b.limit);
        }
    }
    return names;
}

} // namespace wicker
