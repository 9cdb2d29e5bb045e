#pragma once

#include "platform/fix/engine/FixWire.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

enum class FixVersion { Fix42, Fix44 };

/// "4.2", "FIX.4.2", "4.4", "FIX.4.4" (case-insensitive); nothing for anything else.
std::optional<FixVersion> ParseFixVersion(std::string_view text);
/// "FIX.4.2" or "FIX.4.4".
std::string BeginStringOf(FixVersion version);

/// Side(54) of an order's side code: "BUY" and "B" 1, "S" 2, "T" 5 (sell short).
std::optional<std::string> FixSideOf(std::string_view sideCode);
/// Side code of a reported Side(54): 1 "B", 2 "S", 5 and 6 "T", 3 (buy minus) "M";
/// nothing for anything else.
std::optional<std::string> SideCodeOf(std::string_view fixSide);

/// Which tags carry each time-in-force letter, per broker. The six standard letters have
/// a built-in mapping (D/G/O/I/F/X -> TimeInForce 0/1/2/3/4/5) that an entry replaces;
/// the platform's own letters (1 = OS, N = NOW, E = EXT, A = AEX, C = CHXP) are sent only
/// when the profile names their tags.
struct TifProfile {
    std::map<std::string, std::vector<FixField>, std::less<>> letters;
};

/// Settings name of a TIF letter ("OS" for "1", "NOW" for "N", "DAY" for "D", ...), so a
/// profile reads "TifNOW=59=3"; empty for an unknown letter.
std::string_view TifNameOf(std::string_view letter);
/// Letter of a TIF name ("OS" -> "1"); empty for an unknown name.
std::string_view TifLetterOf(std::string_view name);
/// Parses a profile entry "59=3;18=f": tag=value pairs separated by ';'. Nothing when an
/// entry is malformed (a tag that is not a positive number, a missing '=').
std::optional<std::vector<FixField>> ParseTifTags(std::string_view text);

/// Price type (1 market, also market-on-open with TIF "O"; 2 market-on-close; 5 limit)
/// and TIF letter -> OrdType(40), TimeInForce(59) and the profile's extra tags, appended to
/// `out` (a NewOrderSingle's fields). Limit orders get Price(44). Market-on-close is OrdType 5
/// in FIX 4.2 and OrdType 1 with TimeInForce 7 (at the close) in FIX 4.4. Returns the submit
/// result that refuses the order (-5 price type, -6 TIF), `out` then unchanged; 0 otherwise.
int AppendOrderType(std::vector<FixField>& out, int32_t priceType, std::string_view tifLetter,
                    double limitPrice, FixVersion version, const TifProfile& profile);

/// A price as FIX decimal text: plain notation, no exponent, trailing zeros dropped.
std::string FormatFixPrice(double price);

} // namespace wicker
