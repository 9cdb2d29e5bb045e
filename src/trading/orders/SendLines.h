#pragma once

#include "trading/orders/ExecutionLine.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// The cells of one grid line as a send reads them.
struct SendLineCells {
    std::string_view symbol;
    std::string_view bid;
    std::string_view ask;
    std::string_view last;
    std::string_view quantity;
    std::string_view destination;
    std::string_view modifier;
    std::string_view tif;
    std::string_view price; ///< the line's own price
};

/// What a send reads of the grid, copied once per click (the confirmation runs an event loop
/// and the grid may change under it) into little memory: per line its four prices as numbers
/// and five texts, the texts side by side in one buffer, a destination, modifier or TIF the
/// same as one of the last few stored once. About 90 bytes a line, where nine strings took
/// 328: memory a click touches or keeps for the next is paid in page faults or resident size.
class SendLines {
public:
    /// Where a text of a line lies in the buffer.
    struct TextAt {
        uint32_t offset = 0;
        uint32_t size = 0;
    };
    struct Line {
        /// The quote's own value where the desk has one, else the cell's number (0 when none):
        /// a price of 0 is no quote.
        double bid = 0;
        double ask = 0;
        double last = 0;
        /// The line's own price: the quote's value, else the cell's number; NaN when none.
        double price = std::numeric_limits<double>::quiet_NaN();
        TextAt symbol;
        TextAt quantity;
        TextAt destination;
        TextAt modifier;
        TextAt tif;
        bool checked = false;
    };

    /// The lines as texts and quote values, as a tool or a test writes them.
    static SendLines Of(std::span<const ExecutionLine> lines);

    void reserve(size_t lines, size_t textBytes);
    /// No lines; their memory stays for the next send's.
    void clear();
    /// Adds a line; `own` holds the quote's values behind its cells (NaN where none, and the
    /// cell is read instead). Nothing of an unchecked line is read.
    void add(bool checked, const ExecutionQuoteValues& own, const SendLineCells& cells);

    size_t size() const { return m_lines.size(); }
    bool empty() const { return m_lines.empty(); }
    const Line& operator[](size_t i) const { return m_lines[i]; }
    std::string_view text(TextAt at) const { return {m_texts.data() + at.offset, at.size}; }

private:
    /// The last few distinct texts of one column: a basket's destinations, modifiers and TIFs
    /// are a handful, repeated down its lines in any order.
    struct Recent {
        std::array<TextAt, 4> at{};
        uint32_t count = 0;
        uint32_t next = 0;
    };
    TextAt Append(std::string_view text);
    /// The text as one of the recent ones, or appended.
    TextAt Store(std::string_view text, Recent& recent);

    std::vector<Line> m_lines;
    std::string m_texts;
    Recent m_destinations;
    Recent m_modifiers;
    Recent m_tifs;
};

} // namespace wicker
