#include "trading/orders/SendLines.h"

#include "common/Conversions.h"
#include "trading/orders/LineNumber.h"

#include <cmath>
#include <stdexcept>

namespace wicker {

namespace {

double QuoteNumber(double own, std::string_view cell) {
    return std::isnan(own) ? Val(cell) : own;
}

double PriceNumber(double own, std::string_view cell) {
    return std::isnan(own) ? LineNumber(cell).value_or(std::numeric_limits<double>::quiet_NaN())
                           : own;
}

} // namespace

SendLines SendLines::Of(std::span<const ExecutionLine> lines) {
    SendLines out;
    out.reserve(lines.size(), 0);
    for (const ExecutionLine& l : lines) {
        out.add(l.checked, {l.bidValue, l.askValue, l.lastValue, l.priceValue},
                {l.symbol, l.bid, l.ask, l.last, l.quantity, l.destination, l.modifier, l.tif,
                 l.price});
    }
    return out;
}

void SendLines::reserve(size_t lines, size_t textBytes) {
    m_lines.reserve(lines);
    m_texts.reserve(textBytes);
}

void SendLines::clear() {
    m_lines.clear();
    m_texts.clear();
    m_lastChecked = {};
}

SendLines::TextAt SendLines::Store(std::string_view text, TextAt previous) {
    // Destinations, modifiers and TIFs mostly repeat down a basket: kept once.
    if (previous.size == text.size() && this->text(previous) == text) {
        return previous;
    }
    if (m_texts.size() + text.size() > std::numeric_limits<uint32_t>::max()) {
        throw std::length_error("The basket's texts are too long to be sent at once.");
    }
    const TextAt at{static_cast<uint32_t>(m_texts.size()), static_cast<uint32_t>(text.size())};
    m_texts.append(text);
    return at;
}

void SendLines::add(bool checked, const ExecutionQuoteValues& own, const SendLineCells& cells) {
    const Line& previous = m_lastChecked;
    Line& line = m_lines.emplace_back();
    line.checked = checked;
    if (!checked) {
        return;
    }
    line.bid = QuoteNumber(own.bid, cells.bid);
    line.ask = QuoteNumber(own.ask, cells.ask);
    line.last = QuoteNumber(own.last, cells.last);
    line.price = PriceNumber(own.price, cells.price);
    line.symbol = Store(cells.symbol, previous.symbol);
    line.quantity = Store(cells.quantity, previous.quantity);
    line.destination = Store(cells.destination, previous.destination);
    line.modifier = Store(cells.modifier, previous.modifier);
    line.tif = Store(cells.tif, previous.tif);
    m_lastChecked = line;
}

} // namespace wicker
