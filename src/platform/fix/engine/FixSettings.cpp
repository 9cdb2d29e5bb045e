#include "platform/fix/engine/FixSettings.h"

#include <quickfix/SessionID.h>

namespace wicker {
namespace {

// Settings both ends share: a daily session (sequence numbers reset at midnight UTC, as
// brokers do), no dictionary validation (the package ships none), millisecond stamps.
void SetCommon(FIX::Dictionary& d, const FixSessionConfig& c) {
    d.setString("StartTime", "00:00:00");
    d.setString("EndTime", "00:00:00");
    d.setString("UseDataDictionary", "N");
    d.setString("ValidateUserDefinedFields", "N");
    d.setString("ResetOnLogon", c.resetOnLogon ? "Y" : "N");
    d.setString("SocketNodelay", "Y");
    d.setInt("LogonTimeout", c.logonTimeout);
    if (!c.storePath.empty()) {
        d.setString("FileStorePath", c.storePath);
    }
    if (!c.logPath.empty()) {
        d.setString("FileLogPath", c.logPath);
    }
}

} // namespace

FIX::SessionSettings InitiatorSettings(const FixSessionConfig& c) {
    if (!c.settingsFile.empty()) {
        return FIX::SessionSettings(c.settingsFile);
    }
    FIX::Dictionary d;
    d.setString("ConnectionType", "initiator");
    d.setString("SocketConnectHost", c.host);
    d.setInt("SocketConnectPort", c.port);
    d.setInt("HeartBtInt", c.heartBtInt);
    SetCommon(d, c);
    FIX::SessionSettings settings;
    // The initiator spaces the attempts itself (a growing wait from c.reconnectInterval);
    // QuickFIX only looks every second whether the session may connect again. It reads
    // the interval from the defaults only.
    FIX::Dictionary defaults;
    defaults.setInt("ReconnectInterval", 1);
    settings.set(defaults);
    settings.set(FIX::SessionID(c.beginString, c.senderCompID, c.targetCompID), d);
    return settings;
}

FIX::Dictionary AcceptorDictionary(const FixSessionConfig& c) {
    FIX::Dictionary d;
    d.setString("ConnectionType", "acceptor");
    d.setString("BeginString", c.beginString);
    d.setString("SenderCompID", c.senderCompID);
    d.setString("TargetCompID", c.targetCompID);
    SetCommon(d, c);
    return d;
}

} // namespace wicker
