#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wicker {

/// Number of order buttons (cmdExecuteBasket_0 .. cmdExecuteBasket_20).
inline constexpr int ExecuteButtonCount = 21;

/// Where the limit price of an order button comes from.
enum class PriceSource { None, Bid, Ask, Last, LinePrice };

/// How an order button sends: market (1), market-on-close (2), market-on-open (1 with
/// TIF "O"), or limit (5) at a quote or the line's own price.
enum class ButtonKind { Limit, Market, MarketOnClose, MarketOnOpen };

/// The rule of one order button.
struct ExecuteButtonRule {
    int index = 0;
    std::string_view caption;
    std::string_view side; ///< side code sent: "BUY", "B", "S" or "T"
    int32_t priceType = 0; ///< 5 limit, 1 market and market-on-open, 2 market-on-close
    ButtonKind kind = ButtonKind::Limit;
    PriceSource price = PriceSource::None;
};

/// The rule of button `index`; none outside 0..20 (such a click sends no side, type or
/// price).
std::optional<ExecuteButtonRule> ExecuteButtonRuleFor(int index);

/// Market-type buttons send without quotes; every other button needs Bid, Ask, Last and
/// a TIF on the line.
bool IsMarketTypeButton(int index);

/// Time-in-force text to the one-letter code the platform takes; unknown text (the
/// empty one and lower case included) is a day order.
std::string TifCode(std::string_view tifText);

/// Destinations that take a reserve (MaxFloor) order.
bool TakesReserve(std::string_view destination);

} // namespace wicker
