#pragma once

// Conversions between Wicker's plain FIX records and QuickFIX messages (engine only).

#include "platform/fix/engine/FixWire.h"

#include <string>

#include <quickfix/DataDictionaryProvider.h>
#include <quickfix/Message.h>

namespace wicker {

/// A QuickFIX message of `beginString` with the type, body fields and groups of `message`.
FIX::Message ToQuickFix(const FixMessage& message, const std::string& beginString);
/// The type, body fields, groups, MsgSeqNum and PossDupFlag of a received message.
FixMessage FromQuickFix(const FIX::Message& message);

/// The repeating groups Wicker uses (market data request, snapshot and incremental
/// refresh), declared in code because the Debian package ships no data dictionaries.
FIX::DataDictionaryProvider MarketDataDictionaries(const std::string& beginString);

} // namespace wicker
