#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numeric conversions with the rules the program has always had: halves round to
// the even neighbour, out-of-range values are an Overflow error (6), text that is
// not a number is a Type mismatch error (13). Errors are RuntimeError.
namespace wicker {

/// Round to the nearest integer, halves to even (2.5 -> 2, 3.5 -> 4, -2.5 -> -2).
double RoundHalfEven(double value);

int16_t CInt(double value);
int32_t CLng(double value);
/// Text forms: the text must pass IsNumeric, then it converts as its number does.
int16_t CInt(std::string_view text);
int32_t CLng(std::string_view text);
/// Number of a numeric text; Type mismatch when IsNumeric is false.
double CDbl(std::string_view text);

/// True for text that reads whole as a number: blanks around it, a sign, digits with
/// optional thousands commas, a decimal point, an exponent ("1e3"). "" and "abc" are not.
bool IsNumeric(std::string_view text);

/// Value of the number at the start of the text (leading blanks skipped, blanks inside
/// the digits ignored, "&H" hex and "&O" octal); text that does not start with one is 0.
double Val(std::string_view text);

/// Largest integer not above the value (Int(-1.5) = -2).
double Int(double value);

/// The decimal text the program shows for a double: at most 15 significant digits,
/// no trailing zeros, "0.5" style with a leading zero, exponent form "1E+20" for very
/// large or small values.
std::string NumberText(double value);

} // namespace wicker
