#pragma once

#include <charconv>

namespace wicker {

/// What std::to_chars(first, last, value) writes (the shortest text that reads back as the
/// same double), made quickly for a decimal of at most four places from 0.01 up to 100,000,
/// which every price on a tick grid is: such a value is written from an integer once it is
/// shown to read back exactly. Any other value goes to std::to_chars.
std::to_chars_result ShortestDecimal(char* first, char* last, double value);

} // namespace wicker
