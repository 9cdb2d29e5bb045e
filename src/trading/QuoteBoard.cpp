#include "trading/QuoteBoard.h"

#include "common/Text.h"

namespace wicker {

std::string SymbolKeyOf(std::string_view symbol) {
    return UCase(Trim(symbol));
}

void QuoteBoard::SetLines(const StockList& lines) {
    ClearLines();
    m_quotes.resize(static_cast<size_t>(lines.Count()));
    for (int row = 0; row < lines.Count(); ++row) {
        Quote& quote = m_quotes[static_cast<size_t>(row)];
        const std::string& symbol = lines.Cell(row, stkSymbol);
        std::string key = SymbolKeyOf(symbol);
        const auto latest = m_latest.find(key);
        if (latest != m_latest.end()) {
            // Show what is known at once; the snapshot that follows registration refreshes it.
            quote = latest->second;
            quote.SetUpdateFlags(true);
            quote.m_bUpdateImportPrice = false;
            m_pending.push_back(static_cast<uint32_t>(row));
        }
        quote.m_nRow = row;
        quote.m_strSymbol = symbol;
        m_bySymbol[std::move(key)].push_back(static_cast<uint32_t>(row));
    }
}

void QuoteBoard::ClearLines() {
    m_quotes.clear();
    m_bySymbol.clear();
    m_pending.clear();
}

void QuoteBoard::OnQVXQuoteSnap(const QVXQuoteStruct& structQuoteSnap) {
    OnQuote(structQuoteSnap);
}

void QuoteBoard::OnQVXQuoteUpdate(const QVXQuoteStruct& structQuoteUpdate) {
    OnQuote(structQuoteUpdate);
}

void QuoteBoard::OnQuote(const QVXQuoteStruct& record) {
    const QVXQuoteStruct q = NormaliseQuote(record);
    std::string key = SymbolKeyOf(q.Symbol);
    const auto rows = m_bySymbol.find(key);
    if (rows != m_bySymbol.end()) {
        for (uint32_t row : rows->second) {
            Quote& quote = m_quotes[row];
            const bool queued = quote.AnyUpdate();
            quote.Apply(q);
            if (!queued && quote.AnyUpdate()) {
                m_pending.push_back(row);
            }
        }
    }
    Quote& latest = m_latest[std::move(key)];
    latest.m_strSymbol = q.Symbol;
    latest.Apply(q);
    latest.SetUpdateFlags(false);
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
    const std::string_view format = PriceFormatFor(m_display.numDecimals);
    const auto price = [&](bool flag, int column, double value) {
        if (flag) {
            lines.SetCell(quote.m_nRow, column, PriceText(value, format));
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
    const auto it = m_latest.find(SymbolKeyOf(symbol));
    return it == m_latest.end() ? nullptr : &it->second;
}

std::vector<const Quote*> QuoteBoard::QuotesOf(std::string_view symbol) const {
    std::vector<const Quote*> out;
    const auto it = m_bySymbol.find(SymbolKeyOf(symbol));
    if (it != m_bySymbol.end()) {
        for (uint32_t row : it->second) {
            out.push_back(&m_quotes[row]);
        }
    }
    return out;
}

} // namespace wicker
