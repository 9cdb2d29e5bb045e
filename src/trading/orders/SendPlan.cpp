#include "trading/orders/SendPlan.h"

#include "common/Conversions.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/LineNumber.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace wicker {

namespace {

/// Limit buttons need all three quotes and a TIF, even the quotes whose price is not used.
bool QuotesPresent(int index, const SendLines::Line& line) {
    if (IsMarketTypeButton(index)) {
        return true;
    }
    return line.bid != 0 && line.ask != 0 && line.last != 0 && line.tif.size != 0;
}

double SourcePrice(PriceSource source, const SendLines::Line& line) {
    switch (source) {
    case PriceSource::Bid:
        return line.bid;
    case PriceSource::Ask:
        return line.ask;
    case PriceSource::Last:
        return line.last;
    case PriceSource::LinePrice:
        return line.price;
    case PriceSource::None:
        break;
    }
    return 0;
}

/// The quantity, and the refusal when it is none: a whole basket never stops at one line.
std::string PlanQuantity(std::string_view quantity, PlannedOrder& order) {
    const std::optional<double> qty = LineNumber(quantity);
    if (!qty) {
        return "quantity is not a number";
    }
    if (std::fabs(*qty) > std::numeric_limits<int32_t>::max()) {
        return "quantity is more than 2,147,483,647 shares";
    }
    order.quantity = CLng(*qty);
    order.quantityKnown = true;
    return {};
}

std::string PlanLimit(const ExecuteButtonRule& rule, const SendLines& lines, const TickTable& ticks,
                      PlannedOrder& order) {
    const SendLines::Line& line = lines[order.line];
    const std::optional<double>& modifier = order.modifier;
    if (!modifier) {
        return "price modifier \"" + std::string(lines.text(line.modifier)) + "\" is not a number";
    }
    const double price = SourcePrice(rule.price, line) + *modifier;
    if (!std::isfinite(price)) {
        return "no limit price";
    }
    order.limit = ticks.RoundToTick(price, rule.side == "BUY" || rule.side == "B");
    if (!(order.limit > 0)) {
        return "limit price " + NumberText(order.limit) + " is not above 0";
    }
    return {};
}

} // namespace

std::string SideWord(int index) {
    const auto rule = ExecuteButtonRuleFor(index);
    if (!rule) {
        return {};
    }
    if (rule->side == "S") {
        return "SELL";
    }
    return rule->side == "T" ? "SHORT" : "BUY";
}

std::string ReportText(const SendLines& lines, const PlannedOrder& order) {
    const SendLines::Line& line = lines[order.line];
    std::string text(lines.text(line.symbol));
    text += ' ';
    text += order.quantityKnown ? std::to_string(order.quantity)
                                : std::string(lines.text(line.quantity));
    text += ' ';
    text += lines.text(line.destination);
    return text;
}

SendPlan PlanSend(int index, const SendLines& lines, const TickTable& ticks,
                  std::vector<PlannedOrder> room) {
    SendPlan plan;
    plan.orders = std::move(room);
    plan.orders.clear();
    plan.orders.reserve(lines.size());
    // Every line carries the screen's one modifier: its text is read once per distinct value.
    std::optional<std::string_view> modifierText;
    std::optional<double> modifier;
    const auto rule = ExecuteButtonRuleFor(index);
    for (size_t i = 0; i < lines.size(); ++i) {
        const SendLines::Line& line = lines[i];
        if (!line.checked) {
            continue;
        }
        PlannedOrder& order = plan.orders.emplace_back();
        order.line = i;
        order.refusal = PlanQuantity(lines.text(line.quantity), order);
        if (!order.refusal.empty()) {
            continue;
        }
        if (!QuotesPresent(index, line)) {
            continue; // listed by its report text alone
        }
        order.reference = line.last;
        if (rule && rule->kind == ButtonKind::Limit) {
            if (const std::string_view text = lines.text(line.modifier);
                !modifierText || *modifierText != text) {
                modifierText = text;
                modifier = LineNumber(text);
            }
            order.modifier = modifier;
            order.refusal = PlanLimit(*rule, lines, ticks, order);
            if (!order.refusal.empty()) {
                continue;
            }
        }
        order.sendable = true;
        const double price = order.limit > 0 ? order.limit : order.reference;
        order.value = static_cast<double>(order.quantity) * price;
        ++plan.sendableLines;
        plan.shares += order.quantity;
        plan.notional += order.value;
    }
    return plan;
}

} // namespace wicker
