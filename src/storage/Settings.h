#pragma once

#include "common/Clock.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// Every key of basket.ini (and the two of $QvxLast.ini) with its default, as loaded at
/// start-up. Flags are kept as the program uses them ("1"/"0" text or 16-bit numbers).
struct Settings {
    std::string volThousands;               ///< $QvxLast.ini General/VolThousands ("" when missing)
    std::string volThreshold;               ///< $QvxLast.ini General/VolThreshold
    std::map<std::string, int16_t> install; ///< "4010" ... "5010" -> flag after set-up

    /// Widths in pixels; nullopt keeps the screen's current width.
    std::vector<std::optional<int32_t>> stockColumnWidths = std::vector<std::optional<int32_t>>(20);
    std::vector<std::optional<int32_t>> basketColumnWidths =
        std::vector<std::optional<int32_t>>(13);
    std::string basketItemsCols = "11111111111111111111";
    std::string basketInfoCols = "1111111111111";
    int16_t moo = 0;
    int16_t moc = 0;
    std::string buttons = "111100111100111100000";
    std::vector<std::string> itemsPositions = {"1",  "2",  "3",  "4",  "5",  "6",  "7",
                                               "8",  "9",  "10", "11", "12", "13", "14",
                                               "15", "16", "17", "18", "19", "20", ""};
    std::vector<std::string> infoPositions = {"1", "2", "3",  "4",  "5",  "6", "7",
                                              "8", "9", "10", "11", "12", "13"};
    std::string colorOrderButtons = "1";
    int32_t buyButtonColor = -2147483633;
    int32_t sellButtonColor = -2147483633;
    int32_t shortButtonColor = -2147483633;
    int16_t shareRounding = 1;
    std::string beforeSending = "0";
    std::string beforeCancel = "0";
    std::string beforeChange = "0";
    std::string curDate = "00000000";
    int16_t seqNum = 1;
    int16_t basketNum = 1;
    std::string basketButtons = "1";
    std::string basketInfoDisplay = "1";
    std::string basketInfoShowAll = "0";
    int32_t reserveQuantity = 100;
    std::string reserveEnabled = "0";
    int16_t numDecimals = 2;
    std::map<std::string, double> divisors;        ///< by basket name
    std::map<std::string, std::string> indexTypes; ///< by basket name
};

/// Called for every "Install" version whose flag reads 0 (the one-time set-up).
using InstallHook = std::function<void(const std::string& version)>;

/// Reads both files in the order of the vocabulary. A value that does not convert leaves
/// the setting at its default. On the first start of a new day, writes "CurDate" = today
/// and "BasketNum" = "1" ("SeqNum" is never reset by the date).
Settings LoadSettings(const std::filesystem::path& appFolder, const Clock& clock,
                      const InstallHook& installHook = {});

/// The default "Buttons" for the two optional-button flags.
std::string DefaultButtons(int16_t moo, int16_t moc);

/// "name_value," for each basket in list order, and the reverse. A basket name may hold
/// "_": the value is what follows the last one.
std::string JoinBasketList(const std::vector<std::string>& basketOrder,
                           const std::function<std::string(const std::string&)>& valueOf);
std::map<std::string, std::string> SplitBasketList(const std::string& text);

/// Unload: writes column positions, button display, column display, divisors and index
/// types, in that order, for the baskets in `basketOrder`.
void SaveScreenSettings(const std::filesystem::path& appFolder, const Settings& s,
                        const std::vector<std::string>& basketOrder);

} // namespace wicker
