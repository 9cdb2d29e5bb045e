#include "trading/quotes/QuoteBoard.h"

#include "common/Text.h"

#include <algorithm>

namespace wicker {

namespace {

/// True when the symbol is its own key: no blank at either end, no lower-case letter.
bool IsSymbolKey(std::string_view symbol) {
    if (!symbol.empty() && (symbol.front() == ' ' || symbol.back() == ' ')) {
        return false;
    }
    return std::none_of(symbol.begin(), symbol.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

} // namespace

std::string SymbolKeyOf(std::string_view symbol) {
    return UCase(Trim(symbol));
}

QuoteBoard::SymbolEntry& QuoteBoard::EntryOf(std::string_view symbol) {
    if (!IsSymbolKey(symbol)) {
        return m_symbols[SymbolKeyOf(symbol)];
    }
    if (const auto it = m_symbols.find(symbol); it != m_symbols.end()) {
        return it->second;
    }
    return m_symbols[std::string(symbol)];
}

void QuoteBoard::SetLines(const StockList& lines) {
    ClearLines();
    m_quotes.resize(static_cast<size_t>(lines.Count()));
    for (int row = 0; row < lines.Count(); ++row) {
        Quote& quote = m_quotes[static_cast<size_t>(row)];
        const std::string& symbol = lines.Cell(row, stkSymbol);
        SymbolEntry& entry = EntryOf(symbol);
        if (entry.quoted) {
            // Show what is known at once; the snapshot that follows registration refreshes it.
            quote = entry.latest;
            quote.SetUpdateFlags(true);
            quote.m_bUpdateImportPrice = false;
            m_pending.push_back(static_cast<uint32_t>(row));
        }
        quote.m_nRow = row;
        quote.m_strSymbol = symbol;
        entry.rows.push_back(static_cast<uint32_t>(row));
    }
}

void QuoteBoard::ClearLines() {
    m_quotes.clear();
    m_pending.clear();
    for (auto it = m_symbols.begin(); it != m_symbols.end();) {
        if (it->second.quoted) {
            it->second.rows.clear();
            ++it;
        } else {
            it = m_symbols.erase(it);
        }
    }
}

void QuoteBoard::OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap) {
    OnQuote(structQuoteSnap);
}

void QuoteBoard::OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate) {
    OnQuote(structQuoteUpdate);
}

void QuoteBoard::OnQuote(const QVXQuoteStruct& record) {
    SymbolEntry& entry = EntryOf(record.Symbol);
    for (uint32_t row : entry.rows) {
        Quote& quote = m_quotes[row];
        const bool queued = quote.AnyUpdate();
        quote.Apply(record);
        if (!queued && quote.AnyUpdate()) {
            m_pending.push_back(row);
        }
    }
    if (!entry.quoted) {
        entry.latest.m_strSymbol = record.Symbol;
        entry.quoted = true;
    }
    entry.latest.Apply(record);
    entry.latest.SetUpdateFlags(false);
}

void QuoteBoard::SetImportPrice(int row, double price) {
    if (row < 0 || static_cast<size_t>(row) >= m_quotes.size()) {
        return;
    }
    Quote& quote = m_quotes[static_cast<size_t>(row)];
    if (!quote.AnyUpdate()) {
        m_pending.push_back(static_cast<uint32_t>(row));
    }
    quote.SetImportPrice(price);
}

int QuoteBoard::Timer200ms(StockList& lines) {
    int written = 0;
    // In line order: the lines and quotes are then walked through memory front to back.
    std::sort(m_pending.begin(), m_pending.end());
    for (uint32_t row : m_pending) {
        if (row < m_quotes.size()) {
            WriteQuote(m_quotes[row], lines, written);
        }
    }
    m_pending.clear();
    return written;
}

void QuoteBoard::WriteQuote(Quote& quote, StockList& lines, int& written) {
    if (quote.m_nRow < 0 || quote.m_nRow >= lines.Count()) {
        quote.SetUpdateFlags(false);
        return;
    }
    const int16_t decimals = m_display.numDecimals;
    const auto price = [&](bool flag, int column, double value) {
        if (flag) {
            lines.SetCell(quote.m_nRow, column, PriceText(value, decimals));
            ++written;
        }
    };
    price(quote.m_bUpdateBid, stkBid, quote.m_fBidPrice);
    price(quote.m_bUpdateAsk, stkAsk, quote.m_fAskPrice);
    price(quote.m_bUpdateLast, stkLast, quote.m_fLastPrice);
    if (quote.m_bUpdateVol) {
        lines.SetCell(quote.m_nRow, stkVolume, VolumeText(quote.m_nCumVolume, m_display));
        ++written;
    }
    price(quote.m_bUpdateChange, stkChange, quote.m_fNetChange);
    price(quote.m_bUpdatePctChg, stkPctChange, quote.m_fPercentChange);
    price(quote.m_bUpdateOpen, stkOpen, quote.m_fOpenPrice);
    price(quote.m_bUpdateHigh, stkHigh, quote.m_fHighPrice);
    price(quote.m_bUpdateLow, stkLow, quote.m_fLowPrice);
    price(quote.m_bUpdateOpenChg, stkOpenChg, quote.m_fOpenChange);
    price(quote.m_bUpdatePctOpenChg, stkPctOpenChg, quote.m_fPctOpenChange);
    price(quote.m_bUpdateClose, stkClose, quote.m_fClosePrice);
    price(quote.m_bUpdateVwap, stkVwap, quote.m_fVwap);
    price(quote.m_bUpdateImportPrice, stkPrice, quote.m_fImportPrice);
    quote.SetUpdateFlags(false);
}

const Quote* QuoteBoard::Latest(std::string_view symbol) const {
    const auto it =
        IsSymbolKey(symbol) ? m_symbols.find(symbol) : m_symbols.find(SymbolKeyOf(symbol));
    return it == m_symbols.end() || !it->second.quoted ? nullptr : &it->second.latest;
}

std::vector<const Quote*> QuoteBoard::QuotesOf(std::string_view symbol) const {
    std::vector<const Quote*> out;
    const auto it =
        IsSymbolKey(symbol) ? m_symbols.find(symbol) : m_symbols.find(SymbolKeyOf(symbol));
    if (it != m_symbols.end()) {
        for (uint32_t row : it->second.rows) {
            out.push_back(&m_quotes[row]);
        }
    }
    return out;
}

} // namespace wicker
