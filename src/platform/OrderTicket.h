#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The properties of one order as the send filled its order object; what a platform's
/// SubmitOrder works from.
struct OrderTicket {
    std::string account;
    std::string side; ///< "BUY", "B", "S", "T"
    std::string symbol;
    int32_t quantity = 0;
    double lmtPrice = 0;
    int32_t priceType = 0; ///< OrderPriceType
    std::string clOrderID;
    std::string tif; ///< TIF letter
    std::string destination;
    int32_t maxFloor = 0;
    std::string memo;
};

/// Price type codes the platform knows.
namespace OrderPriceType {
inline constexpr int32_t Market = 1; ///< also market-on-open with TIF "O"
inline constexpr int32_t MarketOnClose = 2;
inline constexpr int32_t Limit = 5;
} // namespace OrderPriceType

} // namespace wicker
