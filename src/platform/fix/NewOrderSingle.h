#pragma once

#include "common/Clock.h"
#include "platform/OrderTicket.h"
#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/engine/FixWire.h"

#include <cstdint>
#include <optional>
#include <string>

namespace wicker {

/// How this broker wants its orders.
struct FixOrderProfile {
    FixVersion version = FixVersion::Fix42;
    std::string handlInst = "1";
    int memoTag = 0; ///< 0: the memo stays local
    TifProfile tif;
};

/// A NewOrderSingle, or the submit result that refuses the order before it leaves:
/// -1 no account, -2 side, -3 quantity, -4 symbol, -5 price type, -6 TIF.
struct NewOrderSingleOrRefusal {
    int refusal = 0;
    FixMessage message;
};

NewOrderSingleOrRefusal BuildNewOrderSingle(const OrderTicket& ticket,
                                            const FixOrderProfile& profile, const Clock& clock);
/// OrderCancelRequest(F) for an order; nothing when its side or id is not known.
std::optional<FixMessage> BuildCancelRequest(const std::string& cancelClOrdID,
                                             const std::string& origClOrdID,
                                             const std::string& orderID, const std::string& side,
                                             const std::string& symbol, int32_t quantity,
                                             const Clock& clock);
/// OrderStatusRequest(H) for an order known by its ClOrdID (and OrderID when the broker
/// gave one); nothing when its side or id is not known.
std::optional<FixMessage> BuildOrderStatusRequest(const std::string& clOrdID,
                                                  const std::string& orderID,
                                                  const std::string& side,
                                                  const std::string& symbol);
/// OrderCancelReplaceRequest(G): `ticket` is the order as it is to stand, its clOrderID the
/// replacing id; the replaced order is named by OrigClOrdID(41) (its latest accepted id) and
/// OrderID(37) when the broker gave one. Every order field goes out again, mapped as for a
/// NewOrderSingle, and is refused with the same codes (-1 to -6; a limit also needs a
/// positive price); nothing goes out without both ids (kReplaceOrderNotOpen).
NewOrderSingleOrRefusal BuildReplaceRequest(const OrderTicket& ticket,
                                            const std::string& origClOrdID,
                                            const std::string& orderID,
                                            const FixOrderProfile& profile, const Clock& clock);
/// FIX UTCTimestamp "YYYYMMDD-HH:MM:SS.sss".
std::string FixTimestamp(Clock::TimePoint t);

} // namespace wicker
