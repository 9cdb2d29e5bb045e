#pragma once

#include "exchange/NewOrderDecoding.h"
#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/engine/FixWire.h"

#include <cstdint>
#include <string>

namespace wicker {

/// One order as the exchange keeps it.
struct ExchangeOrder {
    ExchangeOrderRequest request;
    std::string orderID;
    std::string clOrdID; ///< of the latest request on it (a cancel's included)
    int32_t cum = 0;
    int32_t leaves = 0;
    double avgPx = 0;
    std::string ordStatus = "0";
    bool done() const { return leaves == 0; }
};

/// What happened to an order, as ExecType(150).
/// Status answers an OrderStatusRequest (ExecType I in 4.4, ExecTransType 3 in 4.2).
enum class ExecKind { New, Fill, Canceled, Replaced, Rejected, Expired, Status };

/// An ExecutionReport of the order's current state. A fill carries LastShares/LastPx; a
/// reject its OrdRejReason and text. FIX 4.2 adds ExecTransType and reports fills as
/// partial fill / fill; FIX 4.4 reports them as trades (F). A replace is ExecType 5; its
/// OrigClOrdID is the request's id while the order's clOrdID already holds the new one.
FixMessage ExecutionReportOf(const ExchangeOrder& order, ExecKind kind, const std::string& execID,
                             FixVersion version, const std::string& transactTime,
                             int32_t lastShares = 0, double lastPx = 0, int ordRejReason = 0,
                             const std::string& text = "");

/// The answer to an OrderStatusRequest for an order the exchange does not know: a
/// rejected status report with OrdRejReason 5 (unknown order).
FixMessage UnknownOrderStatusOf(const std::string& clOrdID, const std::string& side,
                                const std::string& symbol, const std::string& execID,
                                FixVersion version, const std::string& transactTime);

/// CxlRejResponseTo(434): what was refused.
inline constexpr int CxlRejToCancel = 1;
inline constexpr int CxlRejToReplace = 2;
/// CxlRejReason(102) values used here (the same in FIX 4.2 and 4.4).
inline constexpr int CxlRejTooLate = 0;
inline constexpr int CxlRejUnknownOrder = 1;
inline constexpr int CxlRejBrokerOption = 2;

/// OrderCancelReject(9) of a cancel (or, with CxlRejToReplace, of a replace request).
FixMessage CancelRejectOf(const std::string& clOrdID, const std::string& origClOrdID,
                          const std::string& orderID, const std::string& ordStatus,
                          int cxlRejReason, const std::string& text,
                          int responseTo = CxlRejToCancel);

} // namespace wicker
