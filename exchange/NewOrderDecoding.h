#pragma once

#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/engine/FixWire.h"

#include <cstdint>
#include <string>
#include <variant>

namespace wicker {

/// A NewOrderSingle in the platform's terms: side code, price type (1 market, also
/// market-on-open with TIF "O"; 2 market-on-close; 5 limit) and TIF letter.
struct ExchangeOrderRequest {
    std::string clOrdID;
    std::string account;
    std::string side; ///< "B", "S" or "T"
    std::string symbol;
    int32_t quantity = 0;
    int32_t priceType = 0;
    double price = 0;
    std::string tif; ///< D G O I F X
    std::string destination;
    int32_t maxFloor = 0;
};

/// Why an order is refused: OrdRejReason(103) and Text(58).
struct ExchangeRefusal {
    int ordRejReason = 99;
    std::string text;
};

inline constexpr int OrdRejUnknownSymbol = 1;
inline constexpr int OrdRejExchangeClosed = 2;
inline constexpr int OrdRejDuplicateOrder = 6;
inline constexpr int OrdRejOther = 99;

/// Reads a NewOrderSingle (the inverse of Wicker's own mapping): a missing or unusable
/// field refuses the order with a reason the sender can read.
std::variant<ExchangeOrderRequest, ExchangeRefusal> DecodeNewOrder(const FixMessage& message,
                                                                   FixVersion version);

} // namespace wicker
