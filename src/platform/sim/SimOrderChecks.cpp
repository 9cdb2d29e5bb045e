#include "platform/sim/SimOrderChecks.h"

#include "common/Text.h"
#include "platform/sim/SimPrice.h"

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
