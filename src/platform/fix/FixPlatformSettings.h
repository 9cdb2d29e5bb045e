#pragma once

#include "common/Result.h"
#include "platform/fix/FixOrderMapping.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace wicker {

/// The port wicker-exchange listens on unless told otherwise.
inline constexpr int DefaultFixPort = 9878;

/// Where the quotes of the FIX platform come from. There is deliberately no simulated
/// source: real orders priced off invented bids and asks would trade at invented prices.
enum class FixQuoteSource {
    Fix,  ///< market data requests on the FIX session
    None, ///< no quotes (a session that carries orders only)
};

/// Settings of the FIX platform, from basket.ini section "Platform" (keys in the
/// comments). A QuickFIX settings file, when named, replaces the session keys.
struct FixPlatformSettings {
    std::string host = "127.0.0.1";         ///< FixHost
    int port = DefaultFixPort;              ///< FixPort
    std::string senderCompID = "WICKER";    ///< FixSenderCompID
    std::string targetCompID = "EXCH";      ///< FixTargetCompID
    FixVersion version = FixVersion::Fix42; ///< FixVersion: "4.2" or "4.4"
    int heartBtInt = 30;                    ///< FixHeartBtInt, seconds
    int reconnectInterval = 5;   ///< FixReconnectInterval: first wait before reconnecting, seconds
    std::string settingsFile;    ///< FixSettingsFile, relative to the data folder
    bool resetOnLogon = false;   ///< FixResetOnLogon "1"/"0"
    std::string handlInst = "1"; ///< FixHandlInst(21)
    int memoTag = 0;             ///< FixMemoTag: tag that carries the memo (58 = Text); 0 none
    FixQuoteSource quotes = FixQuoteSource::Fix; ///< FixQuotes: "FIX" or "NONE"
    /// FixSendWindow: orders on the wire without an answer. A thousand keeps a 5,000-line
    /// basket flowing at the speed of the link, and bounds what a peer that stops
    /// answering leaves waiting.
    int sendWindow = 1000;
    TifProfile tifProfile; ///< FixTifOS, FixTifNOW, FixTifEXT, ...: "59=3;9416=Y"
};

/// Reads the settings through `key` (a key of section "Platform" -> its value, nothing when
/// absent). An error names the first key whose value is unusable.
Result<FixPlatformSettings>
ReadFixPlatformSettings(const std::function<std::optional<std::string>(std::string_view)>& key);
/// The same from the settings file (basket.ini).
Result<FixPlatformSettings> ReadFixPlatformSettings(const std::filesystem::path& iniFile);

} // namespace wicker
