#pragma once

#include "platform/QVXQuoteStruct.h"

#include <cstdint>
#include <string>

namespace wicker {

/// The market data of one lvStocks line, with one update flag per displayed column. The
/// quote handlers store values and set flags; Timer200ms writes the flagged columns and
/// clears the flags.
class Quote {
public:
    int32_t m_nRow = -1; ///< the lvStocks line showing this quote; -1 for none

    bool m_bUpdateBid = false;
    bool m_bUpdateAsk = false;
    bool m_bUpdateLast = false;
    bool m_bUpdateVol = false;
    bool m_bUpdateChange = false;
    bool m_bUpdatePctChg = false;
    bool m_bUpdateOpen = false;
    bool m_bUpdateHigh = false;
    bool m_bUpdateLow = false;
    bool m_bUpdateOpenChg = false;
    bool m_bUpdatePctOpenChg = false;
    bool m_bUpdateClose = false;
    bool m_bUpdateVwap = false;
    bool m_bUpdateImportPrice = false;

    std::string m_strCompanyName;
    std::string m_strCusip;
    std::string m_strExch;
    std::string m_strSymbol;

    double m_f52WeekHigh = 0;
    double m_f52WeekLow = 0;
    double m_fAskPrice = 0;
    double m_fBidPrice = 0;
    double m_fClosePrice = 0;
    double m_fHighPrice = 0;
    double m_fLastPrice = 0;
    double m_fLowPrice = 0;
    double m_fOpenPrice = 0;
    double m_fVwap = 0;

    int32_t m_nAskSize = 0;
    int32_t m_nAvgVolume = 0;
    int32_t m_nBidSize = 0;
    int32_t m_nCumVolume = 0;
    int32_t m_nLastSize = 0;
    int32_t m_nSharesOutstanding = 0;

    double m_fNetChange = 0;
    double m_fPercentChange = 0;
    double m_fOpenChange = 0;
    double m_fPctOpenChange = 0;
    double m_fImportPrice = 0;

    /// Stores the fields the record carries (their no-value marks as 0, as NormaliseQuote
    /// does), recomputes the change columns they feed, and flags every column whose value
    /// came with the record.
    void Apply(const QVXQuoteStruct& record);
    /// Sets the price that came with the line and flags its column.
    void SetImportPrice(double price);
    /// Sets or clears every update flag at once.
    void SetUpdateFlags(bool bUpdate);
    /// True when any column waits to be written.
    bool AnyUpdate() const;
};

/// The record with the platform's no-value marks of the fields it carries turned into 0
/// (prices holding the mark or no finite number, 32-bit fields holding -1). Fields the
/// record does not carry are left as they are.
QVXQuoteStruct NormaliseQuote(const QVXQuoteStruct& record);

} // namespace wicker
