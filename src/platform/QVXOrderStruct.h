#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// OrderStatus codes of an order update; Action carries the same state as text.
namespace QVXOrderStatus {
inline constexpr int32_t PendingNew = 0;
inline constexpr int32_t Open = 1;
inline constexpr int32_t PartiallyFilled = 2;
inline constexpr int32_t Filled = 3;
inline constexpr int32_t PendingCancel = 4;
inline constexpr int32_t Cancelled = 5;
inline constexpr int32_t Rejected = 6;
inline constexpr int32_t DoneForDay = 7;
} // namespace QVXOrderStatus

/// "Pending", "Open", "Partial", "Filled", "Pending Cancel", "Cancelled", "Rejected", "Done"
/// ("Unknown" for any other code).
const char* QVXOrderStatusText(int32_t orderStatus);

/// One order-update event of the platform: one field per member of OrderUpdate, named after
/// it without the type prefix, plus the identity fields. Every update carries the whole
/// current state of the order (not a delta): Quantity is the order quantity, LvsQuantity
/// what is still open, CumExecQuantity what is filled at AvgExecPrice. Side is "B", "S" or
/// "T" (buy, sell, short), whatever letter the order was sent with.
struct QVXOrderStruct {
    std::string Account;
    std::string Action;
    std::string BatchId;
    std::string Destination;
    std::string ExchClOrderId;
    std::string ExchOrderId;
    std::string ExecBroker;
    std::string ExecInst;
    std::string Instrument;
    std::string LogMessage;
    std::string OrderTime;
    std::string PairId;
    std::string PriceType;
    std::string Side;
    double TrailInc = 0;
    std::string SorPreference;
    std::string Strategy;
    std::string StartTime;
    std::string EndTime;
    std::string Tif;
    std::string UpdateTime;
    std::string User;
    std::string UserId;
    double AvgExecPrice = 0;
    double AvgPriceLmt = 0;
    double CashComponent = 0;
    double Discretion = 0;
    double ExecPriceLmt = 0;
    double LmtPrice = 0;
    double MaxHighPctDeviation = 0;
    double MaxLowPctDeviation = 0;
    double PctPerSlice = 0;
    double PegDiff = 0;
    double Premium = 0;
    double Ratio = 0;
    double ReactPrice = 0;
    double StpPrice = 0;
    double TargetPctVolume = 0;
    double TargetPrice = 0;
    double Tilt = 0;
    double TrailAmt = 0;
    double UrStpdPrice = 0;
    int32_t SeqNum = 0;
    int32_t Auction = 0;
    int32_t CumExecQuantity = 0;
    int32_t DbsNo = 0;
    int32_t Display = 0;
    int32_t Duration = 0;
    int32_t ExecAggression = 0;
    int32_t LvsQuantity = 0;
    int32_t MarketStructure = 0;
    int32_t MaxPctVolume = 0;
    int32_t MinPctVolume = 0;
    int32_t MinQuantity = 0;
    int32_t OrderCompletion = 0;
    int32_t OrderRecordId = 0; ///< the platform's identity of the order, stable across updates
    int32_t OrderStatus = 0;
    int32_t PingInterval = 0;
    int32_t PriceTolerance = 0;
    int32_t PriceTypeCode = 0; ///< the numeric price type (PriceType is its text)
    int32_t Quantity = 0;
    int32_t QtyTolerancePct = 0;
    int32_t QtyToleranceSize = 0;
    int32_t Refresh = 0;
    int32_t RefreshInterval = 0;
    int32_t SeqNo = 0;
    int32_t SizeLow = 0;
    int32_t SizeMax = 0;
    int32_t TrailId = 0;
    bool Moo = false;
    bool Moc = false;
    bool OpportunisticTrade = false;
    bool SvrStpReleased = false;
    bool TakeLiquidity = false;
    std::string Memo;      ///< as set at send: name-send-/bskt for a basket order
    std::string ClOrderID; ///< the client order id it was sent with
    std::string Symbol;
};

/// One order-reject event of the platform; RejectReason is the platform's reason code.
struct QVXRejectStruct {
    std::string ClOrderID;
    std::string Side;
    int32_t Quantity = 0;
    std::string Symbol;
    int32_t RejectReason = 0;
    /// The platform's own words for the refusal (FIX Text(58), the simulator's reason); may
    /// be empty. Shown after the reject line's code.
    std::string ReasonText;
};

/// Something about an order that the platform could not make sense of: a report it cannot
/// read, a fill beyond the order's quantity. The order's state is left as the broker last
/// stated it sensibly; the trader is told, never left with a silent drop.
struct QVXOrderWarning {
    int32_t OrderRecordId = 0; ///< 0 when the report names no order the platform knows
    std::string ClOrderID;
    std::string Symbol;
    std::string Text; ///< what was wrong, in words
};

} // namespace wicker
