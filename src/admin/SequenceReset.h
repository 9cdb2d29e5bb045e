#pragma once

#include "common/MessageBox.h"
#include "trading/orders/SendSequence.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace wicker {

/// "Set Basket No": stores the typed text as "Sequence"/"BasketNum" in basket.ini, makes
/// the number at its start (0 when it starts with none) the next basket send number, and
/// says so. Returns the new number. Nothing changes when that number does not fit a
/// 16-bit counter or the file cannot be written; the error is shown instead.
std::optional<int16_t> SetBasketSequence(const std::filesystem::path& appFolder,
                                         SendSequence& sequence, std::string_view typed,
                                         MessageBoxes& boxes);

/// "Set Trade No": the same for the trade sequence ("Sequence"/"SeqNum").
std::optional<int16_t> SetTradeSequence(const std::filesystem::path& appFolder,
                                        SendSequence& sequence, std::string_view typed,
                                        MessageBoxes& boxes);

} // namespace wicker
