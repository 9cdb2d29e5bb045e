#include "admin/GeneralSettings.h"

#include "admin/SettingsWriter.h"
#include "baskets/ImportDefaults.h"
#include "common/Text.h"
#include "platform/PlatformKeys.h"
#include "platform/fix/FixPlatformSettings.h"
#include "platform/sim/SimSettings.h"
#include "storage/SettingsKeys.h"
#include "trading/orders/TickTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>

namespace wicker {
namespace {

namespace fs = std::filesystem;

// Shortest text that reads back as the same value: 4, 0.5, 3000.
template <class T> std::string NumberString(T value) {
    char text[64];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

// The whole text as a number, nothing for anything else (blanks, signs on unsigned, ...).
template <class T> std::optional<T> Parse(const std::string& text) {
    T value{};
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end) {
        return std::nullopt;
    }
    return value;
}

const char* Flag(bool on) {
    return on ? "1" : "0";
}

std::string Shown(std::string_view key, const GeneralSettings& v) {
    const auto it = v.platform.find(std::string(key));
    return it == v.platform.end() ? std::string() : it->second;
}

SettingsProblem Problem(std::string_view field, std::string message) {
    return SettingsProblem{std::string(field), std::move(message)};
}

std::optional<SettingsProblem> WholeNumber(const GeneralSettings& v, std::string_view key,
                                           std::string_view what, int64_t low, int64_t high) {
    const std::optional<int64_t> n = Parse<int64_t>(Shown(key, v));
    if (!n || *n < low || *n > high) {
        return Problem(key, "The " + std::string(what) + " must be a whole number from " +
                                std::to_string(low) + " to " + std::to_string(high) + ".");
    }
    return std::nullopt;
}

std::optional<SettingsProblem> NotEmpty(const GeneralSettings& v, std::string_view key,
                                        std::string_view what) {
    if (Shown(key, v).empty()) {
        return Problem(key, "Please enter the " + std::string(what) + ".");
    }
    return std::nullopt;
}

std::optional<SettingsProblem> OneOf(const GeneralSettings& v, std::string_view key,
                                     std::string_view what,
                                     std::initializer_list<std::string_view> allowed) {
    const std::string text = Shown(key, v);
    if (std::find(allowed.begin(), allowed.end(), text) != allowed.end()) {
        return std::nullopt;
    }
    std::string list;
    for (const std::string_view a : allowed) {
        list += (list.empty() ? "" : ", ") + std::string(a);
    }
    return Problem(key, "The " + std::string(what) + " must be one of " + list + ".");
}

using KeyCheck = std::function<std::optional<SettingsProblem>(const GeneralSettings&)>;

struct KeyRule {
    const char* key;
    KeyCheck check;
};

const std::vector<KeyRule>& FixRules() {
    static const std::vector<KeyRule> rules = {
        {"FixHost", [](const auto& v) { return NotEmpty(v, "FixHost", "FIX host"); }},
        {"FixPort", [](const auto& v) { return WholeNumber(v, "FixPort", "FIX port", 1, 65535); }},
        {"FixSenderCompID",
         [](const auto& v) { return NotEmpty(v, "FixSenderCompID", "FIX SenderCompID"); }},
        {"FixTargetCompID",
         [](const auto& v) { return NotEmpty(v, "FixTargetCompID", "FIX TargetCompID"); }},
        {"FixVersion",
         [](const auto& v) {
             return OneOf(v, "FixVersion", "FIX version", {"4.2", "4.4", "FIX.4.2", "FIX.4.4"});
         }},
        {"FixHeartBtInt",
         [](const auto& v) {
             return WholeNumber(v, "FixHeartBtInt", "FIX heartbeat interval (seconds)", 1, 3600);
         }},
        {"FixReconnectInterval",
         [](const auto& v) {
             return WholeNumber(v, "FixReconnectInterval", "FIX first reconnect wait (seconds)", 1,
                                3600);
         }},
        {"FixResetOnLogon",
         [](const auto& v) {
             return OneOf(v, "FixResetOnLogon", "reset-on-logon flag", {"1", "0"});
         }},
        {"FixHandlInst",
         [](const auto& v) {
             return OneOf(v, "FixHandlInst", "FIX HandlInst", {"1", "2", "3"});
         }},
        {"FixMemoTag",
         [](const auto& v) { return WholeNumber(v, "FixMemoTag", "FIX memo tag", 0, 999999); }},
        {"FixQuotes",
         [](const auto& v) {
             return OneOf(v, "FixQuotes", "quote source", {"FIX", "NONE"});
         }},
        {"FixSendWindow",
         [](const auto& v) {
             return WholeNumber(v, "FixSendWindow", "FIX send window (orders)", 1, 100000);
         }},
    };
    return rules;
}

std::optional<SettingsProblem> SettingsFileExists(const GeneralSettings& v,
                                                  const fs::path& appFolder) {
    const std::string name = Shown("FixSettingsFile", v);
    if (name.empty()) {
        return std::nullopt;
    }
    std::error_code ec;
    if (!fs::is_regular_file(appFolder / name, ec)) {
        return Problem("FixSettingsFile", "The QuickFIX settings file \"" + name +
                                              "\" was not found in the data folder " +
                                              appFolder.string() + ".");
    }
    return std::nullopt;
}

const std::vector<KeyRule>& SimRules() {
    static const std::vector<KeyRule> rules = {
        {"SimSeed",
         [](const auto& v) -> std::optional<SettingsProblem> {
             if (!Parse<uint64_t>(Shown("SimSeed", v))) {
                 return Problem("SimSeed",
                                "The simulator's seed must be a whole number of 0 or more.");
             }
             return std::nullopt;
         }},
        {"SimUpdatesPerSecond",
         [](const auto& v) -> std::optional<SettingsProblem> {
             const std::optional<double> n = Parse<double>(Shown("SimUpdatesPerSecond", v));
             if (!n || !(*n >= 0.01 && *n <= 1000)) {
                 return Problem("SimUpdatesPerSecond", "The simulator's quote updates per second "
                                                       "must be a number from 0.01 to 1000.");
             }
             return std::nullopt;
         }},
        {"SimFillDelayMs",
         [](const auto& v) {
             return WholeNumber(v, "SimFillDelayMs",
                                "simulator's market-on-open/close fill delay (ms)", 0, 3'600'000);
         }},
        {"SimClipSize",
         [](const auto& v) {
             return WholeNumber(v, "SimClipSize", "simulator's clip size (shares, 0 = none)", 0,
                                1'000'000'000);
         }},
    };
    return rules;
}

std::optional<SettingsProblem> CheckRules(const std::vector<KeyRule>& rules,
                                          const GeneralSettings& v, const GeneralSettings& loaded,
                                          bool inUse) {
    for (const KeyRule& rule : rules) {
        if (inUse || Shown(rule.key, v) != Shown(rule.key, loaded)) {
            if (auto problem = rule.check(v)) {
                return problem;
            }
        }
    }
    return std::nullopt;
}

std::optional<SettingsProblem> CheckLimits(const GeneralSettings& v) {
    const std::string amount = Shown("MaxOrderNotional", v);
    if (!amount.empty()) {
        const std::optional<double> n = Parse<double>(amount);
        if (!n || !std::isfinite(*n) || *n < 0) {
            return Problem("MaxOrderNotional", "The largest order value must be a dollar amount "
                                               "of 0 or more (0 = no limit).");
        }
    }
    return std::nullopt;
}

std::optional<SettingsProblem> CheckDestination(std::string_view field, std::string_view what,
                                                const std::string& dest,
                                                const std::vector<std::string>& destinations) {
    if (dest.empty()) {
        return Problem(field, "Please choose the " + std::string(what) + ".");
    }
    if (dest.find_first_of(", \t") != std::string::npos || dest.size() > 50) {
        return Problem(field,
                       "The " + std::string(what) + " \"" + dest + "\" is not a destination name.");
    }
    if (!destinations.empty() &&
        std::find(destinations.begin(), destinations.end(), dest) == destinations.end()) {
        return Problem(field, "The " + std::string(what) + " \"" + dest +
                                  "\" is not one of the enabled destinations.");
    }
    return std::nullopt;
}

std::string UpperList(const std::string& list) {
    std::string out;
    for (const std::string& item : Split(list, ",")) {
        if (std::string t = UCase(Trim(item)); !t.empty()) {
            out += (out.empty() ? "" : ",") + t;
        }
    }
    return out;
}

bool AnyOfKind(const std::string& buttons, OrderKind kind) {
    for (OrderSide side : {OrderSide::Buy, OrderSide::Sell, OrderSide::Short}) {
        const size_t i = ButtonFlagIndex(side, kind);
        if (i < buttons.size() && buttons[i] != '0') {
            return true;
        }
    }
    return false;
}

// The 21 flags as the screen shows them: a quote button is shown unless its flag is "0"
// (a missing one too); the three trailing flags keep what they were, "0" when missing.
std::string WholeButtons(const std::string& text) {
    std::string out(kButtonFlagCount, '0');
    for (size_t i = 0; i < kButtonFlagCount; ++i) {
        const bool present = i < text.size();
        if (i < 18) {
            out[i] = present && text[i] == '0' ? '0' : '1';
        } else if (present && (text[i] == '0' || text[i] == '1')) {
            out[i] = text[i];
        }
    }
    return out;
}

} // namespace

size_t ButtonFlagIndex(OrderSide side, OrderKind kind) {
    return static_cast<size_t>(side) * 6 + static_cast<size_t>(kind);
}

int32_t ColorSettingOf(int red, int green, int blue) {
    const auto c = [](int x) { return static_cast<uint32_t>(std::clamp(x, 0, 255)); };
    return static_cast<int32_t>(c(red) | c(green) << 8 | c(blue) << 16);
}

bool IsSystemColorSetting(int32_t value) {
    return (static_cast<uint32_t>(value) & 0x80000000u) != 0;
}

const std::vector<PlatformKeyDefault>& EditablePlatformKeys() {
    static const std::vector<PlatformKeyDefault> keys = [] {
        const FixPlatformSettings fix;
        const SimSettings sim;
        return std::vector<PlatformKeyDefault>{
            {"Mode", "SIM"},
            {"FixHost", fix.host},
            {"FixPort", NumberString(fix.port)},
            {"FixSenderCompID", fix.senderCompID},
            {"FixTargetCompID", fix.targetCompID},
            {"FixVersion", fix.version == FixVersion::Fix44 ? "4.4" : "4.2"},
            {"FixHeartBtInt", NumberString(fix.heartBtInt)},
            {"FixReconnectInterval", NumberString(fix.reconnectInterval)},
            {"FixResetOnLogon", Flag(fix.resetOnLogon)},
            {"FixHandlInst", fix.handlInst},
            {"FixMemoTag", NumberString(fix.memoTag)},
            {"FixQuotes", fix.quotes == FixQuoteSource::None ? "NONE" : "FIX"},
            {"FixSendWindow", NumberString(fix.sendWindow)},
            {"FixSettingsFile", fix.settingsFile},
            {"SimSeed", NumberString(sim.seed)},
            {"SimUpdatesPerSecond", NumberString(sim.updatesPerSecond)},
            {"SimFillDelayMs", NumberString(sim.fillDelayMs)},
            {"SimClipSize", NumberString(sim.clipSize)},
            {"SimHalted", ""},
            {"EnabledDestinations", ""},
            {"MaxOrderNotional", "0"},
        };
    }();
    return keys;
}

const std::vector<LimitKey>& LimitKeys() {
    static const std::vector<LimitKey> keys = {
        {"Limits", "MaxOrderShares", "Most shares per order (0 = no limit):"},
        {"Limits", "MaxOrderValue", "Most dollars per order (0 = no limit):"},
        {"Limits", "MaxSendValue", "Most dollars per basket send (0 = no limit):"},
        {"Limits", "PriceBandPercent",
         "Largest % a limit may be through the last or far side "
         "(0 = no limit):"},
        {"Limits", "RepeatSendSeconds",
         "Seconds before the same basket and side may go again "
         "(0 = no limit):"},
        {"Ticks", "Table", "Price ticks (lowest price = tick; ...):"},
    };
    return keys;
}

namespace {

// Amounts as a trader writes them: 1000000, not 1e+06.
std::string PlainNumber(double value) {
    char text[64];
    const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
    return std::string(text, result.ptr);
}

std::map<std::string, std::string> LimitTexts(const Settings& s) {
    return {{"MaxOrderShares", NumberString(s.maxOrderShares)},
            {"MaxOrderValue", PlainNumber(s.maxOrderValue)},
            {"MaxSendValue", PlainNumber(s.maxSendValue)},
            {"PriceBandPercent", PlainNumber(s.priceBandPercent)},
            {"RepeatSendSeconds", NumberString(s.repeatSendSeconds)},
            {"Table", s.tickTable}};
}

std::optional<SettingsProblem> CheckSendLimits(const GeneralSettings& v) {
    for (const LimitKey& k : LimitKeys()) {
        const auto it = v.limits.find(k.key);
        const std::string text = it == v.limits.end() ? std::string() : it->second;
        if (k.section == "Ticks") {
            if (Result<TickTable> t = ParseTickTable(text); !t) {
                return Problem(k.key, t.error().message);
            }
            continue;
        }
        const bool whole = k.key == "MaxOrderShares" || k.key == "RepeatSendSeconds";
        const std::optional<double> n = Parse<double>(text);
        if (!n || *n < 0 || !std::isfinite(*n) ||
            (whole && (*n != std::floor(*n) || *n > 2147483647))) {
            return Problem(k.key, k.label.substr(0, k.label.find(" (")) + " must be " +
                                      (whole ? "a whole number" : "a number") +
                                      " of 0 or more (0 = no limit).");
        }
    }
    return std::nullopt;
}

} // namespace

GeneralSettings LoadGeneralSettings(const Settings& screen, const fs::path& appFolder) {
    GeneralSettings v;
    v.shareRounding = screen.shareRounding;
    v.beforeSending = screen.beforeSending;
    v.beforeCancel = screen.beforeCancel;
    v.beforeChange = screen.beforeChange;
    v.beforeExit = screen.beforeExit;
    v.reserveQuantity = std::to_string(screen.reserveQuantity);
    v.reserveEnabled = screen.reserveEnabled;
    v.numDecimals = screen.numDecimals;
    v.basketButtons = screen.basketButtons;
    v.basketInfoDisplay = screen.basketInfoDisplay;
    v.basketInfoShowAll = screen.basketInfoShowAll;
    v.buttons = WholeButtons(screen.buttons);
    // Offered when the flag says so or when the screen shows such a button anyway.
    v.moo = screen.moo == 1 || AnyOfKind(v.buttons, OrderKind::Moo);
    v.moc = screen.moc == 1 || AnyOfKind(v.buttons, OrderKind::Moc);
    v.colorOrderButtons = screen.colorOrderButtons;
    v.buyButtonColor = screen.buyButtonColor;
    v.sellButtonColor = screen.sellButtonColor;
    v.shortButtonColor = screen.shortButtonColor;
    v.limits = LimitTexts(screen);

    const fs::path ini = appFolder / keys::kSettingsFile;
    const ImportDefaults import = ReadImportDefaults(ini);
    v.defaultListed = import.listed;
    v.defaultOTC = import.otc;
    const PlatformKeyReader read = ReadPlatformKeys(ini);
    for (const PlatformKeyDefault& k : EditablePlatformKeys()) {
        v.platform[k.key] = read(k.key).value_or(k.defaultText);
    }
    return Normalised(std::move(v));
}

bool ButtonShown(const GeneralSettings& values, OrderSide side, OrderKind kind) {
    const size_t i = ButtonFlagIndex(side, kind);
    return i < values.buttons.size() && values.buttons[i] != '0';
}

void SetButtonShown(GeneralSettings& values, OrderSide side, OrderKind kind, bool shown) {
    values.buttons = WholeButtons(values.buttons);
    values.buttons[ButtonFlagIndex(side, kind)] = shown ? '1' : '0';
}

void SetOptionalButtons(GeneralSettings& values, OrderKind kind, bool offered) {
    if (kind == OrderKind::Moo) {
        values.moo = offered;
    } else if (kind == OrderKind::Moc) {
        values.moc = offered;
    } else {
        return;
    }
    for (OrderSide side : {OrderSide::Buy, OrderSide::Sell, OrderSide::Short}) {
        SetButtonShown(values, side, kind, offered);
    }
}

void SetDefaultColors(GeneralSettings& values) {
    values.buyButtonColor = kButtonFaceColorSetting;
    values.sellButtonColor = kButtonFaceColorSetting;
    values.shortButtonColor = kButtonFaceColorSetting;
}

GeneralSettings Normalised(GeneralSettings v) {
    v.reserveQuantity = Trim(v.reserveQuantity);
    v.defaultListed = UCase(Trim(v.defaultListed));
    v.defaultOTC = UCase(Trim(v.defaultOTC));
    v.buttons = WholeButtons(v.buttons);
    for (auto& [key, text] : v.limits) {
        text = Trim(text);
    }
    for (auto& [key, text] : v.platform) {
        text = Trim(text);
        if (key == "Mode" || key == "FixQuotes" || key == "FixVersion") {
            text = UCase(text);
        } else if (key == "EnabledDestinations" || key == "SimHalted") {
            text = UpperList(text);
        }
    }
    return v;
}

std::optional<SettingsProblem> ValidateGeneralSettings(const GeneralSettings& v,
                                                       const GeneralSettings& loaded,
                                                       const std::vector<std::string>& destinations,
                                                       const fs::path& appFolder) {
    if (v.shareRounding != 1 && v.shareRounding != 10 && v.shareRounding != 100) {
        return Problem(SettingsField::ShareRounding,
                       "Please choose the share rounding: 1, 10 or 100 shares.");
    }
    if (const std::optional<int32_t> q = Parse<int32_t>(v.reserveQuantity); !q || *q < 1) {
        return Problem(SettingsField::ReserveQuantity,
                       "The reserve quantity must be a whole number of shares greater than 0.");
    }
    if (v.numDecimals < 2 || v.numDecimals > 4) {
        return Problem(SettingsField::NumDecimals,
                       "Please choose the decimals shown for prices: 2, 3 or 4.");
    }
    if (auto p = CheckSendLimits(v)) {
        return p;
    }
    if (auto p = CheckDestination(SettingsField::DefaultListed,
                                  "default destination of listed "
                                  "stocks",
                                  v.defaultListed, destinations)) {
        return p;
    }
    if (auto p = CheckDestination(SettingsField::DefaultOTC, "default destination of OTC stocks",
                                  v.defaultOTC, destinations)) {
        return p;
    }
    const std::string mode = Shown("Mode", v);
    if (mode != "SIM" && mode != "FIX") {
        return Problem("Mode", "The platform must be SIM or FIX.");
    }
    const bool fix = mode == "FIX";
    if (auto p = CheckRules(FixRules(), v, loaded, fix)) {
        return p;
    }
    if (fix || Shown("FixSettingsFile", v) != Shown("FixSettingsFile", loaded)) {
        if (auto p = SettingsFileExists(v, appFolder)) {
            return p;
        }
    }
    if (auto p = CheckRules(SimRules(), v, loaded, !fix)) {
        return p;
    }
    return CheckLimits(v);
}

Result<void> SaveGeneralSettings(const fs::path& appFolder, const GeneralSettings& v,
                                 const GeneralSettings& loaded) {
    using namespace keys;
    const auto s = [](std::string_view x) { return std::string(x); };
    std::vector<SettingsValue> values = {
        {s(kOptionalButtons), s(kMoo), Flag(v.moo)},
        {s(kOptionalButtons), s(kMoc), Flag(v.moc)},
        {s(kButtonsDisplay), s(kButtons), WholeButtons(v.buttons)},
        {s(kColor), s(kColorOrderButtons), Flag(v.colorOrderButtons)},
        {s(kColor), s(kBuyButtonColor), std::to_string(v.buyButtonColor)},
        {s(kColor), s(kSellButtonColor), std::to_string(v.sellButtonColor)},
        {s(kColor), s(kShortButtonColor), std::to_string(v.shortButtonColor)},
        {s(kRounding), s(kShareRounding), std::to_string(v.shareRounding)},
        {s(kConfirmation), s(kBeforeSending), Flag(v.beforeSending)},
        {s(kConfirmation), s(kBeforeCancel), Flag(v.beforeCancel)},
        {s(kConfirmation), s(kBeforeChange), Flag(v.beforeChange)},
        {s(kConfirmation), s(kBeforeExit), Flag(v.beforeExit)},
        {s(kDisplaySettings), s(kBasketButtons), Flag(v.basketButtons)},
        {s(kBasketInfo), s(kDisplay), Flag(v.basketInfoDisplay)},
        {s(kBasketInfo), s(kShowAll), Flag(v.basketInfoShowAll)},
        {s(kReserve), s(kQuantity), v.reserveQuantity},
        {s(kReserve), s(kEnabled), Flag(v.reserveEnabled)},
        {s(kDecimals), s(kNumDecimals), std::to_string(v.numDecimals)},
        {"Import", "DefaultListed", v.defaultListed},
        {"Import", "DefaultOTC", v.defaultOTC},
    };
    for (const LimitKey& k : LimitKeys()) {
        const auto it = v.limits.find(k.key);
        values.push_back({k.section, k.key, it == v.limits.end() ? std::string() : it->second});
    }
    for (const PlatformKeyDefault& k : EditablePlatformKeys()) {
        const std::string now = Shown(k.key, v);
        if (now != Shown(k.key, loaded)) {
            values.push_back({"Platform", k.key, now});
        }
    }
    return WriteSettingsValues(appFolder, values);
}

void ApplyGeneralSettings(const GeneralSettings& v, Settings& screen) {
    screen.shareRounding = static_cast<int16_t>(v.shareRounding);
    screen.beforeSending = v.beforeSending;
    screen.beforeCancel = v.beforeCancel;
    screen.beforeChange = v.beforeChange;
    screen.beforeExit = v.beforeExit;
    screen.reserveQuantity = Parse<int32_t>(v.reserveQuantity).value_or(screen.reserveQuantity);
    screen.reserveEnabled = v.reserveEnabled;
    screen.numDecimals = static_cast<int16_t>(v.numDecimals);
    screen.basketButtons = v.basketButtons;
    screen.basketInfoDisplay = v.basketInfoDisplay;
    screen.basketInfoShowAll = v.basketInfoShowAll;
    screen.moo = v.moo ? 1 : 0;
    screen.moc = v.moc ? 1 : 0;
    screen.buttons = WholeButtons(v.buttons);
    screen.colorOrderButtons = v.colorOrderButtons;
    screen.buyButtonColor = v.buyButtonColor;
    screen.sellButtonColor = v.sellButtonColor;
    screen.shortButtonColor = v.shortButtonColor;
    const auto number = [&](const char* key, double fallback) {
        const auto it = v.limits.find(key);
        return it == v.limits.end() ? fallback : Parse<double>(it->second).value_or(fallback);
    };
    screen.maxOrderShares = static_cast<int32_t>(number("MaxOrderShares", screen.maxOrderShares));
    screen.maxOrderValue = number("MaxOrderValue", screen.maxOrderValue);
    screen.maxSendValue = number("MaxSendValue", screen.maxSendValue);
    screen.priceBandPercent = number("PriceBandPercent", screen.priceBandPercent);
    screen.repeatSendSeconds =
        static_cast<int32_t>(number("RepeatSendSeconds", screen.repeatSendSeconds));
    if (const auto it = v.limits.find("Table"); it != v.limits.end()) {
        screen.tickTable = it->second;
    }
}

bool PlatformChanged(const GeneralSettings& values, const GeneralSettings& loaded) {
    return values.platform != loaded.platform;
}

} // namespace wicker
