#pragma once

#include <cstdint>
#include <string>

namespace wicker {

/// The tag a FIX reject states its reason code in.
enum class FixReasonTag {
    OrdRejReason = 103,
    CxlRejReason = 102,
    SessionRejectReason = 373,
    BusinessRejectReason = 380,
};

/// The meaning of a reason code in words ("Unknown symbol"), or "Reason <code>" for a code
/// the standard does not name.
std::string FixReasonText(FixReasonTag tag, int32_t code);

/// What a reject line shows: the counterparty's Text(58) when it gave one, else the code's
/// meaning.
std::string FixRejectText(const std::string& text, FixReasonTag tag, int32_t code);

} // namespace wicker
