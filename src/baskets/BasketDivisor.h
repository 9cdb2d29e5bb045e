#pragma once

#include "baskets/BasketIndexStore.h"

#include <string>
#include <string_view>

namespace wicker {

/// A divisor box that reads "0" or is empty stands for 1: a divisor is never 0.
std::string DivisorTextOrOne(std::string_view text);

/// Stores the edited divisor and index type of a basket in the collections (replacing
/// what was there) and returns the divisor. The divisor text must be a number
/// (RuntimeError Type mismatch otherwise; nothing is stored then).
double StoreEditedDivisor(BasketIndexStore& index, const std::string& basketName,
                          std::string_view divisorText, const std::string& indexType);

} // namespace wicker
