#include "platform/fix/FixPlatformSettings.h"

#include "common/Text.h"
#include "platform/PlatformKeys.h"
#include "platform/fix/FixNumbers.h"

#include <array>

namespace wicker {
namespace {

Error Bad(std::string_view key, std::string_view what) {
    return Error{"Setting \"" + std::string(key) + "\" in section \"Platform\" " +
                 std::string(what)};
}

// A whole number in [low, high] when the key is present and not empty.
std::optional<Error> ReadInt(const std::function<std::optional<std::string>(std::string_view)>& key,
                             std::string_view name, int low, int high, int& into) {
    const std::optional<std::string> text = key(name);
    if (!text || Trim(*text).empty()) {
        return std::nullopt;
    }
    const std::optional<int32_t> n = ParseFixQuantity(Trim(*text));
    if (!n || *n < low || *n > high) {
        return Bad(name, "must be a whole number from " + std::to_string(low) + " to " +
                             std::to_string(high) + ".");
    }
    into = *n;
    return std::nullopt;
}

void ReadText(const std::function<std::optional<std::string>(std::string_view)>& key,
              std::string_view name, std::string& into) {
    if (const std::optional<std::string> text = key(name); text && !Trim(*text).empty()) {
        into = Trim(*text);
    }
}

} // namespace

Result<FixPlatformSettings>
ReadFixPlatformSettings(const std::function<std::optional<std::string>(std::string_view)>& key) {
    FixPlatformSettings s;
    ReadText(key, "FixHost", s.host);
    ReadText(key, "FixSenderCompID", s.senderCompID);
    ReadText(key, "FixTargetCompID", s.targetCompID);
    ReadText(key, "FixSettingsFile", s.settingsFile);
    ReadText(key, "FixHandlInst", s.handlInst);
    if (s.handlInst != "1" && s.handlInst != "2" && s.handlInst != "3") {
        return Bad("FixHandlInst", "must be 1, 2 or 3.");
    }
    for (const auto& [name, low, high, into] :
         std::array<std::tuple<std::string_view, int, int, int*>, 5>{{
             {"FixPort", 1, 65535, &s.port},
             {"FixHeartBtInt", 1, 3600, &s.heartBtInt},
             {"FixReconnectInterval", 1, 3600, &s.reconnectInterval},
             {"FixMemoTag", 0, 999999, &s.memoTag},
             {"FixSendWindow", 1, 100000, &s.sendWindow},
         }}) {
        if (std::optional<Error> e = ReadInt(key, name, low, high, *into)) {
            return *e;
        }
    }
    if (const std::optional<std::string> v = key("FixVersion"); v && !Trim(*v).empty()) {
        const std::optional<FixVersion> version = ParseFixVersion(*v);
        if (!version) {
            return Bad("FixVersion", "must be 4.2 or 4.4.");
        }
        s.version = *version;
    }
    if (const std::optional<std::string> v = key("FixResetOnLogon"); v && !Trim(*v).empty()) {
        const std::string t = Trim(*v);
        if (t != "0" && t != "1") {
            return Bad("FixResetOnLogon", "must be 1 or 0.");
        }
        s.resetOnLogon = t == "1";
    }
    if (const std::optional<std::string> v = key("FixQuotes"); v && !Trim(*v).empty()) {
        const std::string t = UCase(Trim(*v));
        if (t == "FIX") {
            s.quotes = FixQuoteSource::Fix;
        } else if (t == "NONE") {
            s.quotes = FixQuoteSource::None;
        } else {
            return Bad("FixQuotes", "must be FIX or NONE.");
        }
    }
    for (const std::string_view name :
         {"DAY", "GTC", "OPG", "IOC", "FOK", "GTX", "OS", "NOW", "EXT", "AEX", "CHXP"}) {
        const std::string keyName = "FixTif" + std::string(name);
        const std::optional<std::string> v = key(keyName);
        if (!v || Trim(*v).empty()) {
            continue;
        }
        std::optional<std::vector<FixField>> tags = ParseTifTags(*v);
        if (!tags) {
            return Bad(keyName, "must list tag=value pairs separated by ';' (as 59=3;9416=Y).");
        }
        s.tifProfile.letters[std::string(TifLetterOf(name))] = std::move(*tags);
    }
    return s;
}

Result<FixPlatformSettings> ReadFixPlatformSettings(const std::filesystem::path& iniFile) {
    return ReadFixPlatformSettings(ReadPlatformKeys(iniFile));
}

} // namespace wicker
