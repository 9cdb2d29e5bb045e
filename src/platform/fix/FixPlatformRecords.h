#pragma once

#include "platform/QVXOrderStruct.h"
#include "platform/QVXQuoteStruct.h"
#include "platform/fix/FixMarketData.h"
#include "platform/fix/FixOrderBook.h"

#include <string_view>

namespace wicker {

/// The QVXOrderStatus code of a FIX OrdStatus(39): replaced and pending-replace orders are
/// open, expired ones cancelled, stopped / suspended / calculated ones open.
int32_t OrderStatusOf(std::string_view ordStatus);

/// The order update the screen sees for the current state of a FIX order.
QVXOrderStruct OrderStructOf(const FixOrderState& order);
/// The same written into `update`, reusing its strings' room; it writes the same fields every
/// time and leaves the others alone.
void FillOrderStruct(QVXOrderStruct& update, const FixOrderState& order);
QVXRejectStruct RejectStructOf(const FixOrderReject& reject);
/// A quote record: a full refresh carries every field (absent ones with the no-value mark),
/// an increment only the fields it names.
QVXQuoteStruct QuoteStructOf(const FixQuoteFields& quote);

} // namespace wicker
