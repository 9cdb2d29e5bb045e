#pragma once

// Conversions between Wicker's plain FIX records and QuickFIX messages (engine only).

#include "platform/fix/engine/FixWire.h"

#include <string>

#include <quickfix/DataDictionaryProvider.h>
#include <quickfix/Message.h>

namespace wicker {

/// A QuickFIX message of `beginString` with the type, body fields and groups of `message`.
FIX::Message ToQuickFix(const FixMessage& message, const std::string& beginString);
/// Rewrites `out`, a message built by ToQuickFix before, as `message` when both have the
/// same type, the same body tags once each and no groups (one order of a basket after
/// another): the values go into the fields in place, nothing is built or freed. False when
/// they differ; `out` must then be built again.
bool RefillQuickFix(FIX::Message& out, const FixMessage& message);
/// The type, body fields, groups, MsgSeqNum and PossDupFlag of a received message.
FixMessage FromQuickFix(const FIX::Message& message);

/// Reads the type and body of a received QuickFIX message where it lies.
class QuickFixReader final : public FixFieldReader {
public:
    explicit QuickFixReader(const FIX::Message& message);
    const std::string& msgType() const override { return m_msgType; }
    const std::string* find(int tag) const override;
    void findAll(const int* tags, std::size_t count, const std::string** values) const override;
    FixMessage copy() const override { return FromQuickFix(m_message); }

private:
    const FIX::Message& m_message;
    std::string m_msgType;
};

/// The repeating groups Wicker uses (market data request, snapshot and incremental
/// refresh), declared in code because the Debian package ships no data dictionaries.
FIX::DataDictionaryProvider MarketDataDictionaries(const std::string& beginString);

} // namespace wicker
