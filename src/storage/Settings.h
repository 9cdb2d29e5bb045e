#pragma once

#include "common/Clock.h"
#include "common/Result.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

/// Orders basket names without ASCII case, as the database compares them and as the
/// original's collections looked their keys up: "Tech" and "TECH" are one basket.
struct BasketNameLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};
template <class T> using ByBasketName = std::map<std::string, T, BasketNameLess>;

inline constexpr std::string_view kDefaultItemsPositions =
    "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,";
inline constexpr std::string_view kDefaultInfoPositions = "1,2,3,4,5,6,7,8,9,10,11,12,13";
/// The decimals a price may be shown with; "NumDecimals" outside them reads as 2.
inline constexpr int16_t kMinNumDecimals = 0;
inline constexpr int16_t kMaxNumDecimals = 8;

/// Every key of basket.ini (and the two of $QvxLast.ini), as loaded at start-up. Each
/// member starts at the value the program uses when the key is missing or unusable.
struct Settings {
    std::string volThousands; ///< $QvxLast.ini General/VolThousands ("" when missing)
    std::string volThreshold; ///< $QvxLast.ini General/VolThreshold ("" when missing)
    /// "4010" ... "5010" -> flag as read, 1 after the one-time set-up ran for it.
    std::map<std::string, int16_t> install;

    /// Column widths in pixels; nothing = keep the list's current width.
    std::vector<std::optional<int32_t>> stockColumnWidths = std::vector<std::optional<int32_t>>(20);
    std::vector<std::optional<int32_t>> basketColumnWidths =
        std::vector<std::optional<int32_t>>(13);
    std::string basketItemsCols = "11111111111111111111"; ///< per stock-list column: shown
    std::string basketInfoCols = "1111111111111";         ///< per basket-list column: shown
    int16_t moo = 0;                                      ///< market-on-open buttons offered
    int16_t moc = 0;                                      ///< market-on-close buttons offered
    std::string buttons = "111100111100111100000";        ///< per order button: shown
    std::vector<std::string> itemsPositions = SplitPositions(kDefaultItemsPositions);
    std::vector<std::string> infoPositions = SplitPositions(kDefaultInfoPositions);
    bool colorOrderButtons = true;
    int32_t buyButtonColor = -2147483633; ///< the system's button-face colour
    int32_t sellButtonColor = -2147483633;
    int32_t shortButtonColor = -2147483633;
    int16_t shareRounding = 1;
    bool beforeSending = false;
    bool beforeCancel = false;
    bool beforeChange = false;
    bool beforeExit = true;           ///< ask before exiting with open orders
    std::string curDate = "00000000"; ///< "yyyymmdd" of the last basket-number reset
    int16_t seqNum = 1;               ///< next trade sequence number
    int16_t basketNum = 1;            ///< next basket sequence number
    bool basketButtons = true;
    bool basketInfoDisplay = true;
    bool basketInfoShowAll = false;
    int32_t reserveQuantity = 100;
    bool reserveEnabled = false;
    int16_t numDecimals = 2; ///< always kMinNumDecimals ... kMaxNumDecimals
    /// Seconds an order may wait for the broker's first report before it shows "No answer"
    /// (1 to 3600).
    int16_t noAnswerSeconds = 10;
    // "Limits": the desk's pre-trade limits, 0 = off. Only the two that no normal send
    // meets are on by default: a limit price 10 % through the market, and the same basket
    // and side sent again within 5 seconds (a double click).
    int32_t maxOrderShares = 0;
    double maxOrderValue = 0;
    double maxSendValue = 0;
    double priceBandPercent = 10;
    int32_t repeatSendSeconds = 5;
    std::string tickTable = "0=0.0001;1=0.01"; ///< "Ticks"/"Table": price bands of the venue
    ByBasketName<double> divisors;
    ByBasketName<std::string> indexTypes;

    /// What the user should be told after loading: an unreadable settings file, a reset
    /// that could not be saved, a one-time set-up that failed. Empty when all went well.
    std::vector<std::string> problems;

    static std::vector<std::string> SplitPositions(std::string_view text);
};

/// The one-time set-up of a program version, run for every "Install" flag that reads 0.
/// Whether it writes its flag back to "1" is its own business.
using InstallHook = std::function<void(const std::string& version)>;

/// Reads $QvxLast.ini and basket.ini from the folder, key by key in the order the
/// program always read them. A value that does not convert leaves its setting as it was.
/// On the first start of a new day (by the clock's local date) writes "CurDate" = today
/// and "BasketNum" = "1"; "SeqNum" is never reset by the date.
Settings LoadSettings(const std::filesystem::path& appFolder, const Clock& clock,
                      const InstallHook& installHook = {});

/// The default of "Buttons" for the two optional-button flags; any flag other than 0 or 1
/// gives the plain default without market-on-open and market-on-close buttons.
std::string DefaultButtons(int16_t moo, int16_t moc);

/// The "name_value," list of the "Divisors" and "IndexTypes" sections.
struct BasketListText {
    std::string text;
    /// Baskets whose value could not go in: a name or value that the list cannot hold (a
    /// "," anywhere, a "_" in the value, an empty name, a line break). A basket without a
    /// value is simply not listed.
    std::vector<std::string> leftOut;
};
/// One "name_value," entry per basket, in list order.
BasketListText
JoinBasketList(const std::vector<std::string>& basketOrder,
               const std::function<std::optional<std::string>(const std::string&)>& valueOf);
/// The entries of a list: each split at its last "_" (so a basket name may hold "_");
/// entries without a name or without "_" are skipped, and a name given twice keeps its
/// first value.
ByBasketName<std::string> SplitBasketList(std::string_view text);

// Writers. Each writes its keys to basket.ini in the folder at once; an error says which
// keys could not be written.

/// "Sequence"/"BasketNum": the next basket sequence number.
Result<void> SaveBasketSeq(const std::filesystem::path& appFolder, int16_t basketNum);
/// "Sequence"/"SeqNum": the next trade sequence number.
Result<void> SaveSeqNum(const std::filesystem::path& appFolder, int16_t seqNum);
/// "ColumnPositions": each list joined with ",".
Result<void> SaveColumnPositions(const std::filesystem::path& appFolder,
                                 const std::vector<std::string>& itemsPositions,
                                 const std::vector<std::string>& infoPositions);
Result<void> SaveButtonsDisplay(const std::filesystem::path& appFolder, std::string_view buttons);
Result<void> SaveColumnDisplay(const std::filesystem::path& appFolder,
                               std::string_view basketItemsCols, std::string_view basketInfoCols);
/// "Divisors"/"List" for the baskets in list order; a basket without a divisor is left
/// out. The rest is written even when some baskets could not be (the error names them).
Result<void> SaveDivisors(const std::filesystem::path& appFolder,
                          const std::vector<std::string>& basketOrder,
                          const ByBasketName<double>& divisors);
/// "IndexTypes"/"List", as SaveDivisors.
Result<void> SaveIndexTypes(const std::filesystem::path& appFolder,
                            const std::vector<std::string>& basketOrder,
                            const ByBasketName<std::string>& indexTypes);
/// What the main screen writes when it closes, in this order: column positions, button
/// display, column display, divisors, index types. Every part is attempted.
Result<void> SaveScreenSettings(const std::filesystem::path& appFolder, const Settings& settings,
                                const std::vector<std::string>& basketOrder);

} // namespace wicker
