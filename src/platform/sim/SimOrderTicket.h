#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The properties of one simulated order, as the order object was filled.
struct SimOrderTicket {
    std::string account;
    std::string side;
    std::string symbol;
    int32_t quantity = 0;
    double lmtPrice = 0;
    int32_t priceType = 0;
    std::string clOrderID;
    std::string tif;
    std::string destination;
    int32_t maxFloor = 0;
    std::string memo;
};

/// Price type codes the platform knows.
namespace SimPriceType {
inline constexpr int32_t Market = 1; ///< also market-on-open with TIF "O"
inline constexpr int32_t MarketOnClose = 2;
inline constexpr int32_t Limit = 5;
} // namespace SimPriceType

} // namespace wicker
