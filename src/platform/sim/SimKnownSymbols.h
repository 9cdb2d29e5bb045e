#pragma once

#include <string_view>

namespace wicker {

/// A widely traded symbol the simulator prices near its real level, so that a demo basket
/// of familiar names shows familiar prices (Apple is not a $3 stock).
struct SimKnownSymbol {
    std::string_view symbol;
    std::string_view companyName;
    std::string_view exchange;
    double referencePrice; ///< dollars; the previous close is drawn around it
};

/// The entry of an upper-case `symbol`, or null for a symbol the table does not know.
const SimKnownSymbol* FindSimKnownSymbol(std::string_view symbol);

} // namespace wicker
