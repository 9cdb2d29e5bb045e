#include "platform/fix/FixRejectReasons.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace wicker {
namespace {

using Meaning = std::pair<int32_t, std::string_view>;

constexpr std::array<Meaning, 19> OrdRejReasons{{
    {0, "Broker option"},
    {1, "Unknown symbol"},
    {2, "Exchange closed"},
    {3, "Order exceeds limit"},
    {4, "Too late to enter"},
    {5, "Unknown order"},
    {6, "Duplicate order"},
    {7, "Duplicate of a verbally communicated order"},
    {8, "Stale order"},
    {9, "Trade along required"},
    {10, "Invalid investor ID"},
    {11, "Unsupported order characteristic"},
    {12, "Surveillance option"},
    {13, "Incorrect quantity"},
    {14, "Incorrect allocated quantity"},
    {15, "Unknown account"},
    {16, "Price exceeds current price band"},
    {18, "Invalid price increment"},
    {99, "Other"},
}};

constexpr std::array<Meaning, 8> CxlRejReasons{{
    {0, "Too late to cancel"},
    {1, "Unknown order"},
    {2, "Broker option"},
    {3, "Order already in pending cancel or pending replace status"},
    {4, "Unable to process order mass cancel request"},
    {5, "OrigOrdModTime did not match last TransactTime of order"},
    {6, "Duplicate ClOrdID received"},
    {99, "Other"},
}};

constexpr std::array<Meaning, 20> SessionRejectReasons{{
    {0, "Invalid tag number"},
    {1, "Required tag missing"},
    {2, "Tag not defined for this message type"},
    {3, "Undefined tag"},
    {4, "Tag specified without a value"},
    {5, "Value is incorrect (out of range) for this tag"},
    {6, "Incorrect data format for value"},
    {7, "Decryption problem"},
    {8, "Signature problem"},
    {9, "CompID problem"},
    {10, "SendingTime accuracy problem"},
    {11, "Invalid MsgType"},
    {12, "XML validation error"},
    {13, "Tag appears more than once"},
    {14, "Tag specified out of required order"},
    {15, "Repeating group fields out of order"},
    {16, "Incorrect NumInGroup count for repeating group"},
    {17, "Non data value includes field delimiter"},
    {18, "Invalid or unsupported application version"},
    {99, "Other"},
}};

constexpr std::array<Meaning, 9> BusinessRejectReasons{{
    {0, "Other"},
    {1, "Unknown ID"},
    {2, "Unknown security"},
    {3, "Unsupported message type"},
    {4, "Application not available"},
    {5, "Conditionally required field missing"},
    {6, "Not authorized"},
    {7, "DeliverTo firm not available at this time"},
    {18, "Invalid price increment"},
}};

std::span<const Meaning> MeaningsOf(FixReasonTag tag) {
    switch (tag) {
    case FixReasonTag::OrdRejReason:
        return OrdRejReasons;
    case FixReasonTag::CxlRejReason:
        return CxlRejReasons;
    case FixReasonTag::SessionRejectReason:
        return SessionRejectReasons;
    case FixReasonTag::BusinessRejectReason:
        return BusinessRejectReasons;
    }
    return {};
}

} // namespace

std::string FixReasonText(FixReasonTag tag, int32_t code) {
    for (const auto& [c, meaning] : MeaningsOf(tag)) {
        if (c == code) {
            return std::string(meaning);
        }
    }
    return "Reason " + std::to_string(code);
}

std::string FixRejectText(const std::string& text, FixReasonTag tag, int32_t code) {
    return text.empty() ? FixReasonText(tag, code) : text;
}

} // namespace wicker
