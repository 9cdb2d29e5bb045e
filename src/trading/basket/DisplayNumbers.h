#pragma once

#include <string>

namespace wicker {

// The display formats the live columns use, made without printf: a 5,000-line basket
// rewrites tens of thousands of cells a second. Each gives exactly the text of its
// general counterpart in common/Formats.h and common/Conversions.h.

/// Format(value, "#0.00") for 2 decimals, "#0.000", "#0.0000"; with `leadingZero` false,
/// "#.00" (0 shows ".00").
std::string FixedText(double value, int decimals, bool leadingZero = true);

/// Format(value, "#,###"): thousands separators, 0 shows as an empty text.
std::string ThousandsText(double value);

/// Dollars with thousands separators and two decimals: "1,234,567.89" ("0.00" for 0).
std::string DollarText(double value);

/// NumberText(value), fast for whole numbers (quantities).
std::string QuantityText(double value);

} // namespace wicker
