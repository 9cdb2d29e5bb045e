#include "storage/Settings.h"

#include "common/Conversions.h"
#include "common/Formats.h"
#include "common/Text.h"
#include "storage/IniDocument.h"
#include "storage/IniFileIo.h"
#include "storage/SettingsKeys.h"
#include "storage/clsIniFile.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace wicker {
namespace {

namespace fs = std::filesystem;

fs::path SettingsFile(const fs::path& appFolder) {
    return appFolder / keys::kSettingsFile;
}

// Reads keys as the loader always did: a missing key reads its default, and a value
// that does not convert leaves the target as it was.
class Reader {
public:
    explicit Reader(clsIniFile& ini) : m_ini(ini) {}

    std::string text(std::string_view section, std::string_view key, std::string_view def) {
        m_ini.setSection(std::string(section));
        m_ini.setKey(std::string(key));
        m_ini.setDefault(std::string(def));
        return m_ini.Value();
    }
    void int16(std::string_view section, std::string_view key, std::string_view def,
               int16_t& target) {
        try {
            target = CInt(std::string_view(text(section, key, def)));
        } catch (const std::exception&) {
        }
    }
    // An amount of 0 or more; anything else keeps the target and is named in `problems`.
    void amount(std::string_view section, std::string_view key, double& target,
                std::vector<std::string>& problems) {
        const std::string t = Trim(text(section, key, ""));
        if (t.empty()) {
            return;
        }
        double value = -1;
        try {
            value = IsNumeric(t) ? CDbl(t) : -1;
        } catch (const std::exception&) {
        }
        if (!(value >= 0) || !std::isfinite(value)) {
            problems.push_back("The setting " + std::string(key) + " in section " +
                               std::string(section) + " of basket.ini must be a number of 0 or " +
                               "more (0 = off), not \"" + t + "\". It stays at " +
                               NumberText(target) + ".");
            return;
        }
        target = value;
    }
    void int32(std::string_view section, std::string_view key, std::string_view def,
               int32_t& target) {
        try {
            target = CLng(std::string_view(text(section, key, def)));
        } catch (const std::exception&) {
        }
    }
    // A flag converts as a Boolean did: any number (non-zero is on), or True / False.
    void flag(std::string_view section, std::string_view key, std::string_view def, bool& target) {
        const std::string t = UCase(Trim(text(section, key, def)));
        if (t == "TRUE" || t == "FALSE") {
            target = t == "TRUE";
        } else if (IsNumeric(t)) {
            target = CDbl(t) != 0;
        }
    }
    // A width from a key, or nothing to keep the current one.
    std::optional<int32_t> width(std::string_view section, int column) {
        const std::string t = text(section, "column" + std::to_string(column), "");
        int32_t w = -1;
        try {
            w = CLng(std::string_view(t));
        } catch (const std::exception&) {
        }
        return w >= 0 ? std::optional<int32_t>(w) : std::nullopt;
    }

private:
    clsIniFile& m_ini;
};

Result<void> Write(const fs::path& appFolder, std::string_view section,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> keys) {
    clsIniFile ini;
    ini.setPath(SettingsFile(appFolder));
    ini.setSection(std::string(section));
    std::string failed;
    std::string why;
    for (const auto& [key, value] : keys) {
        ini.setKey(std::string(key));
        ini.setValue(value);
        if (!ini.Success()) {
            failed += (failed.empty() ? "" : ", ") + std::string(key);
            why = ini.LastError();
        }
    }
    if (failed.empty()) {
        return {};
    }
    return Error{"The setting " + std::string(section) + " / " + failed +
                 " could not be saved to " + SettingsFile(appFolder).string() + "." +
                 (why.empty() ? "" : " " + why)};
}

std::string Join(const std::vector<std::string>& parts) {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        out += (i ? "," : "") + parts[i];
    }
    return out;
}

bool ListCanHold(std::string_view name, std::string_view value) {
    const auto bad = [](std::string_view s) {
        return s.find_first_of(",\r\n") != std::string_view::npos ||
               s.find('\0') != std::string_view::npos;
    };
    return !Trim(name).empty() && !bad(name) && !bad(value) &&
           value.find('_') == std::string_view::npos;
}

// Writes a basket list; an error names the baskets it could not hold.
Result<void> SaveBasketList(const fs::path& appFolder, std::string_view section, const char* what,
                            const BasketListText& list) {
    const Result<void> written = Write(appFolder, section, {{keys::kList, list.text}});
    if (!written) {
        return written;
    }
    if (list.leftOut.empty()) {
        return {};
    }
    return Error{std::string("The ") + what +
                 " of these baskets could not be saved: " + Join(list.leftOut) + "."};
}

// Reads a whole basket list: a long list must not lose its last baskets to the 254
// characters a single read returns.
std::string ReadBasketList(const IniFileContent& file, std::string_view section) {
    return file.document.Get(section, keys::kList).value_or("");
}

void RunInstallHooks(Reader& r, Settings& s, const InstallHook& installHook) {
    for (const std::string_view version : keys::kInstallVersions) {
        int16_t flag = 0;
        r.int16(keys::kInstall, version, "0", flag);
        if (flag == 0) {
            try {
                if (installHook) {
                    installHook(std::string(version));
                }
            } catch (const std::exception& e) {
                s.problems.push_back("The set-up for version " + std::string(version) +
                                     " failed: " + e.what());
            }
            flag = 1;
        }
        s.install[std::string(version)] = flag;
    }
}

void ReadLayout(Reader& r, Settings& s) {
    for (int i = 0; i < keys::kStockColumns; ++i) {
        if (const auto w = r.width(keys::kStockColumnWidths, i + 1)) {
            s.stockColumnWidths[static_cast<size_t>(i)] = w;
        }
    }
    for (int i = 0; i < keys::kBasketColumns; ++i) {
        if (const auto w = r.width(keys::kBasketColumnWidths, i + 1)) {
            s.basketColumnWidths[static_cast<size_t>(i)] = w;
        }
    }
    s.basketItemsCols = r.text(keys::kColumnDisplay, keys::kBasketItemsCols, s.basketItemsCols);
    s.basketInfoCols = r.text(keys::kColumnDisplay, keys::kBasketInfoCols, s.basketInfoCols);
    r.int16(keys::kOptionalButtons, keys::kMoo, "0", s.moo);
    r.int16(keys::kOptionalButtons, keys::kMoc, "0", s.moc);
    s.buttons = r.text(keys::kButtonsDisplay, keys::kButtons, DefaultButtons(s.moo, s.moc));
    s.itemsPositions = Settings::SplitPositions(
        r.text(keys::kColumnPositions, keys::kItemsPositions, kDefaultItemsPositions));
    s.infoPositions = Settings::SplitPositions(
        r.text(keys::kColumnPositions, keys::kInfoPositions, kDefaultInfoPositions));
    r.flag(keys::kColor, keys::kColorOrderButtons, "1", s.colorOrderButtons);
    const std::string face = std::to_string(keys::kButtonFaceColor);
    r.int32(keys::kColor, keys::kBuyButtonColor, face, s.buyButtonColor);
    r.int32(keys::kColor, keys::kSellButtonColor, face, s.sellButtonColor);
    r.int32(keys::kColor, keys::kShortButtonColor, face, s.shortButtonColor);
    r.int16(keys::kRounding, keys::kShareRounding, "1", s.shareRounding);
    r.flag(keys::kConfirmation, keys::kBeforeSending, "0", s.beforeSending);
    r.flag(keys::kConfirmation, keys::kBeforeCancel, "0", s.beforeCancel);
    r.flag(keys::kConfirmation, keys::kBeforeChange, "0", s.beforeChange);
    r.flag(keys::kConfirmation, keys::kBeforeExit, "1", s.beforeExit);
}

// The basket sequence restarts on the first start of a day; the trade sequence never
// does, so a trade number is not reused the same day after a restart.
void ReadSequence(Reader& r, const fs::path& appFolder, const Clock& clock, Settings& s) {
    const std::string today = FormatYyyymmdd(clock.localNow());
    s.curDate = r.text(keys::kSequence, keys::kCurDate, "00000000");
    if (s.curDate != today) {
        // The date first: should the number then fail, the next start today keeps
        // counting on instead of starting at 1 again.
        Result<void> saved = Write(appFolder, keys::kSequence, {{keys::kCurDate, today}});
        if (saved) {
            saved = SaveBasketSeq(appFolder, 1);
        }
        if (!saved) {
            s.problems.push_back("The basket sequence could not be restarted for the new day. " +
                                 saved.error().message);
        }
        s.curDate = today;
    }
    r.int16(keys::kSequence, keys::kSeqNum, "1", s.seqNum);
    r.int16(keys::kSequence, keys::kBasketNum, "1", s.basketNum);
}

void ReadLimits(Reader& r, Settings& s) {
    double shares = s.maxOrderShares;
    r.amount(keys::kLimits, keys::kMaxOrderShares, shares, s.problems);
    s.maxOrderShares = static_cast<int32_t>(std::min(shares, 2147483647.0));
    r.amount(keys::kLimits, keys::kMaxOrderValue, s.maxOrderValue, s.problems);
    r.amount(keys::kLimits, keys::kMaxSendValue, s.maxSendValue, s.problems);
    r.amount(keys::kLimits, keys::kPriceBandPercent, s.priceBandPercent, s.problems);
    double seconds = s.repeatSendSeconds;
    r.amount(keys::kLimits, keys::kRepeatSendSeconds, seconds, s.problems);
    s.repeatSendSeconds = static_cast<int32_t>(std::min(seconds, 86400.0));
    s.tickTable = r.text(keys::kTicks, keys::kTable, s.tickTable);
}

void ReadDisplay(Reader& r, const fs::path& appFolder, Settings& s) {
    r.flag(keys::kDisplaySettings, keys::kBasketButtons, "1", s.basketButtons);
    r.flag(keys::kBasketInfo, keys::kDisplay, "1", s.basketInfoDisplay);
    r.flag(keys::kBasketInfo, keys::kShowAll, "0", s.basketInfoShowAll);
    r.int32(keys::kReserve, keys::kQuantity, "100", s.reserveQuantity);
    r.flag(keys::kReserve, keys::kEnabled, "0", s.reserveEnabled);
    r.int16(keys::kDecimals, keys::kNumDecimals, "2", s.numDecimals);
    // Read once here for every screen: a price never shows more than 8 decimals, and a
    // hand-edited value past that must not reach any formatting.
    if (s.numDecimals < kMinNumDecimals || s.numDecimals > kMaxNumDecimals) {
        s.problems.push_back("The number of decimals " + std::to_string(s.numDecimals) + " in " +
                             SettingsFile(appFolder).string() + " is not between " +
                             std::to_string(kMinNumDecimals) + " and " +
                             std::to_string(kMaxNumDecimals) + "; prices show 2 decimals.");
        s.numDecimals = 2;
    }
    r.int16(keys::kOrders, keys::kNoAnswerSeconds, "10", s.noAnswerSeconds);
    if (s.noAnswerSeconds < 1 || s.noAnswerSeconds > 3600) {
        s.problems.push_back("[Orders] NoAnswerSeconds must be 1 to 3600; 10 is used.");
        s.noAnswerSeconds = 10;
    }

    const IniFileContent file = ReadIniFile(SettingsFile(appFolder));
    for (const auto& [name, value] : SplitBasketList(ReadBasketList(file, keys::kDivisors))) {
        if (IsNumeric(value)) { // an entry whose divisor is no number is dropped
            s.divisors.emplace(name, CDbl(value));
        }
    }
    s.indexTypes = SplitBasketList(ReadBasketList(file, keys::kIndexTypes));
}

} // namespace

bool BasketNameLess::operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        const auto lower = [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        };
        return static_cast<unsigned char>(lower(x)) < static_cast<unsigned char>(lower(y));
    });
}

std::vector<std::string> Settings::SplitPositions(std::string_view text) {
    return Split(text, ",");
}

std::string DefaultButtons(int16_t moo, int16_t moc) {
    if (moo == 1 && moc == 1) {
        return "111111111111111111000";
    }
    if (moo == 1 && moc == 0) {
        return "111110111110111110000";
    }
    if (moo == 0 && moc == 1) {
        return "111101111101111101000";
    }
    return "111100111100111100000";
}

BasketListText
JoinBasketList(const std::vector<std::string>& basketOrder,
               const std::function<std::optional<std::string>(const std::string&)>& valueOf) {
    BasketListText out;
    for (const auto& name : basketOrder) {
        const std::optional<std::string> value = valueOf(name);
        if (!value) {
            continue; // most baskets never get a divisor or an index type
        }
        if (ListCanHold(name, *value)) {
            out.text += name + "_" + *value + ",";
        } else {
            out.leftOut.push_back(name);
        }
    }
    return out;
}

ByBasketName<std::string> SplitBasketList(std::string_view text) {
    ByBasketName<std::string> out;
    for (const auto& entry : Split(text, ",")) {
        const size_t mark = entry.rfind('_');
        if (mark != std::string::npos && mark > 0) {
            out.emplace(entry.substr(0, mark), entry.substr(mark + 1));
        }
    }
    return out;
}

Settings LoadSettings(const fs::path& appFolder, const Clock& clock,
                      const InstallHook& installHook) {
    Settings s;
    clsIniFile ini;
    Reader r(ini);
    ini.setPath(appFolder / keys::kPlatformFile);
    s.volThousands = r.text(keys::kGeneral, keys::kVolThousands, "");
    s.volThreshold = r.text(keys::kGeneral, keys::kVolThreshold, "");

    ini.setPath(SettingsFile(appFolder));
    // Left by a write that a kill or power cut interrupted; the file itself is whole.
    RemoveLeftoverTempFiles(ini.Path());
    if (const IniFileContent file = ReadIniFile(ini.Path());
        file.state == IniFileContent::State::Unreadable) {
        s.problems.push_back(file.error + " The default settings are used.");
    }
    RunInstallHooks(r, s, installHook);
    ReadLayout(r, s);
    ReadSequence(r, appFolder, clock, s);
    ReadDisplay(r, appFolder, s);
    ReadLimits(r, s);
    return s;
}

Result<void> SaveBasketSeq(const fs::path& appFolder, int16_t basketNum) {
    return Write(appFolder, keys::kSequence, {{keys::kBasketNum, std::to_string(basketNum)}});
}

Result<void> SaveSeqNum(const fs::path& appFolder, int16_t seqNum) {
    return Write(appFolder, keys::kSequence, {{keys::kSeqNum, std::to_string(seqNum)}});
}

Result<void> SaveColumnPositions(const fs::path& appFolder,
                                 const std::vector<std::string>& itemsPositions,
                                 const std::vector<std::string>& infoPositions) {
    return Write(appFolder, keys::kColumnPositions,
                 {{keys::kItemsPositions, Join(itemsPositions)},
                  {keys::kInfoPositions, Join(infoPositions)}});
}

Result<void> SaveButtonsDisplay(const fs::path& appFolder, std::string_view buttons) {
    return Write(appFolder, keys::kButtonsDisplay, {{keys::kButtons, buttons}});
}

Result<void> SaveColumnDisplay(const fs::path& appFolder, std::string_view basketItemsCols,
                               std::string_view basketInfoCols) {
    return Write(
        appFolder, keys::kColumnDisplay,
        {{keys::kBasketItemsCols, basketItemsCols}, {keys::kBasketInfoCols, basketInfoCols}});
}

Result<void> SaveDivisors(const fs::path& appFolder, const std::vector<std::string>& basketOrder,
                          const ByBasketName<double>& divisors) {
    const BasketListText list =
        JoinBasketList(basketOrder, [&](const std::string& name) -> std::optional<std::string> {
            const auto it = divisors.find(name);
            if (it == divisors.end() || !std::isfinite(it->second)) {
                return std::nullopt;
            }
            return NumberText(it->second);
        });
    return SaveBasketList(appFolder, keys::kDivisors, "divisors", list);
}

Result<void> SaveIndexTypes(const fs::path& appFolder, const std::vector<std::string>& basketOrder,
                            const ByBasketName<std::string>& indexTypes) {
    const BasketListText list =
        JoinBasketList(basketOrder, [&](const std::string& name) -> std::optional<std::string> {
            const auto it = indexTypes.find(name);
            return it == indexTypes.end() ? std::nullopt : std::optional<std::string>(it->second);
        });
    return SaveBasketList(appFolder, keys::kIndexTypes, "index types", list);
}

Result<void> SaveScreenSettings(const fs::path& appFolder, const Settings& settings,
                                const std::vector<std::string>& basketOrder) {
    const Result<void> results[] = {
        SaveColumnPositions(appFolder, settings.itemsPositions, settings.infoPositions),
        SaveButtonsDisplay(appFolder, settings.buttons),
        SaveColumnDisplay(appFolder, settings.basketItemsCols, settings.basketInfoCols),
        SaveDivisors(appFolder, basketOrder, settings.divisors),
        SaveIndexTypes(appFolder, basketOrder, settings.indexTypes),
    };
    std::string errors;
    for (const auto& r : results) {
        if (!r) {
            errors += (errors.empty() ? "" : "\n") + r.error().message;
        }
    }
    if (errors.empty()) {
        return {};
    }
    return Error{errors};
}

} // namespace wicker
