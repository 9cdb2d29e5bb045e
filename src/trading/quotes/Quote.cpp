#include "trading/quotes/Quote.h"

#include <cmath>

namespace wicker {
namespace {

double Price(double price) {
    return price == kQVXNoPrice || !std::isfinite(price) ? 0 : price;
}

int32_t Count(int32_t value) {
    return value == kQVXNoValue ? 0 : value;
}

// Change against a reference price in percent; nothing to compare with gives 0.
double PercentOf(double change, double reference) {
    return reference != 0 ? change / reference * 100 : 0;
}

} // namespace

QVXQuoteStruct NormaliseQuote(const QVXQuoteStruct& record) {
    namespace F = QVXQuoteField;
    QVXQuoteStruct q = record;
    const struct {
        uint32_t field;
        double* price;
    } prices[] = {{F::Bid, &q.BidPrice},          {F::Ask, &q.AskPrice},
                  {F::Last, &q.LastPrice},        {F::Open, &q.OpenPrice},
                  {F::High, &q.HighPrice},        {F::Low, &q.LowPrice},
                  {F::Close, &q.ClosePrice},      {F::Vwap, &q.Vwap},
                  {F::Week52High, &q.Week52High}, {F::Week52Low, &q.Week52Low}};
    for (const auto& p : prices) {
        if (q.Carries(p.field)) {
            *p.price = Price(*p.price);
        }
    }
    const struct {
        uint32_t field;
        int32_t* value;
    } counts[] = {{F::BidSize, &q.BidSize},     {F::AskSize, &q.AskSize},
                  {F::LastSize, &q.LastSize},   {F::CumVolume, &q.CumVolume},
                  {F::AvgVolume, &q.AvgVolume}, {F::SharesOutstanding, &q.SharesOutstanding}};
    for (const auto& c : counts) {
        if (q.Carries(c.field)) {
            *c.value = Count(*c.value);
        }
    }
    return q;
}

void Quote::Apply(const QVXQuoteStruct& r) {
    namespace F = QVXQuoteField;
    if (r.Carries(F::Reference)) {
        m_strCompanyName = r.CompanyName;
        m_strCusip = r.Cusip;
        m_strExch = r.Exchange;
    }
    if (r.Carries(F::Bid)) {
        m_fBidPrice = Price(r.BidPrice);
        m_bUpdateBid = true;
    }
    if (r.Carries(F::Ask)) {
        m_fAskPrice = Price(r.AskPrice);
        m_bUpdateAsk = true;
    }
    if (r.Carries(F::Last)) {
        m_fLastPrice = Price(r.LastPrice);
        m_bUpdateLast = true;
    }
    if (r.Carries(F::CumVolume)) {
        m_nCumVolume = Count(r.CumVolume);
        m_bUpdateVol = true;
    }
    if (r.Carries(F::Open)) {
        m_fOpenPrice = Price(r.OpenPrice);
        m_bUpdateOpen = true;
    }
    if (r.Carries(F::High)) {
        m_fHighPrice = Price(r.HighPrice);
        m_bUpdateHigh = true;
    }
    if (r.Carries(F::Low)) {
        m_fLowPrice = Price(r.LowPrice);
        m_bUpdateLow = true;
    }
    if (r.Carries(F::Close)) {
        m_fClosePrice = Price(r.ClosePrice);
        m_bUpdateClose = true;
    }
    if (r.Carries(F::Vwap)) {
        m_fVwap = Price(r.Vwap);
        m_bUpdateVwap = true;
    }
    if (r.Carries(F::Week52High)) {
        m_f52WeekHigh = Price(r.Week52High);
    }
    if (r.Carries(F::Week52Low)) {
        m_f52WeekLow = Price(r.Week52Low);
    }
    if (r.Carries(F::BidSize)) {
        m_nBidSize = Count(r.BidSize);
    }
    if (r.Carries(F::AskSize)) {
        m_nAskSize = Count(r.AskSize);
    }
    if (r.Carries(F::LastSize)) {
        m_nLastSize = Count(r.LastSize);
    }
    if (r.Carries(F::AvgVolume)) {
        m_nAvgVolume = Count(r.AvgVolume);
    }
    if (r.Carries(F::SharesOutstanding)) {
        m_nSharesOutstanding = Count(r.SharesOutstanding);
    }
    // The platform sends no change columns: derive them. Without a trade (last 0) there
    // is no change to show, rather than minus the whole reference price.
    if (r.Carries(F::Last) || r.Carries(F::Close)) {
        m_fNetChange = m_fLastPrice != 0 && m_fClosePrice != 0 ? m_fLastPrice - m_fClosePrice : 0;
        m_fPercentChange = PercentOf(m_fNetChange, m_fClosePrice);
        m_bUpdateChange = true;
        m_bUpdatePctChg = true;
    }
    if (r.Carries(F::Last) || r.Carries(F::Open)) {
        m_fOpenChange = m_fLastPrice != 0 && m_fOpenPrice != 0 ? m_fLastPrice - m_fOpenPrice : 0;
        m_fPctOpenChange = PercentOf(m_fOpenChange, m_fOpenPrice);
        m_bUpdateOpenChg = true;
        m_bUpdatePctOpenChg = true;
    }
}

void Quote::SetImportPrice(double price) {
    m_fImportPrice = std::isfinite(price) ? price : 0;
    m_bUpdateImportPrice = true;
}

void Quote::SetUpdateFlags(bool bUpdate) {
    m_bUpdateBid = bUpdate;
    m_bUpdateAsk = bUpdate;
    m_bUpdateLast = bUpdate;
    m_bUpdateVol = bUpdate;
    m_bUpdateChange = bUpdate;
    m_bUpdatePctChg = bUpdate;
    m_bUpdateOpen = bUpdate;
    m_bUpdateHigh = bUpdate;
    m_bUpdateLow = bUpdate;
    m_bUpdateOpenChg = bUpdate;
    m_bUpdatePctOpenChg = bUpdate;
    m_bUpdateClose = bUpdate;
    m_bUpdateVwap = bUpdate;
    m_bUpdateImportPrice = bUpdate;
}

bool Quote::AnyUpdate() const {
    return m_bUpdateBid || m_bUpdateAsk || m_bUpdateLast || m_bUpdateVol || m_bUpdateChange ||
           m_bUpdatePctChg || m_bUpdateOpen || m_bUpdateHigh || m_bUpdateLow || m_bUpdateOpenChg ||
           m_bUpdatePctOpenChg || m_bUpdateClose || m_bUpdateVwap || m_bUpdateImportPrice;
}

} // namespace wicker
