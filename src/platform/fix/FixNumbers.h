#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace wicker {

/// A FIX decimal ("-12.50", "100"): digits with an optional sign and point, nothing else
/// (no blanks, exponents, "inf" or "nan").
std::optional<double> ParseFixDecimal(std::string_view text);
/// A FIX quantity as a 32-bit count: a decimal with no fraction, within range.
std::optional<int32_t> ParseFixQuantity(std::string_view text);
/// A positive FIX integer such as a sequence number or tag.
std::optional<int32_t> ParseFixInt(std::string_view text);

} // namespace wicker
