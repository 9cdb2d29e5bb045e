#include "platform/sim/SimInstrument.h"

#include "platform/sim/SimKnownSymbols.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace wicker {
namespace {

constexpr int32_t kRoundLot = 100;

SimUnits Scaled(SimUnits price, double factor) {
    return std::max<SimUnits>(
        1, static_cast<SimUnits>(std::llround(static_cast<double>(price) * factor)));
}

int32_t AddSaturating(int32_t a, int32_t b) {
    const int64_t sum = static_cast<int64_t>(a) + b;
    return static_cast<int32_t>(std::min<int64_t>(sum, std::numeric_limits<int32_t>::max()));
}

double PriceOrNone(SimUnits units) {
    return units > 0 ? SimToDollars(units) : kQVXNoPrice;
}

template <class T> void Mark(uint32_t& fields, uint32_t bit, const T& a, const T& b) {
    if (a != b) {
        fields |= bit;
    }
}

} // namespace

uint32_t ChangedQuoteFields(const SimQuoteState& a, const SimQuoteState& b) {
    namespace F = QVXQuoteField;
    uint32_t f = 0;
    Mark(f, F::Bid, a.bid, b.bid);
    Mark(f, F::Ask, a.ask, b.ask);
    Mark(f, F::Last, a.last, b.last);
    Mark(f, F::BidSize, a.bidSize, b.bidSize);
    Mark(f, F::AskSize, a.askSize, b.askSize);
    Mark(f, F::LastSize, a.lastSize, b.lastSize);
    Mark(f, F::CumVolume, a.cumVolume, b.cumVolume);
    Mark(f, F::Open, a.open, b.open);
    Mark(f, F::High, a.high, b.high);
    Mark(f, F::Low, a.low, b.low);
    Mark(f, F::Close, a.close, b.close);
    Mark(f, F::Vwap, a.vwap, b.vwap);
    Mark(f, F::Week52High, a.week52High, b.week52High);
    Mark(f, F::Week52Low, a.week52Low, b.week52Low);
    Mark(f, F::AvgVolume, a.avgVolume, b.avgVolume);
    Mark(f, F::SharesOutstanding, a.sharesOutstanding, b.sharesOutstanding);
    return f;
}

SimInstrument::SimInstrument(const std::string& symbol, uint64_t seed)
    : m_random(SimRandom::ForSymbol(seed, symbol)),
      m_reference(MakeSimReference(symbol, m_random)) {
    SimQuoteState& s = m_state;
    const SimKnownSymbol* known = FindSimKnownSymbol(symbol);
    const bool pennyStock = !known && m_random.uniform() < 0.05;
    if (known) {
        // Within 8% of its usual level.
        const double dollars = known->referencePrice * (0.92 + 0.16 * m_random.uniform());
        s.close = SimSnapDown(static_cast<SimUnits>(dollars * kSimUnitsPerDollar));
    } else if (pennyStock) {
        s.close = m_random.between(500, 9900);
    } else {
        // Log-uniform from $2 to $400: many cheap names, a few expensive ones.
        const double dollars = std::exp(std::log(2.0) + m_random.uniform() * std::log(200.0));
        s.close = SimSnapDown(static_cast<SimUnits>(dollars * kSimUnitsPerDollar));
    }
    s.week52High = SimSnapUp(Scaled(s.close, 1.05 + 0.55 * m_random.uniform()));
    s.week52Low = SimSnapDown(Scaled(s.close, 0.95 - 0.45 * m_random.uniform()));
    s.avgVolume = kRoundLot * static_cast<int32_t>(m_random.between(500, 200000));
    if (!pennyStock) {
        s.sharesOutstanding = static_cast<int32_t>(m_random.between(10'000'000, 2'000'000'000));
    }

    SimUnits mid = s.close;
    // Some symbols have not traded yet today: no last, open, range nor VWAP.
    if (m_random.uniform() >= 0.1) {
        s.open = SimSnapDown(Scaled(s.close, 1.0 + 0.01 * m_random.normal()));
        s.last = SimSnapDown(Scaled(s.open, 1.0 + 0.01 * m_random.normal()));
        s.high = SimSnapUp(Scaled(std::max(s.open, s.last), 1.0 + 0.005 * m_random.uniform()));
        s.low = SimSnapDown(Scaled(std::min(s.open, s.last), 1.0 - 0.005 * m_random.uniform()));
        s.lastSize = kRoundLot * static_cast<int32_t>(m_random.between(1, 10));
        s.cumVolume =
            kRoundLot * static_cast<int32_t>(static_cast<double>(s.avgVolume / kRoundLot) *
                                             (0.05 + 0.25 * m_random.uniform()));
        s.cumVolume = std::max(s.cumVolume, s.lastSize);
        s.vwap = (s.open + s.last) / 2;
        m_notional = s.vwap * s.cumVolume;
        s.week52High = std::max(s.week52High, s.high);
        s.week52Low = std::min(s.week52Low, s.low);
        mid = s.last;
    }
    m_fair = mid;
    m_spreadTicks = DrawSpreadTicks(mid);
    s.bid = std::max(SimSnapDown(mid), SimTickAt(mid));
    s.ask = s.bid + m_spreadTicks * SimTickAt(s.bid);
    s.bidSize = kRoundLot * static_cast<int32_t>(m_random.between(1, 50));
    s.askSize = kRoundLot * static_cast<int32_t>(m_random.between(1, 50));
}

int32_t SimInstrument::DrawSpreadTicks(SimUnits price) {
    // Cheap names trade wider relative to their price.
    const double relative = price < 5 * kSimUnitsPerDollar ? 0.001 : 0.0002;
    const double ticks =
        static_cast<double>(price) * relative / static_cast<double>(SimTickAt(price));
    int32_t spread = std::max<int32_t>(1, static_cast<int32_t>(std::lround(ticks)));
    const double u = m_random.uniform();
    spread += u < 0.05 ? 3 : (u < 0.3 ? 1 : 0);
    return spread;
}

uint32_t SimInstrument::step() {
    const SimQuoteState before = m_state;
    if (m_random.uniform() < 0.3) {
        Trade();
    } else {
        Requote();
    }
    return ChangedQuoteFields(before, m_state);
}

void SimInstrument::Trade() {
    SimQuoteState& s = m_state;
    const bool atAsk = m_random.uniform() < 0.5;
    const SimUnits price = atAsk ? s.ask : s.bid;
    const int32_t size =
        kRoundLot * static_cast<int32_t>(m_random.uniform() < 0.1 ? m_random.between(5, 50)
                                                                  : m_random.between(1, 5));
    if (s.last == 0) {
        s.open = s.high = s.low = price;
    }
    s.last = price;
    s.lastSize = size;
    const int32_t before = s.cumVolume;
    s.cumVolume = AddSaturating(s.cumVolume, size);
    m_notional += price * (s.cumVolume - before);
    if (s.cumVolume > 0) {
        s.vwap = (m_notional + s.cumVolume / 2) / s.cumVolume;
    }
    s.high = std::max(s.high, price);
    s.low = std::min(s.low, price);
    s.week52High = std::max(s.week52High, price);
    s.week52Low = std::min(s.week52Low, price);
}

void SimInstrument::Requote() {
    SimQuoteState& s = m_state;
    const SimUnits tick = SimTickAt(s.bid);
    // About 3% a day at a few quotes a second; small names tick less often, big ones jump
    // several ticks at a time.
    const double sigma = static_cast<double>(s.bid) * 6.5e-5 / static_cast<double>(tick);
    int64_t move = 0;
    if (sigma < 1.0) {
        if (m_random.uniform() < std::max(sigma * sigma, 0.08)) {
            const double lean = std::clamp(
                static_cast<double>(s.bid - m_fair) / static_cast<double>(m_fair) * 5.0, -0.2, 0.2);
            move = m_random.uniform() < 0.5 - lean ? 1 : -1;
        }
    } else {
        const double lean = static_cast<double>(m_fair - s.bid) / static_cast<double>(m_fair);
        move = std::llround(m_random.normal() * sigma + lean * sigma);
    }
    if (m_random.uniform() < 0.2) {
        m_spreadTicks = DrawSpreadTicks(s.bid);
    }
    s.bid = std::max(SimSnapDown(s.bid + move * tick), SimTickAt(s.bid + move * tick));
    s.ask = s.bid + m_spreadTicks * SimTickAt(s.bid);
    if (m_random.uniform() < 0.5) {
        s.bidSize = kRoundLot * static_cast<int32_t>(m_random.between(1, 50));
    }
    if (m_random.uniform() < 0.5) {
        s.askSize = kRoundLot * static_cast<int32_t>(m_random.between(1, 50));
    }
}

QVXQuoteStruct SimInstrument::snapshot(const std::string& symbol) const {
    QVXQuoteStruct q = update(symbol, QVXQuoteField::All);
    return q;
}

QVXQuoteStruct SimInstrument::update(const std::string& symbol, uint32_t fields) const {
    namespace F = QVXQuoteField;
    const SimQuoteState& s = m_state;
    QVXQuoteStruct q;
    q.Symbol = symbol;
    q.Exchange = m_reference.exchange;
    q.Fields = fields;
    if ((fields & F::Reference) != 0) {
        q.CompanyName = m_reference.companyName;
        q.Cusip = m_reference.cusip;
    }
    if ((fields & F::Bid) != 0) {
        q.BidPrice = PriceOrNone(s.bid);
    }
    if ((fields & F::Ask) != 0) {
        q.AskPrice = PriceOrNone(s.ask);
    }
    if ((fields & F::Last) != 0) {
        q.LastPrice = PriceOrNone(s.last);
    }
    if ((fields & F::Open) != 0) {
        q.OpenPrice = PriceOrNone(s.open);
    }
    if ((fields & F::High) != 0) {
        q.HighPrice = PriceOrNone(s.high);
    }
    if ((fields & F::Low) != 0) {
        q.LowPrice = PriceOrNone(s.low);
    }
    if ((fields & F::Close) != 0) {
        q.ClosePrice = PriceOrNone(s.close);
    }
    if ((fields & F::Vwap) != 0) {
        q.Vwap = PriceOrNone(s.vwap);
    }
    if ((fields & F::Week52High) != 0) {
        q.Week52High = PriceOrNone(s.week52High);
    }
    if ((fields & F::Week52Low) != 0) {
        q.Week52Low = PriceOrNone(s.week52Low);
    }
    if ((fields & F::BidSize) != 0) {
        q.BidSize = s.bidSize;
    }
    if ((fields & F::AskSize) != 0) {
        q.AskSize = s.askSize;
    }
    if ((fields & F::LastSize) != 0) {
        q.LastSize = s.lastSize;
    }
    if ((fields & F::CumVolume) != 0) {
        q.CumVolume = s.cumVolume;
    }
    if ((fields & F::AvgVolume) != 0) {
        q.AvgVolume = s.avgVolume;
    }
    if ((fields & F::SharesOutstanding) != 0) {
        q.SharesOutstanding = s.sharesOutstanding;
    }
    return q;
}

} // namespace wicker
