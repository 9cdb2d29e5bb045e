#pragma once

#include "common/MessageBox.h"
#include "trading/orders/OrderReplace.h"

#include <cstdint>
#include <string>

namespace wicker {

/// The price types frmModifyOrder offers.
enum class ModifyPriceType { Limit, Market };

/// What the trader typed into frmModifyOrder.
struct OrderChangeInput {
    std::string quantity;
    std::string price; ///< read for a limit only
    ModifyPriceType priceType = ModifyPriceType::Limit;
};

/// How a modify ended; `focus` names the box to put the cursor in when it was refused.
struct ModifyResult {
    enum class Outcome { Changed, NotOpen, Invalid, Unchanged, NotConfirmed, Refused, NotSent };
    enum class Field { None, Quantity, Price };
    Outcome outcome = Outcome::Changed;
    Field focus = Field::None;
    ReplaceAttempt attempt; ///< for Changed, Refused, NotSent
};

/// The new terms an input gives for `order`, or the box that is wrong and why.
struct CheckedChange {
    bool ok = false;
    ModifyResult::Field field = ModifyResult::Field::None;
    std::string message;
    OrderTerms terms;
};
CheckedChange CheckOrderChange(const OrderUpdate& order, const OrderChangeInput& input);

/// frmModifyOrder's OK: checks the new terms (quantity above what is filled, a limit price
/// above 0), asks when "BeforeChange" is set, then changes the order at the broker in one
/// cancel-replace with its journal row. Every refusal is explained in a message.
class OrderModify {
public:
    OrderModify(OrderReplace& replace, const OrderTracker& tracker, MessageBoxes& boxes);

    ModifyResult ModifyOrder(int32_t orderRecordId, const OrderChangeInput& input,
                             bool confirmBeforeChange);

private:
    OrderReplace& m_replace;
    const OrderTracker& m_tracker;
    MessageBoxes& m_boxes;
};

/// "Side Quantity Symbol" of an order, as messages name it ("Buy 300 IBM").
std::string OrderDescription(const OrderUpdate& order);

/// Tells the trader what went wrong with a replace that was not Sent (nothing for Sent).
void ShowReplaceOutcome(MessageBoxes& boxes, const OrderUpdate& order,
                        const ReplaceAttempt& attempt);

} // namespace wicker
