#include "trading/orders/SendPlan.h"

#include "common/Conversions.h"
#include "trading/orders/ExecutionButtons.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace wicker {

namespace {

/// The quote's own value when the desk has one, else the cell's number (0 when none).
double QuoteValue(double own, const std::string& cell) {
    return std::isnan(own) ? Val(cell) : own;
}

bool HasQuote(double own, const std::string& cell) {
    return std::isnan(own) ? !cell.empty() && Val(cell) != 0 : own != 0;
}

/// Limit buttons need all three quotes and a TIF, even the quotes whose price is not used.
bool QuotesPresent(int index, const ExecutionLine& line) {
    if (IsMarketTypeButton(index)) {
        return true;
    }
    return HasQuote(line.bidValue, line.bid) && HasQuote(line.askValue, line.ask) &&
           HasQuote(line.lastValue, line.last) && !line.tif.empty();
}

std::optional<double> Number(const std::string& text) {
    // Whole numbers of shares, the common quantity, read digit by digit: exact below 2^53.
    if (!text.empty() && text.size() <= 15 &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        int64_t whole = 0;
        for (const char c : text) {
            whole = whole * 10 + (c - '0');
        }
        return static_cast<double>(whole);
    }
    // Plain decimals (nearly every modifier) without the general conversion.
    double quick = 0;
    const char* end = text.data() + text.size();
    if (!text.empty() && text[0] != '+' && text[0] != ' ') {
        if (const auto [ptr, ec] =
                std::from_chars(text.data(), end, quick, std::chars_format::fixed);
            ec == std::errc() && ptr == end) {
            return quick;
        }
    }
    if (!IsNumeric(text)) {
        return std::nullopt;
    }
    try {
        const double value = CDbl(text);
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

double SourcePrice(PriceSource source, const ExecutionLine& line) {
    switch (source) {
    case PriceSource::Bid:
        return QuoteValue(line.bidValue, line.bid);
    case PriceSource::Ask:
        return QuoteValue(line.askValue, line.ask);
    case PriceSource::Last:
        return QuoteValue(line.lastValue, line.last);
    case PriceSource::LinePrice:
        if (std::isnan(line.priceValue)) {
            return Number(line.price).value_or(std::numeric_limits<double>::quiet_NaN());
        }
        return line.priceValue;
    case PriceSource::None:
        break;
    }
    return 0;
}

/// The quantity, and the refusal when it is none: a whole basket never stops at one line.
std::string PlanQuantity(const ExecutionLine& line, PlannedOrder& order) {
    const std::optional<double> qty = Number(line.quantity);
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

std::string PlanLimit(const ExecuteButtonRule& rule, const ExecutionLine& line,
                      const TickTable& ticks, PlannedOrder& order) {
    const std::optional<double>& modifier = order.modifier;
    if (!modifier) {
        return "price modifier \"" + line.modifier + "\" is not a number";
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

std::string ReportText(const ExecutionLine& line, const PlannedOrder& order) {
    return line.symbol + " " +
           (order.quantityKnown ? std::to_string(order.quantity) : line.quantity) + " " +
           line.destination;
}

SendPlan PlanSend(int index, std::span<const ExecutionLine> lines, const TickTable& ticks,
                  std::vector<PlannedOrder> room) {
    SendPlan plan;
    plan.orders = std::move(room);
    plan.orders.clear();
    plan.orders.reserve(lines.size());
    // Every line carries the screen's one modifier: its text is read once per distinct value.
    const std::string* modifierText = nullptr;
    std::optional<double> modifier;
    const auto rule = ExecuteButtonRuleFor(index);
    for (size_t i = 0; i < lines.size(); ++i) {
        const ExecutionLine& line = lines[i];
        if (!line.checked) {
            continue;
        }
        PlannedOrder& order = plan.orders.emplace_back();
        order.line = i;
        order.refusal = PlanQuantity(line, order);
        if (!order.refusal.empty()) {
            continue;
        }
        if (!QuotesPresent(index, line)) {
            continue; // listed by its report text alone
        }
        order.reference = QuoteValue(line.lastValue, line.last);
        if (rule && rule->kind == ButtonKind::Limit) {
            if (modifierText == nullptr || *modifierText != line.modifier) {
                modifierText = &line.modifier;
                modifier = Number(line.modifier);
            }
            order.modifier = modifier;
            order.refusal = PlanLimit(*rule, line, ticks, order);
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
