#pragma once

#include <string>
#include <string_view>

namespace wicker {

/// UpDown2: multiplier one up or down, no bound; "1" when the text is no number.
std::string SpinPercent(std::string_view percentText, bool up);

/// UpDown3: delta one up or down, kept within 0 and 100; "100" when the text is no number.
std::string SpinDelta(std::string_view deltaText, bool up);

/// UpDown1: modifier 0.01 up or down; a result within 0.01 of zero is "0"; "0" when the
/// text is no number.
std::string SpinMod(std::string_view modText, bool up);

} // namespace wicker
