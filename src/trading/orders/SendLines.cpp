#include "trading/orders/SendLines.h"

#include "common/Conversions.h"
#include "trading/orders/LineNumber.h"

#include <algorithm>
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
    m_destinations = m_modifiers = m_tifs = {};
}

SendLines::TextAt SendLines::Store(std::string_view text, Recent& recent) {
    for (uint32_t i = 0; i < recent.count; ++i) {
        if (recent.at[i].size == text.size() && this->text(recent.at[i]) == text) {
            return recent.at[i];
        }
    }
    const TextAt at = Append(text);
    recent.at[recent.next] = at;
    recent.next = (recent.next + 1) % recent.at.size();
    recent.count = std::min<uint32_t>(recent.count + 1, recent.at.size());
    return at;
}

SendLines::TextAt SendLines::Append(std::string_view text) {
    if (m_texts.size() + text.size() > std::numeric_limits<uint32_t>::max()) {
        throw std::length_error("The basket's texts are too long to be sent at once.");
    }
    const TextAt at{static_cast<uint32_t>(m_texts.size()), static_cast<uint32_t>(text.size())};
    m_texts.append(text);
    return at;
}

void SendLines::add(bool checked, const ExecutionQuoteValues& own, const SendLineCells& cells) {
    Line& line = m_lines.emplace_back();
    line.checked = checked;
    if (!checked) {
        return;
    }
    line.bid = QuoteNumber(own.bid, cells.bid);
    line.ask = QuoteNumber(own.ask, cells.ask);
    line.last = QuoteNumber(own.last, cells.last);
    line.price = PriceNumber(own.price, cells.price);
    line.symbol = Append(cells.symbol);
    line.quantity = Append(cells.quantity);
    line.destination = Store(cells.destination, m_destinations);
    line.modifier = Store(cells.modifier, m_modifiers);
    line.tif = Store(cells.tif, m_tifs);
}

} // namespace wicker
