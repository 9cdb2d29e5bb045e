#pragma once

#include "common/MessageBox.h"
#include "platform/QVXOrder.h"

#include <cstdint>
#include <string>

namespace wicker {

/// Short text of a refused SubmitOrder result, as it stands in the summary after a
/// basket send. Unknown codes give "Unknown SubmitOrder Error. SubmitOrder Error Code = "
/// and the code.
std::string GetSubmitErrorStr(int32_t code);

/// The prompt ShowSubmitError shows for one refused order: the long text, then the order
/// description Side Quantity Symbol on its own line (not for -1 nor unknown codes).
std::string SubmitErrorPrompt(int32_t code, const std::string& side, int32_t quantity,
                              const std::string& symbol);

/// Shows the long text of a refused order at once (OK only, no icon,
/// "Error submitting order").
void ShowSubmitError(MessageBoxes& boxes, int32_t code, const std::string& side, int32_t quantity,
                     const std::string& symbol);

/// Short text of a refused ReplaceOrder: the submit texts, and for kReplaceOrderNotOpen
/// (which SubmitOrder never returns, so GetSubmitErrorStr keeps it unknown)
/// "Order is not open.".
std::string GetReplaceErrorStr(int32_t code);

/// ShowSubmitError for a refused ReplaceOrder of the order Side Quantity Symbol.
void ShowReplaceError(MessageBoxes& boxes, int32_t code, const std::string& side, int32_t quantity,
                      const std::string& symbol);

/// The same for the order object that was just refused: its Side, Quantity and Symbol are
/// read before the code is looked at.
void ShowSubmitError(MessageBoxes& boxes, int32_t code, const QVXOrder& order);

} // namespace wicker
