#pragma once

#include "platform/QVXQuoteStruct.h"
#include "trading/basket/StockList.h"
#include "trading/quotes/Quote.h"
#include "trading/quotes/QuoteDisplay.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace wicker {

/// The quote table of the loaded basket: one Quote per lvStocks line, found by symbol (a
/// symbol on several lines has one Quote per line), plus the latest values of every symbol
/// quoted since start-up, for the rest of the screen. Handlers only record; Timer200ms
/// writes what changed into the lines.
class QuoteBoard {
public:
    /// One Quote per line of `lines`, by the line's symbol. A symbol quoted before starts
    /// from its latest values, all flagged, so the new lines show them at the next tick.
    void SetLines(const StockList& lines);
    /// No lines (the latest values stay).
    void ClearLines();

    void OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap);
    void OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate);

    /// The price that came with line `row` (import or paste): shown in "Price".
    void SetImportPrice(int row, double price);

    void setDisplay(const QuoteDisplay& display) { m_display = display; }
    const QuoteDisplay& display() const { return m_display; }

    /// Writes every flagged column of every quote into its line, then clears the flags.
    /// Returns the number of cells written.
    int Timer200ms(StockList& lines);

    /// The Quote of line `row`, or null when there is none.
    const Quote* QuoteAt(int row) const {
        return row >= 0 && static_cast<size_t>(row) < m_quotes.size()
                   ? &m_quotes[static_cast<size_t>(row)]
                   : nullptr;
    }
    /// The latest values of a symbol, or null when it was never quoted.
    const Quote* Latest(std::string_view symbol) const;
    /// The Quotes of a symbol's lines (empty when it stands on none).
    std::vector<const Quote*> QuotesOf(std::string_view symbol) const;
    size_t QuoteCount() const { return m_quotes.size(); }

private:
    struct SymbolEntry;
    void OnQuote(const QVXQuoteStruct& record);
    /// The entry of a symbol as a platform names it, made when missing.
    SymbolEntry& EntryOf(std::string_view symbol);
    void WriteQuote(Quote& quote, StockList& lines, int& written);

    /// What is kept per symbol: its latest values and the lines it stands on.
    struct SymbolEntry {
        Quote latest;
        bool quoted = false; ///< latest holds values
        std::vector<uint32_t> rows;
    };

    /// Finds keys by string_view: a storm's symbols are looked up without a copy.
    struct KeyHash {
        using is_transparent = void;
        size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
    };

    QuoteDisplay m_display;
    std::vector<Quote> m_quotes; ///< one per line, by row
    std::unordered_map<std::string, SymbolEntry, KeyHash, std::equal_to<>>
        m_symbols;                   ///< by SymbolKeyOf
    std::vector<uint32_t> m_pending; ///< rows with flags set, each once
};

/// The key a symbol is found under: trimmed, upper case (collections never told case apart).
std::string SymbolKeyOf(std::string_view symbol);

} // namespace wicker
