#include "FixRawMessage.h"

#include "platform/fix/engine/FixConvert.h"

#include <exception>

#include <quickfix/Message.h>

namespace wicker {
namespace fuzz {

bool ParseRawFix(const std::string& bytes, FixMessage& out) {
    static const FIX::DataDictionaryProvider provider = MarketDataDictionaries("FIX.4.2");
    const FIX::DataDictionary& session =
        provider.getSessionDataDictionary(FIX::BeginString("FIX.4.2"));
    const FIX::DataDictionary& application = provider.getApplicationDataDictionary(
        FIX::Message::toApplVerID(FIX::BeginString("FIX.4.2")));
    try {
        FIX::Message message(bytes, session, application, false);
        out = FromQuickFix(message);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace fuzz
} // namespace wicker
