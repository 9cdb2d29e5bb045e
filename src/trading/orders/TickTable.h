#pragma once

#include "common/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The price increments of a venue: prices at or above a band's floor trade in its tick.
/// US equities: 0.01 at 1.00 and above, 0.0001 below.
class TickTable {
public:
    struct Band {
        double from = 0; ///< lowest price of the band
        double tick = 0; ///< increment, above 0
    };

    /// 0.0001 below 1.00, 0.01 from 1.00.
    static TickTable UsEquities();
    /// Bands in any order; the one starting at 0 is required (checked by ParseTickTable).
    explicit TickTable(std::vector<Band> bands);

    /// The tick of the band `price` falls in.
    double TickFor(double price) const;
    /// `price` on the venue's grid, never more aggressive than asked: a buy rounds down,
    /// a sell or short up.
    double RoundToTick(double price, bool buy) const;
    /// "0=0.0001;1=0.01": floor "=" tick per band, lowest floor first.
    std::string Text() const;

private:
    std::vector<Band> m_bands; ///< highest floor first
};

/// Reads "from=tick;from=tick..." (blanks allowed). An error says what is wrong: a band
/// that is not two numbers, a tick of 0 or less, a floor given twice, no band from 0.
Result<TickTable> ParseTickTable(std::string_view text);

} // namespace wicker
