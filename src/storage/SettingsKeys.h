#pragma once

#include <array>
#include <string_view>

// Files, sections and keys of the settings, for the screens that write them back.
namespace wicker::keys {

inline constexpr std::string_view kSettingsFile = "basket.ini";
inline constexpr std::string_view kPlatformFile = "$QvxLast.ini";

inline constexpr std::string_view kGeneral = "General";
inline constexpr std::string_view kVolThousands = "VolThousands";
inline constexpr std::string_view kVolThreshold = "VolThreshold";

inline constexpr std::string_view kInstall = "Install";
inline constexpr std::array<std::string_view, 5> kInstallVersions = {"4010", "4011", "4013", "4016",
                                                                     "5010"};

inline constexpr std::string_view kStockColumnWidths = "StockColumnWidths";
inline constexpr std::string_view kBasketColumnWidths = "BasketColumnWidths";
inline constexpr int kStockColumns = 20;
inline constexpr int kBasketColumns = 13;

inline constexpr std::string_view kColumnDisplay = "ColumnDisplay";
inline constexpr std::string_view kBasketItemsCols = "BasketItemsCols";
inline constexpr std::string_view kBasketInfoCols = "BasketInfoCols";

inline constexpr std::string_view kOptionalButtons = "OptionalButtons";
inline constexpr std::string_view kMoo = "MOO";
inline constexpr std::string_view kMoc = "MOC";

inline constexpr std::string_view kButtonsDisplay = "ButtonsDisplay";
inline constexpr std::string_view kButtons = "Buttons";

inline constexpr std::string_view kColumnPositions = "ColumnPositions";
inline constexpr std::string_view kItemsPositions = "ItemsPositions";
inline constexpr std::string_view kInfoPositions = "InfoPositions";

inline constexpr std::string_view kColor = "Color";
inline constexpr std::string_view kColorOrderButtons = "ColorOrderButtons";
inline constexpr std::string_view kBuyButtonColor = "BuyButtonColor";
inline constexpr std::string_view kSellButtonColor = "SellButtonColor";
inline constexpr std::string_view kShortButtonColor = "ShortButtonColor";
/// 0x8000000F: the system colour of a button's face.
inline constexpr int kButtonFaceColor = -2147483633;

inline constexpr std::string_view kRounding = "Rounding";
inline constexpr std::string_view kShareRounding = "ShareRounding";

inline constexpr std::string_view kConfirmation = "Confirmation";
inline constexpr std::string_view kBeforeSending = "BeforeSending";
inline constexpr std::string_view kBeforeCancel = "BeforeCancel";
inline constexpr std::string_view kBeforeChange = "BeforeChange";
/// Ask before the program ends while orders are open ("1" unless switched off).
inline constexpr std::string_view kBeforeExit = "BeforeExit";

inline constexpr std::string_view kSequence = "Sequence";
inline constexpr std::string_view kCurDate = "CurDate";
inline constexpr std::string_view kSeqNum = "SeqNum";
inline constexpr std::string_view kBasketNum = "BasketNum";

inline constexpr std::string_view kDisplaySettings = "DisplaySettings";
inline constexpr std::string_view kBasketButtons = "BasketButtons";

inline constexpr std::string_view kBasketInfo = "BasketInfo";
inline constexpr std::string_view kDisplay = "Display";
inline constexpr std::string_view kShowAll = "ShowAll";

inline constexpr std::string_view kReserve = "Reserve";
inline constexpr std::string_view kQuantity = "Quantity";
inline constexpr std::string_view kEnabled = "Enabled";

inline constexpr std::string_view kDecimals = "Decimals";
inline constexpr std::string_view kNumDecimals = "NumDecimals";

inline constexpr std::string_view kOrders = "Orders";
inline constexpr std::string_view kNoAnswerSeconds = "NoAnswerSeconds";

inline constexpr std::string_view kDivisors = "Divisors";
inline constexpr std::string_view kIndexTypes = "IndexTypes";
inline constexpr std::string_view kList = "List";

inline constexpr std::string_view kLimits = "Limits";
inline constexpr std::string_view kMaxOrderShares = "MaxOrderShares";
inline constexpr std::string_view kMaxOrderValue = "MaxOrderValue";
inline constexpr std::string_view kMaxSendValue = "MaxSendValue";
inline constexpr std::string_view kPriceBandPercent = "PriceBandPercent";
inline constexpr std::string_view kRepeatSendSeconds = "RepeatSendSeconds";
inline constexpr std::string_view kTicks = "Ticks";
inline constexpr std::string_view kTable = "Table";

} // namespace wicker::keys
