#include "platform/sim/SimKnownSymbols.h"

#include <algorithm>
#include <array>

namespace wicker {
namespace {

// Sorted by symbol for the binary search. Levels are rounded orders of magnitude, not
// quotes: the simulation walks away from them anyway.
constexpr std::array<SimKnownSymbol, 50> kKnown{{
    {"AAPL", "Apple Inc", "NASDAQ", 230},
    {"ADBE", "Adobe Inc", "NASDAQ", 480},
    {"AMD", "Advanced Micro Devices Inc", "NASDAQ", 150},
    {"AMZN", "Amazon.com Inc", "NASDAQ", 200},
    {"AVGO", "Broadcom Inc", "NASDAQ", 170},
    {"BA", "Boeing Co", "NYSE", 160},
    {"BAC", "Bank of America Corp", "NYSE", 42},
    {"C", "Citigroup Inc", "NYSE", 68},
    {"CAT", "Caterpillar Inc", "NYSE", 370},
    {"COST", "Costco Wholesale Corp", "NASDAQ", 900},
    {"CRM", "Salesforce Inc", "NYSE", 290},
    {"CSCO", "Cisco Systems Inc", "NASDAQ", 57},
    {"CVX", "Chevron Corp", "NYSE", 155},
    {"DIS", "Walt Disney Co", "NYSE", 100},
    {"F", "Ford Motor Co", "NYSE", 11},
    {"GE", "General Electric Co", "NYSE", 175},
    {"GOOG", "Alphabet Inc Class C", "NASDAQ", 176},
    {"GOOGL", "Alphabet Inc Class A", "NASDAQ", 175},
    {"GS", "Goldman Sachs Group Inc", "NYSE", 520},
    {"HD", "Home Depot Inc", "NYSE", 390},
    {"IBM", "International Business Machines Corp", "NYSE", 215},
    {"INTC", "Intel Corp", "NASDAQ", 23},
    {"IWM", "iShares Russell 2000 ETF", "ARCA", 220},
    {"JNJ", "Johnson & Johnson", "NYSE", 155},
    {"JPM", "JPMorgan Chase & Co", "NYSE", 225},
    {"KO", "Coca-Cola Co", "NYSE", 66},
    {"LLY", "Eli Lilly and Co", "NYSE", 800},
    {"MA", "Mastercard Inc", "NYSE", 500},
    {"MCD", "McDonald's Corp", "NYSE", 290},
    {"META", "Meta Platforms Inc", "NASDAQ", 580},
    {"MRK", "Merck & Co Inc", "NYSE", 100},
    {"MS", "Morgan Stanley", "NYSE", 120},
    {"MSFT", "Microsoft Corp", "NASDAQ", 420},
    {"NFLX", "Netflix Inc", "NASDAQ", 700},
    {"NKE", "Nike Inc", "NYSE", 78},
    {"NVDA", "NVIDIA Corp", "NASDAQ", 140},
    {"ORCL", "Oracle Corp", "NYSE", 170},
    {"PEP", "PepsiCo Inc", "NASDAQ", 165},
    {"PFE", "Pfizer Inc", "NYSE", 27},
    {"PG", "Procter & Gamble Co", "NYSE", 168},
    {"QCOM", "Qualcomm Inc", "NASDAQ", 160},
    {"QQQ", "Invesco QQQ Trust", "NASDAQ", 490},
    {"SPY", "SPDR S&P 500 ETF Trust", "ARCA", 570},
    {"T", "AT&T Inc", "NYSE", 22},
    {"TSLA", "Tesla Inc", "NASDAQ", 250},
    {"UNH", "UnitedHealth Group Inc", "NYSE", 540},
    {"V", "Visa Inc", "NYSE", 290},
    {"VZ", "Verizon Communications Inc", "NYSE", 42},
    {"WMT", "Walmart Inc", "NYSE", 82},
    {"XOM", "Exxon Mobil Corp", "NYSE", 115},
}};

} // namespace

const SimKnownSymbol* FindSimKnownSymbol(std::string_view symbol) {
    const auto bySymbol = [](const SimKnownSymbol& a, std::string_view b) { return a.symbol < b; };
    const auto it = std::lower_bound(kKnown.begin(), kKnown.end(), symbol, bySymbol);
    return it != kKnown.end() && it->symbol == symbol ? &*it : nullptr;
}

} // namespace wicker
