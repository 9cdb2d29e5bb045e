#pragma once

#include <optional>
#include <string_view>

namespace wicker {

/// A number typed in a cell of a basket line (a quantity, a modifier, a price): whole
/// numbers and plain decimals read directly, anything else as CDbl reads it; none when the
/// text is no finite number.
std::optional<double> LineNumber(std::string_view text);

} // namespace wicker
