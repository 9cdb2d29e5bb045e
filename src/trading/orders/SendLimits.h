#pragma once

#include "trading/orders/SendPlan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// The desk's own pre-trade limits, each 0 when off. They stop a send until the trader
/// overrides them; the platform's own checks (-7, -8) come after and are not affected.
struct SendLimits {
    int32_t maxOrderShares = 0;  ///< shares per order
    double maxOrderValue = 0;    ///< dollars per order
    double maxSendValue = 0;     ///< dollars per basket send
    double priceBandPercent = 0; ///< a limit this many % through the last or the far side
    int32_t repeatSeconds = 0;   ///< the same basket and side sent again within this time
    bool operator==(const SendLimits&) const = default;
};

/// Names of the limits, as the dialog and the send's record show them.
namespace LimitName {
inline constexpr const char* OrderShares = "Max shares per order";
inline constexpr const char* OrderValue = "Max value per order";
inline constexpr const char* SendValue = "Max value per send";
inline constexpr const char* PriceBand = "Price band";
inline constexpr const char* RepeatSend = "Repeat send";
} // namespace LimitName

/// One limit one line (or the whole send) breaks.
struct LimitBreach {
    std::string line;  ///< the line's report text, or "Whole send"
    std::string limit; ///< a LimitName
    std::string text;  ///< what breaks it: "40,000 shares, limit 10,000"
    bool operator==(const LimitBreach&) const = default;
};

/// Every breach of the planned send, lines in list order, then the whole-send ones.
/// `secondsSinceSameSend` is the time since this basket and side were last sent, if ever.
std::vector<LimitBreach> CheckSendLimits(const SendLimits& limits, int index,
                                         const SendLines& lines, const SendPlan& plan,
                                         std::optional<double> secondsSinceSameSend);

/// The distinct limit names of the breaches, in the order they first occur.
std::vector<std::string> BrokenLimits(const std::vector<LimitBreach>& breaches);

/// Asks the trader whether to send despite the breaches. Sending must take a deliberate
/// act (the screen has the basket's name typed); false leaves everything unsent.
class LimitOverride {
public:
    virtual ~LimitOverride() = default;
    virtual bool ConfirmOverride(const std::string& basketName, const std::string& sideWord,
                                 const std::vector<LimitBreach>& breaches) = 0;
};

} // namespace wicker
