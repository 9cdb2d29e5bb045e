#pragma once

#include "platform/fix/engine/FixWire.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The market data of one symbol as FIX carries it: every value present or not.
/// MDEntryType(269): 0 bid, 1 offer, 2 trade, 4 open, 5 close, 7 high, 8 low, 9 VWAP,
/// B cumulative volume (in its MDEntrySize; used in 4.2 sessions as well).
struct FixQuoteFields {
    std::string symbol;
    bool snapshot = false; ///< a full refresh (W) rather than an increment (X)
    std::optional<double> bid, ask, last, open, close, high, low, vwap;
    std::optional<int32_t> bidSize, askSize, lastSize, volume;
};

/// MarketDataRequest(V) for one symbol: snapshot plus incremental updates of top of book,
/// trade, open/close/high/low, VWAP and volume; or the unsubscribe of it.
FixMessage MarketDataRequest(std::string_view symbol, bool subscribe);
/// The symbol and subscribe flag of a MarketDataRequest; nothing when it names no symbol
/// or asks for something else than a subscription or its end.
struct FixQuoteSubscription {
    std::string mdReqID;
    std::vector<std::string> symbols;
    bool subscribe = true;
};
std::optional<FixQuoteSubscription> ParseMarketDataRequest(const FixMessage& request);

/// MarketDataSnapshotFullRefresh(W) or MarketDataIncrementalRefresh(X) of one symbol.
FixMessage MarketDataMessage(const FixQuoteFields& quote, std::string_view mdReqID);
/// The quotes of a W or X message, one per symbol it names (an X may name several).
/// Entries whose price or size is not a number are skipped; deletes carry no value.
std::vector<FixQuoteFields> ParseMarketData(const FixMessage& message);

} // namespace wicker
