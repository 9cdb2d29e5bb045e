#include "trading/orders/TickTable.h"

#include "common/Conversions.h"
#include "common/Formats.h"
#include "common/Text.h"

#include <algorithm>
#include <cmath>

namespace wicker {

namespace {

// A price read from a quote carries binary residue (0.4567 is 4566.9999... ticks): a
// residue this small is the same grid point, not a price between two.
constexpr double kGridSlack = 1e-7;

std::string NumberOf(double value) {
    std::string text = FormatDecimals(value, 8);
    while (!text.empty() && text.back() == '0') {
        text.pop_back();
    }
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    return text;
}

} // namespace

TickTable TickTable::UsEquities() {
    return TickTable({{0, 0.0001}, {1, 0.01}});
}

TickTable::TickTable(std::vector<Band> bands) : m_bands(std::move(bands)) {
    std::sort(m_bands.begin(), m_bands.end(),
              [](const Band& a, const Band& b) { return a.from > b.from; });
}

double TickTable::TickFor(double price) const {
    for (const Band& band : m_bands) {
        if (price >= band.from) {
            return band.tick;
        }
    }
    return m_bands.empty() ? 0.01 : m_bands.back().tick;
}

double TickTable::RoundToTick(double price, bool buy) const {
    if (!std::isfinite(price)) {
        return price;
    }
    // The band of the price decides the tick; a sell that rounds up onto the next band's
    // floor lands on a point of both grids.
    const double tick = TickFor(price);
    const double steps = price / tick;
    const double whole = buy ? std::floor(steps + kGridSlack) : std::ceil(steps - kGridSlack);
    // Back to a clean decimal: 2195 x 0.1 is not 219.5 in binary.
    return std::round(whole * tick * 1e8) / 1e8;
}

std::string TickTable::Text() const {
    std::string text;
    for (auto band = m_bands.rbegin(); band != m_bands.rend(); ++band) {
        text += (text.empty() ? "" : ";") + NumberOf(band->from) + "=" + NumberOf(band->tick);
    }
    return text;
}

Result<TickTable> ParseTickTable(std::string_view text) {
    std::vector<TickTable::Band> bands;
    for (const std::string& item : Split(text, ";")) {
        const std::string entry = Trim(item);
        if (entry.empty()) {
            continue;
        }
        const std::vector<std::string> parts = Split(entry, "=");
        if (parts.size() != 2 || !IsNumeric(Trim(parts[0])) || !IsNumeric(Trim(parts[1]))) {
            return Error{"The price band \"" + entry +
                         "\" is not written as lowest price = tick, for example 1=0.01."};
        }
        const TickTable::Band band{CDbl(Trim(parts[0])), CDbl(Trim(parts[1]))};
        if (!(band.tick > 0) || !(band.from >= 0) || !std::isfinite(band.from)) {
            return Error{"The price band \"" + entry +
                         "\" needs a lowest price of 0 or more and a tick above 0."};
        }
        for (const TickTable::Band& other : bands) {
            if (other.from == band.from) {
                return Error{"The price band from " + NumberOf(band.from) + " is given twice."};
            }
        }
        bands.push_back(band);
    }
    if (std::none_of(bands.begin(), bands.end(),
                     [](const TickTable::Band& b) { return b.from == 0; })) {
        return Error{"The price bands must start with one from 0, for example 0=0.0001;1=0.01."};
    }
    return TickTable(std::move(bands));
}

} // namespace wicker
