#pragma once

#include "common/Result.h"
#include "storage/Settings.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Number of flags in "ButtonsDisplay"/"Buttons".
inline constexpr size_t kButtonFlagCount = 21;

/// The order kinds of a side's group of six flags in "Buttons", in their order.
enum class OrderKind { Bid, Ask, Last, Mkt, Moo, Moc };
/// The sides of the three groups, in their order.
enum class OrderSide { Buy, Sell, Short };

/// Position in "Buttons" of the flag of one side's button of one kind.
size_t ButtonFlagIndex(OrderSide side, OrderKind kind);

/// The system's button-face colour (0x8000000F), the colour of an unset order button.
inline constexpr int32_t kButtonFaceColorSetting = -2147483633;

/// A colour setting of red, green and blue: 0x00BBGGRR.
int32_t ColorSettingOf(int red, int green, int blue);
/// True for 0x80000000 + n, a system colour.
bool IsSystemColorSetting(int32_t value);

/// A key of basket.ini section "Platform" that the dialog edits, with the text shown when
/// the file has none (the value the platform then uses).
struct PlatformKeyDefault {
    std::string key;
    std::string defaultText;
};
/// Every such key: "Mode", the FIX session keys, the simulator's knobs and the limits.
const std::vector<PlatformKeyDefault>& EditablePlatformKeys();

/// One pre-trade limit (section "Limits") or the tick table ("Ticks"/"Table") as the dialog
/// edits it, with its label.
struct LimitKey {
    std::string section;
    std::string key;
    std::string label;
};
/// Every such key, in the order the dialog shows them.
const std::vector<LimitKey>& LimitKeys();

/// What the general settings dialog edits, as its controls hold it. Typed values are text
/// until they are validated.
struct GeneralSettings {
    int32_t shareRounding = 1; ///< 1, 10 or 100
    bool beforeSending = false;
    bool beforeCancel = false;
    bool beforeChange = false;
    bool beforeExit = true;
    std::string reserveQuantity = "100";
    bool reserveEnabled = false;
    int32_t numDecimals = 2; ///< 2, 3 or 4
    bool basketButtons = true;
    bool basketInfoDisplay = true;
    bool basketInfoShowAll = false;
    bool moo = false; ///< market-on-open buttons offered
    bool moc = false; ///< market-on-close buttons offered
    /// 21 "1"/"0" flags: 18 for the quote buttons, then three kept as they were read.
    std::string buttons = "111100111100111100000";
    bool colorOrderButtons = true;
    int32_t buyButtonColor = kButtonFaceColorSetting;
    int32_t sellButtonColor = kButtonFaceColorSetting;
    int32_t shortButtonColor = kButtonFaceColorSetting;
    std::string defaultListed = "NYSE"; ///< "Import"/"DefaultListed"
    std::string defaultOTC = "ARCA";    ///< "Import"/"DefaultOTC"
    /// Key of section "Platform" -> its text; every key of EditablePlatformKeys.
    std::map<std::string, std::string> platform;
    /// The pre-trade limits and the tick table: key of LimitKeys -> its text.
    std::map<std::string, std::string> limits;

    bool operator==(const GeneralSettings&) const = default;
};

/// The values in force: the main screen's settings, the import defaults and the platform
/// keys from basket.ini in the folder (a missing platform key shows its default).
GeneralSettings LoadGeneralSettings(const Settings& screen, const std::filesystem::path& appFolder);

/// Whether one order button is shown.
bool ButtonShown(const GeneralSettings& values, OrderSide side, OrderKind kind);
void SetButtonShown(GeneralSettings& values, OrderSide side, OrderKind kind, bool shown);
/// Offers or withdraws the market-on-open (kind Moo) or market-on-close (kind Moc) buttons:
/// the flag and the three buttons of that kind follow.
void SetOptionalButtons(GeneralSettings& values, OrderKind kind, bool offered);
/// The three colours back to the system's button face.
void SetDefaultColors(GeneralSettings& values);

/// Trimmed texts; destinations, symbols, the mode and the quote source in upper case.
GeneralSettings Normalised(GeneralSettings values);

/// Names of the values a problem can point at, besides the platform keys.
namespace SettingsField {
inline constexpr std::string_view ShareRounding = "ShareRounding";
inline constexpr std::string_view NumDecimals = "NumDecimals";
inline constexpr std::string_view ReserveQuantity = "ReserveQuantity";
inline constexpr std::string_view DefaultListed = "DefaultListed";
inline constexpr std::string_view DefaultOTC = "DefaultOTC";
} // namespace SettingsField

/// The first value that cannot be saved: which one (a SettingsField name or a platform
/// key) and a message for the trader.
struct SettingsProblem {
    std::string field;
    std::string message;
};

/// Checks normalised values. The platform keys of the platform not chosen are checked only
/// when they were changed, so an old bad value there never blocks other changes.
/// `destinations` are the enabled ones; when given, the import defaults must be among them.
std::optional<SettingsProblem> ValidateGeneralSettings(const GeneralSettings& values,
                                                       const GeneralSettings& loaded,
                                                       const std::vector<std::string>& destinations,
                                                       const std::filesystem::path& appFolder);

/// Writes the values to basket.ini in one replacement of the file: every key the screen
/// reads, the import defaults, and the platform keys that differ from `loaded` (a key the
/// trader left alone stays as it was, absent included).
Result<void> SaveGeneralSettings(const std::filesystem::path& appFolder,
                                 const GeneralSettings& values, const GeneralSettings& loaded);

/// Puts validated values into the main screen's settings.
void ApplyGeneralSettings(const GeneralSettings& values, Settings& screen);

/// True when a platform key changed: that takes effect at the next start.
bool PlatformChanged(const GeneralSettings& values, const GeneralSettings& loaded);

} // namespace wicker
