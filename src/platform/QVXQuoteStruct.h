#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The platform's mark for "no price" in a quote record, and for a missing 32-bit value.
/// A consumer turns both into 0 before showing them.
inline constexpr double kQVXNoPrice = -1.0e300;
inline constexpr int32_t kQVXNoValue = -1;

/// Which fields of a QVXQuoteStruct a record carries: a snapshot carries all of them, an
/// update only what changed. A carried field may still hold the no-value mark.
namespace QVXQuoteField {
inline constexpr uint32_t Bid = 1u << 0;
inline constexpr uint32_t Ask = 1u << 1;
inline constexpr uint32_t Last = 1u << 2;
inline constexpr uint32_t BidSize = 1u << 3;
inline constexpr uint32_t AskSize = 1u << 4;
inline constexpr uint32_t LastSize = 1u << 5;
inline constexpr uint32_t CumVolume = 1u << 6;
inline constexpr uint32_t Open = 1u << 7;
inline constexpr uint32_t High = 1u << 8;
inline constexpr uint32_t Low = 1u << 9;
inline constexpr uint32_t Close = 1u << 10;
inline constexpr uint32_t Vwap = 1u << 11;
inline constexpr uint32_t Week52High = 1u << 12;
inline constexpr uint32_t Week52Low = 1u << 13;
inline constexpr uint32_t AvgVolume = 1u << 14;
inline constexpr uint32_t SharesOutstanding = 1u << 15;
inline constexpr uint32_t Reference = 1u << 16; ///< company name, CUSIP, exchange
inline constexpr uint32_t All = (1u << 17) - 1;
} // namespace QVXQuoteField

/// One quote record of the platform's quote object (structQuoteSnap / structQuoteUpdate).
struct QVXQuoteStruct {
    std::string Symbol;
    std::string Exchange;
    std::string CompanyName;
    std::string Cusip;
    uint32_t Fields = 0; ///< QVXQuoteField bits
    double BidPrice = kQVXNoPrice;
    double AskPrice = kQVXNoPrice;
    double LastPrice = kQVXNoPrice;
    double OpenPrice = kQVXNoPrice;
    double HighPrice = kQVXNoPrice;
    double LowPrice = kQVXNoPrice;
    double ClosePrice = kQVXNoPrice;
    double Vwap = kQVXNoPrice;
    double Week52High = kQVXNoPrice;
    double Week52Low = kQVXNoPrice;
    int32_t BidSize = kQVXNoValue;
    int32_t AskSize = kQVXNoValue;
    int32_t LastSize = kQVXNoValue;
    int32_t CumVolume = kQVXNoValue;
    int32_t AvgVolume = kQVXNoValue;
    int32_t SharesOutstanding = kQVXNoValue;

    bool Carries(uint32_t field) const { return (Fields & field) != 0; }
};

} // namespace wicker
