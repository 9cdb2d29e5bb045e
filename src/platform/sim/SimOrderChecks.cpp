#include "platform/sim/SimOrderChecks.h"

#include "common/Text.h"
#include "platform/sim/SimPrice.h"
#include "platform/sim/SimSettings.h"

#include <algorithm>
#include <array>

namespace wicker {

std::string SimSideCode(std::string_view side) {
    if (side == "B" || side == "BUY") {
        return "B";
    }
    if (side == "S" || side == "T") {
        return std::string(side);
    }
    return {};
}

bool SimPriceTypeValid(int32_t priceType) {
    return priceType == OrderPriceType::Market || priceType == OrderPriceType::MarketOnClose ||
           priceType == OrderPriceType::Limit;
}

bool SimTifValid(std::string_view tif) {
    static constexpr std::array<std::string_view, 11> kCodes = {"D", "G", "X", "F", "I", "O",
                                                                "1", "N", "E", "A", "C"};
    for (const std::string_view code : kCodes) {
        if (tif == code) {
            return true;
        }
    }
    return false;
}

namespace {

bool IsTicker(std::string_view symbol) {
    // A capital first, then capitals or digits.
    const auto part = [](std::string_view s, size_t most) {
        return !s.empty() && s.size() <= most && s[0] >= 'A' && s[0] <= 'Z' &&
               std::all_of(s.begin(), s.end(),
                           [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
    };
    const size_t dot = symbol.find_first_of("./");
    if (dot == std::string_view::npos) {
        return part(symbol, 5);
    }
    return part(symbol.substr(0, dot), 5) && part(symbol.substr(dot + 1), 2);
}

bool KnownVenue(const std::string& destination) {
    static constexpr std::array<std::string_view, 21> kVenues = {
        "AMEX", "ARCA", "ATTN", "BATS", "BRUT",   "BYX",  "CHX",  "EDGA", "EDGX", "GNET", "IEX",
        "INCA", "INET", "ISLD", "MEMX", "NASDAQ", "NOCI", "NSDQ", "NYSE", "PHLX", "TRAC"};
    return std::find(kVenues.begin(), kVenues.end(), destination) != kVenues.end();
}

} // namespace

SimRefusal SimBrokerRefusal(const OrderTicket& t, const std::set<std::string>& enabled,
                            bool routes) {
    const std::string destination = UCase(Trim(t.destination));
    // A venue is the destination itself: whatever the order names, it has arrived.
    if (routes && destination.empty()) {
        return {kSimRejectDestination, "No destination"};
    }
    if (routes && (enabled.empty() ? !KnownVenue(destination) : enabled.count(destination) == 0)) {
        return {kSimRejectDestination, "Unknown destination " + destination};
    }
    if (!IsTicker(t.symbol)) {
        return {kSimRejectSymbol, "Symbol \"" + t.symbol + "\" is not a ticker"};
    }
    return {};
}

int32_t CheckSimOrderFields(const OrderTicket& t) {
    if (Trim(t.account).empty()) {
        return -1;
    }
    if (SimSideCode(t.side).empty()) {
        return -2;
    }
    if (t.quantity <= 0) {
        return -3;
    }
    if (Trim(t.symbol).empty()) {
        return -4;
    }
    if (!SimPriceTypeValid(t.priceType) ||
        (t.priceType == OrderPriceType::Limit && SimLimitUnits(t.lmtPrice, true) <= 0)) {
        return -5;
    }
    if (!SimTifValid(t.tif)) {
        return -6;
    }
    return 0;
}

} // namespace wicker
