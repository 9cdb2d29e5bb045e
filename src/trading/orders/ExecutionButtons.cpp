#include "trading/orders/ExecutionButtons.h"

#include <algorithm>
#include <array>
#include <utility>

namespace wicker {

namespace {

using enum ButtonKind;
using enum PriceSource;

// The limit buys on bid, ask and last send the word "BUY"; every other buy sends the
// letter "B". Orders have always gone out this way: keep the two apart.
constexpr std::array<ExecuteButtonRule, ExecuteButtonCount> Rules{{
    {0, "BUY BID", "BUY", 5, Limit, Bid},          {1, "BUY ASK", "BUY", 5, Limit, Ask},
    {2, "BUY LAST", "BUY", 5, Limit, Last},        {3, "BUY MKT", "B", 1, Market, None},
    {4, "SELL BID", "S", 5, Limit, Bid},           {5, "SELL ASK", "S", 5, Limit, Ask},
    {6, "SELL LAST", "S", 5, Limit, Last},         {7, "SELL MKT", "S", 1, Market, None},
    {8, "SHRT BID", "T", 5, Limit, Bid},           {9, "SHRT ASK", "T", 5, Limit, Ask},
    {10, "SHRT LAST", "T", 5, Limit, Last},        {11, "SHRT MKT", "T", 1, Market, None},
    {12, "BUY MOC", "B", 2, MarketOnClose, None},  {13, "SELL MOC", "S", 2, MarketOnClose, None},
    {14, "SHRT MOC", "T", 2, MarketOnClose, None}, {15, "SHRT MOO", "T", 1, MarketOnOpen, None},
    {16, "SELL MOO", "S", 1, MarketOnOpen, None},  {17, "BUY MOO", "B", 1, MarketOnOpen, None},
    {18, "BUY", "B", 5, Limit, LinePrice},         {19, "SELL", "S", 5, Limit, LinePrice},
    {20, "SHORT", "T", 5, Limit, LinePrice},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 11> TifCodes{{
    {"AEX", "A"},
    {"CHXP", "C"},
    {"DAY", "D"},
    {"GTC", "G"},
    {"GTX", "X"},
    {"FOK", "F"},
    {"IOC", "I"},
    {"OPG", "O"},
    {"OS", "1"},
    {"NOW", "N"},
    {"EXT", "E"},
}};

constexpr std::array<std::string_view, 10> ReserveDestinations{
    "ARCA", "ATTN", "BRUT", "GNET", "INCA", "INET", "ISLD", "NASDAQ", "NOCI", "TRAC"};

} // namespace

std::optional<ExecuteButtonRule> ExecuteButtonRuleFor(int index) {
    if (index < 0 || index >= ExecuteButtonCount) {
        return std::nullopt;
    }
    return Rules[static_cast<size_t>(index)];
}

bool IsMarketTypeButton(int index) {
    const auto rule = ExecuteButtonRuleFor(index);
    return rule && rule->kind != Limit;
}

std::string TifCode(std::string_view tifText) {
    for (const auto& [text, code] : TifCodes) {
        if (text == tifText) {
            return std::string(code);
        }
    }
    return "D";
}

bool TakesReserve(std::string_view destination) {
    return std::find(ReserveDestinations.begin(), ReserveDestinations.end(), destination) !=
           ReserveDestinations.end();
}

} // namespace wicker
