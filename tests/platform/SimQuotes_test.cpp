#include "SimDesk.h"
#include "platform/sim/SimReference.h"

#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using std::chrono::milliseconds;
namespace F = QVXQuoteField;

bool OnGrid(double price) {
    // Pennies from a dollar up, ten-thousandths below.
    const double step = price >= 1.0 ? 100 : 10000;
    return std::fabs(price * step - std::round(price * step)) < 1e-6;
}

std::vector<std::string> Symbols(int n) {
    std::vector<std::string> list;
    for (int i = 0; i < n; ++i) {
        list.push_back("S" + std::to_string(i));
    }
    return list;
}

SimSettings Seeded(uint64_t seed) {
    SimSettings s;
    s.seed = seed;
    return s;
}

// Every record the desk received, as text: two runs compare equal only if they are.
std::string Transcript(const SimRecorder& r) {
    std::ostringstream out;
    out.precision(17);
    for (const auto* list : {&r.snaps, &r.quotes}) {
        for (const QVXQuoteStruct& q : *list) {
            out << q.Symbol << ' ' << q.Fields << ' ' << q.BidPrice << ' ' << q.AskPrice << ' '
                << q.LastPrice << ' ' << q.BidSize << ' ' << q.AskSize << ' ' << q.LastSize << ' '
                << q.CumVolume << ' ' << q.HighPrice << ' ' << q.LowPrice << ' ' << q.Vwap << ' '
                << q.CompanyName << ' ' << q.Cusip << '\n';
        }
    }
    return out.str();
}

std::string RunOnce(uint64_t seed, const std::vector<std::string>& symbols) {
    SimDesk desk(Seeded(seed));
    for (const std::string& s : symbols) {
        desk.platform.RegisterSymbol(s, "*");
    }
    desk.run(milliseconds(30'000));
    return Transcript(desk.events);
}

TEST(SimQuotes, SnapshotAfterRegistrationCarriesAPlausiblePicture) {
    SimDesk desk;
    desk.platform.RegisterSymbol("IBM", "*");
    desk.platform.RegisterSymbol("MSFT", "*");
    desk.drain();
    ASSERT_EQ(desk.events.snaps.size(), 2u);
    EXPECT_TRUE(desk.events.quotes.empty()) << "updates only once time passes";
    for (const QVXQuoteStruct& q : desk.events.snaps) {
        EXPECT_EQ(q.Fields, F::All);
        EXPECT_FALSE(q.CompanyName.empty());
        ASSERT_EQ(q.Cusip.size(), 9u);
        EXPECT_EQ(q.Cusip[8], CusipCheckDigit(q.Cusip.substr(0, 8)));
        EXPECT_GT(q.BidPrice, 0);
        EXPECT_LT(q.BidPrice, q.AskPrice);
        EXPECT_LT(q.AskPrice - q.BidPrice, q.BidPrice * 0.01) << "spread fits the price";
        EXPECT_TRUE(OnGrid(q.BidPrice) && OnGrid(q.AskPrice) && OnGrid(q.ClosePrice));
        EXPECT_EQ(q.BidSize % 100, 0);
        EXPECT_EQ(q.AskSize % 100, 0);
        EXPECT_GT(q.AvgVolume, 0);
        EXPECT_LE(q.Week52Low, q.ClosePrice);
        EXPECT_GE(q.Week52High, q.ClosePrice);
    }
    EXPECT_EQ(desk.platform.DisplayName(), "SIMULATED");
    EXPECT_EQ(desk.events.snaps[0].Exchange, "NYSE");
    EXPECT_EQ(desk.events.snaps[1].Exchange, "NASDAQ");
}

TEST(SimQuotes, WellKnownSymbolsTradeNearTheirUsualLevelWhateverTheSeed) {
    struct Row {
        const char* symbol;
        const char* company;
        const char* exchange;
        double level;
    };
    const Row rows[] = {{"AAPL", "Apple Inc", "NASDAQ", 230},
                        {"xom", "Exxon Mobil Corp", "NYSE", 115},
                        {"SPY", "SPDR S&P 500 ETF Trust", "ARCA", 570},
                        {"F", "Ford Motor Co", "NYSE", 11}};
    for (const uint64_t seed : {1u, 7u, 12345u}) {
        SimDesk desk(Seeded(seed));
        for (const Row& r : rows) {
            desk.platform.RegisterSymbol(r.symbol, "*");
        }
        desk.drain();
        ASSERT_EQ(desk.events.snaps.size(), std::size(rows));
        for (size_t i = 0; i < std::size(rows); ++i) {
            const QVXQuoteStruct& q = desk.events.snaps[i];
            const Row& r = rows[i];
            SCOPED_TRACE(std::string(r.symbol) + " seed " + std::to_string(seed));
            EXPECT_EQ(q.CompanyName, r.company);
            EXPECT_EQ(q.Exchange, r.exchange);
            EXPECT_GE(q.ClosePrice, r.level * 0.92 - 0.01);
            EXPECT_LE(q.ClosePrice, r.level * 1.08);
            EXPECT_NEAR(q.BidPrice, q.ClosePrice, q.ClosePrice * 0.05);
        }
    }
    // A symbol the table does not know keeps its drawn name.
    SimDesk desk;
    desk.platform.RegisterSymbol("ZZZQ", "*");
    desk.drain();
    ASSERT_EQ(desk.events.snaps.size(), 1u);
    EXPECT_EQ(desk.events.snaps[0].CompanyName.rfind("Zzzq ", 0), 0u);
}

TEST(SimQuotes, CusipCheckDigitOfAKnownIssue) {
    EXPECT_EQ(CusipCheckDigit("03783310"), '0');
    EXPECT_EQ(CusipCheckDigit("59491810"), '4');
}

TEST(SimQuotes, BlankOrUnknownSymbolsAreIgnored) {
    SimDesk desk;
    desk.platform.RegisterSymbol("", "*");
    desk.platform.RegisterSymbol("  ", "*");
    desk.platform.DeregisterSymbol("NEVERSEEN", "*");
    desk.run(milliseconds(10'000));
    EXPECT_TRUE(desk.events.snaps.empty());
    EXPECT_TRUE(desk.events.quotes.empty());
}

TEST(SimQuotes, SymbolsAreOneMarketWhateverTheirCase) {
    SimDesk desk;
    desk.platform.RegisterSymbol("ibm", "*");
    desk.platform.RegisterSymbol("IBM", "NYSE");
    desk.drain();
    ASSERT_EQ(desk.events.snaps.size(), 2u);
    EXPECT_EQ(desk.events.snaps[0].Symbol, "ibm") << "quotes name the symbol as registered";
    EXPECT_EQ(desk.events.snaps[0].BidPrice, desk.events.snaps[1].BidPrice);
    EXPECT_EQ(desk.events.snaps[0].Cusip, desk.events.snaps[1].Cusip);
}

TEST(SimQuotes, RegistrationWhileOfflineSnapsAtStartAndAgainOnRequest) {
    SimDesk desk({}, false);
    desk.platform.RegisterSymbol("IBM", "*");
    desk.run(milliseconds(10'000));
    EXPECT_TRUE(desk.events.snaps.empty());
    EXPECT_TRUE(desk.events.quotes.empty());
    ASSERT_TRUE(desk.platform.Start().ok());
    desk.drain();
    EXPECT_EQ(desk.events.snaps.size(), 1u);
    desk.platform.RegisterSymbol("IBM", "*");
    desk.drain();
    EXPECT_EQ(desk.events.snaps.size(), 2u) << "registering again asks for a fresh picture";
}

TEST(SimQuotes, UpdatesCarryOnlyWhatChangedAndStayOnTheGrid) {
    SimDesk desk;
    for (const std::string& s : Symbols(50)) {
        desk.platform.RegisterSymbol(s, "*");
    }
    desk.drain();
    std::map<std::string, QVXQuoteStruct> picture;
    for (const QVXQuoteStruct& s : desk.events.snaps) {
        picture[s.Symbol] = s;
    }
    desk.run(milliseconds(60'000));
    ASSERT_GT(desk.events.quotes.size(), 1000u);
    const QVXQuoteStruct blank;
    for (const QVXQuoteStruct& q : desk.events.quotes) {
        QVXQuoteStruct& p = picture[q.Symbol];
        ASSERT_NE(q.Fields, 0u);
        EXPECT_FALSE(q.Carries(F::Reference));
        EXPECT_TRUE(q.CompanyName.empty());
        const auto check = [&](uint32_t bit, auto member) {
            if (q.Carries(bit)) {
                EXPECT_NE(q.*member, p.*member) << q.Symbol << " field " << bit << " unchanged";
            } else {
                EXPECT_EQ(q.*member, blank.*member) << q.Symbol << " field " << bit << " set";
            }
        };
        check(F::Bid, &QVXQuoteStruct::BidPrice);
        check(F::Ask, &QVXQuoteStruct::AskPrice);
        check(F::Last, &QVXQuoteStruct::LastPrice);
        check(F::BidSize, &QVXQuoteStruct::BidSize);
        check(F::AskSize, &QVXQuoteStruct::AskSize);
        check(F::LastSize, &QVXQuoteStruct::LastSize);
        check(F::CumVolume, &QVXQuoteStruct::CumVolume);
        check(F::High, &QVXQuoteStruct::HighPrice);
        check(F::Low, &QVXQuoteStruct::LowPrice);
        check(F::Vwap, &QVXQuoteStruct::Vwap);
        check(F::Close, &QVXQuoteStruct::ClosePrice);
        PlatformEventQueue::MergeQuote(p, q);
        EXPECT_LT(p.BidPrice, p.AskPrice);
        EXPECT_TRUE(OnGrid(p.BidPrice) && OnGrid(p.AskPrice)) << q.Symbol;
        if (p.LastPrice != kQVXNoPrice) {
            EXPECT_TRUE(OnGrid(p.LastPrice)) << q.Symbol;
            EXPECT_LE(p.LowPrice, p.LastPrice);
            EXPECT_GE(p.HighPrice, p.LastPrice);
            EXPECT_GT(p.LastSize, 0);
            EXPECT_EQ(p.LastSize % 100, 0);
        }
    }
}

TEST(SimQuotes, SameSeedSameQuotesOtherSeedOtherQuotes) {
    const std::vector<std::string> symbols = Symbols(20);
    const std::string first = RunOnce(42, symbols);
    EXPECT_EQ(RunOnce(42, symbols), first);
    EXPECT_NE(RunOnce(43, symbols), first);
}

TEST(SimQuotes, ASymbolsQuotesDoNotDependOnOtherSymbols) {
    SimDesk alone(Seeded(5));
    alone.platform.RegisterSymbol("IBM", "*");
    alone.run(milliseconds(30'000));
    SimDesk crowded(Seeded(5));
    for (const std::string& s : Symbols(30)) {
        crowded.platform.RegisterSymbol(s, "*");
    }
    crowded.platform.RegisterSymbol("IBM", "*");
    crowded.run(milliseconds(30'000));
    SimRecorder ibmOnly;
    for (const QVXQuoteStruct& q : crowded.events.snaps) {
        if (q.Symbol == "IBM") {
            ibmOnly.snaps.push_back(q);
        }
    }
    for (const QVXQuoteStruct& q : crowded.events.quotes) {
        if (q.Symbol == "IBM") {
            ibmOnly.quotes.push_back(q);
        }
    }
    EXPECT_EQ(Transcript(ibmOnly), Transcript(alone.events));
}

TEST(SimQuotes, UntradedSymbolsShowNoValueMarksUntilTheirFirstTrade) {
    SimDesk desk;
    for (const std::string& s : Symbols(200)) {
        desk.platform.RegisterSymbol(s, "*");
    }
    desk.drain();
    std::vector<std::string> untraded;
    for (const QVXQuoteStruct& q : desk.events.snaps) {
        if (q.LastPrice == kQVXNoPrice) {
            untraded.push_back(q.Symbol);
            EXPECT_EQ(q.OpenPrice, kQVXNoPrice);
            EXPECT_EQ(q.HighPrice, kQVXNoPrice);
            EXPECT_EQ(q.LowPrice, kQVXNoPrice);
            EXPECT_EQ(q.Vwap, kQVXNoPrice);
            EXPECT_EQ(q.LastSize, kQVXNoValue);
            EXPECT_EQ(q.CumVolume, 0) << "no trade is a volume of 0, not an unknown one";
            EXPECT_GT(q.BidPrice, 0);
            EXPECT_GT(q.ClosePrice, 0);
        } else {
            EXPECT_GT(q.LastPrice, 0);
            EXPECT_GT(q.LastSize, 0);
            EXPECT_GT(q.CumVolume, 0);
        }
    }
    ASSERT_FALSE(untraded.empty()) << "some symbols of a big list have not traded yet";

    // Only the one symbol from here on, so the wait stays short.
    const std::string symbol = untraded.front();
    for (const std::string& s : Symbols(200)) {
        if (s != symbol) {
            desk.platform.DeregisterSymbol(s, "*");
        }
    }
    desk.run(milliseconds(600'000));
    for (const QVXQuoteStruct& q : desk.events.quotes) {
        if (q.Symbol == symbol && q.Carries(F::Last)) {
            // The first trade sets the whole day's picture at once.
            for (const uint32_t bit :
                 {F::Open, F::High, F::Low, F::Vwap, F::LastSize, F::CumVolume}) {
                EXPECT_TRUE(q.Carries(bit)) << bit;
            }
            EXPECT_EQ(q.OpenPrice, q.LastPrice);
            EXPECT_EQ(q.Vwap, q.LastPrice);
            EXPECT_EQ(q.CumVolume, q.LastSize);
            return;
        }
    }
    FAIL() << symbol << " never traded";
}

TEST(SimQuotes, DeregistrationStopsUpdatesOfThatSymbolOnly) {
    SimDesk desk;
    desk.platform.RegisterSymbol("IBM", "*");
    desk.platform.RegisterSymbol("MSFT", "*");
    desk.run(milliseconds(5'000));
    desk.platform.DeregisterSymbol("IBM", "*");
    desk.events.quotes.clear();
    desk.run(milliseconds(60'000));
    for (const QVXQuoteStruct& q : desk.events.quotes) {
        ASSERT_NE(q.Symbol, "IBM");
    }
    EXPECT_FALSE(desk.events.quotes.empty()) << "MSFT goes on";

    desk.platform.RegisterSymbol("IBM", "*");
    desk.events.quotes.clear();
    desk.run(milliseconds(10'000));
    size_t ibm = 0;
    for (const QVXQuoteStruct& q : desk.events.quotes) {
        ibm += q.Symbol == "IBM" ? 1 : 0;
    }
    EXPECT_GT(ibm, 0u) << "registering again resumes them";
}

class SimQuoteRate : public ::testing::TestWithParam<double> {};

TEST_P(SimQuoteRate, UpdatesArriveAtTheConfiguredRate) {
    SimSettings s;
    s.updatesPerSecond = GetParam();
    SimDesk desk(s);
    for (const std::string& symbol : Symbols(50)) {
        desk.platform.RegisterSymbol(symbol, "*");
    }
    desk.run(milliseconds(20'000));
    const double expected = GetParam() * 50 * 20;
    // A move that changes nothing sends nothing, so a little under the rate.
    EXPECT_GT(static_cast<double>(desk.events.quotes.size()), expected * 0.8);
    EXPECT_LT(static_cast<double>(desk.events.quotes.size()), expected * 1.05);
}

INSTANTIATE_TEST_SUITE_P(Rates, SimQuoteRate, ::testing::Values(0.5, 4.0, 20.0));

} // namespace
} // namespace wicker::test
