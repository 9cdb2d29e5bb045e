#pragma once

#include "platform/QVXQuoteStruct.h"
#include "platform/sim/SimPrice.h"
#include "platform/sim/SimRandom.h"
#include "platform/sim/SimReference.h"

#include <cstdint>
#include <string>

namespace wicker {

/// The market picture of one symbol. A price of 0 means "none yet" (a symbol that has not
/// traded today has no last, open, high, low nor VWAP); a size of -1 likewise.
struct SimQuoteState {
    SimUnits bid = 0;
    SimUnits ask = 0;
    SimUnits last = 0;
    SimUnits open = 0;
    SimUnits high = 0;
    SimUnits low = 0;
    SimUnits close = 0; ///< the previous session's close
    SimUnits vwap = 0;
    SimUnits week52High = 0;
    SimUnits week52Low = 0;
    int32_t bidSize = 0;
    int32_t askSize = 0;
    int32_t lastSize = kQVXNoValue;
    int32_t cumVolume = 0;
    int32_t avgVolume = 0;
    int32_t sharesOutstanding = kQVXNoValue;
};

/// QVXQuoteField bits of the fields whose values differ between two pictures.
uint32_t ChangedQuoteFields(const SimQuoteState& before, const SimQuoteState& after);

/// One symbol's simulated market: a random walk of the quote with a spread that fits the
/// price level, trades at the touch with round-lot sizes, volume, VWAP and the day's range.
/// Everything is drawn from the symbol's own stream, so the same seed gives the same story.
class SimInstrument {
public:
    SimInstrument(const std::string& symbol, uint64_t seed);

    const SimQuoteState& state() const { return m_state; }
    const SimReference& reference() const { return m_reference; }
    SimRandom& random() { return m_random; }

    /// Moves the market one event on: a trade or a new quote. Returns what changed.
    uint32_t step();

    /// The whole picture; `symbol` is the text the record names.
    QVXQuoteStruct snapshot(const std::string& symbol) const;
    /// Only the `fields` given, the rest left at the no-value marks.
    QVXQuoteStruct update(const std::string& symbol, uint32_t fields) const;

private:
    void Trade();
    void Requote();
    int32_t DrawSpreadTicks(SimUnits price);

    SimRandom m_random;
    SimReference m_reference;
    SimQuoteState m_state;
    SimUnits m_fair = 0; // the walk leans back towards it
    int32_t m_spreadTicks = 1;
    int64_t m_notional = 0; // units x shares of the day's trades, for the VWAP
};

} // namespace wicker
