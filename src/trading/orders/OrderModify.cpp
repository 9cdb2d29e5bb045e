#include "trading/orders/OrderModify.h"

#include "common/Conversions.h"
#include "common/Text.h"
#include "platform/OrderTicket.h"
#include "trading/orders/OrderSummary.h"
#include "trading/orders/SubmitErrors.h"

#include <cmath>
#include <limits>

namespace wicker {

namespace {

constexpr const char* kTitle = "Modify Order";

std::string TermsText(const OrderTerms& terms) {
    return std::to_string(terms.quantity) + (terms.priceType == OrderPriceType::Limit
                                                 ? " @ " + NumberText(terms.price)
                                                 : std::string(" MKT"));
}

std::string CurrentTermsText(const OrderUpdate& order) {
    const std::string qty = std::to_string(order.m_nQuantity);
    switch (order.m_nPriceType) {
    case 5:
        return qty + " @ " + NumberText(order.m_fLmtPrice);
    case 2:
        return qty + " MOC";
    default:
        return qty + (order.m_bMoo ? " MOO" : " MKT");
    }
}

} // namespace

std::string OrderDescription(const OrderUpdate& order) {
    return SideDisplayText(order.m_strSide) + " " + std::to_string(order.m_nQuantity) + " " +
           order.m_strInstrument;
}

CheckedChange CheckOrderChange(const OrderUpdate& order, const OrderChangeInput& input) {
    CheckedChange c;
    const std::string qtyText = Trim(input.quantity);
    const double qty = IsNumeric(qtyText) ? Val(qtyText) : std::nan("");
    if (!std::isfinite(qty) || qty != std::floor(qty) || qty <= order.m_nCumExecQuantity ||
        qty > std::numeric_limits<int32_t>::max()) {
        c.field = ModifyResult::Field::Quantity;
        c.message = "Quantity must be a whole number greater than the filled quantity of " +
                    std::to_string(order.m_nCumExecQuantity) + ".";
        return c;
    }
    c.terms.quantity = static_cast<int32_t>(qty);
    if (input.priceType == ModifyPriceType::Market) {
        c.terms.priceType = 1;
    } else {
        const std::string priceText = Trim(input.price);
        const double price = IsNumeric(priceText) ? Val(priceText) : std::nan("");
        if (!std::isfinite(price) || price <= 0) {
            c.field = ModifyResult::Field::Price;
            c.message = "Price must be a number greater than 0.";
            return c;
        }
        c.terms.priceType = 5;
        c.terms.price = price;
    }
    c.ok = true;
    return c;
}

void ShowReplaceOutcome(MessageBoxes& boxes, const OrderUpdate& order,
                        const ReplaceAttempt& attempt) {
    using S = ReplaceAttempt::Status;
    switch (attempt.status) {
    case S::Sent:
        return;
    case S::Refused:
        ShowReplaceError(boxes, attempt.code, order.m_strSide, order.m_nQuantity,
                         order.m_strInstrument);
        return;
    case S::NoId:
        boxes.show("No new client order id is left for this order. The order was not changed.", 48,
                   kTitle);
        return;
    case S::NotJournal:
        boxes.show("The order journal cannot hold this order (" + attempt.error +
                       "). The order was not changed.",
                   48, kTitle);
        return;
    case S::JournalLost:
        boxes.show("The order was changed as " + attempt.clOrderId +
                       ", but its journal row could not be written: " + attempt.error,
                   48, kTitle);
        return;
    }
}

OrderModify::OrderModify(OrderReplace& replace, const OrderTracker& tracker, MessageBoxes& boxes)
    : m_replace(replace), m_tracker(tracker), m_boxes(boxes) {}

ModifyResult OrderModify::ModifyOrder(int32_t orderRecordId, const OrderChangeInput& input,
                                      bool confirmBeforeChange) {
    ModifyResult result;
    const std::optional<size_t> index = TrackedOrderIndex(m_tracker, orderRecordId);
    if (!index || m_tracker.Orders()[*index].m_nLvsQuantity <= 0) {
        m_boxes.show("That order is not open any more.", 48, kTitle);
        result.outcome = ModifyResult::Outcome::NotOpen;
        return result;
    }
    const OrderUpdate& order = m_tracker.Orders()[*index];
    const CheckedChange checked = CheckOrderChange(order, input);
    if (!checked.ok) {
        m_boxes.show(checked.message, 48, kTitle);
        result.outcome = ModifyResult::Outcome::Invalid;
        result.focus = checked.field;
        return result;
    }
    if (SameTerms(order, checked.terms)) {
        m_boxes.show("The order already has these terms.", 48, kTitle);
        result.outcome = ModifyResult::Outcome::Unchanged;
        result.focus = ModifyResult::Field::Quantity;
        return result;
    }
    if (confirmBeforeChange &&
        m_boxes.show("Do you want to change this order?\r\n" + SideDisplayText(order.m_strSide) +
                         " " + order.m_strInstrument + ": " + CurrentTermsText(order) + " to " +
                         TermsText(checked.terms),
                     292, "Change Order") != MsgAnswer::Yes) {
        result.outcome = ModifyResult::Outcome::NotConfirmed;
        return result;
    }
    // Copied: the replace may not touch the tracker, but the message below must name the
    // order as it stood whatever happens to the collection.
    const OrderUpdate before = order;
    result.attempt = m_replace.Replace(*index, checked.terms);
    ShowReplaceOutcome(m_boxes, before, result.attempt);
    result.outcome = result.attempt.sent() ? ModifyResult::Outcome::Changed
                     : result.attempt.status == ReplaceAttempt::Status::Refused
                         ? ModifyResult::Outcome::Refused
                         : ModifyResult::Outcome::NotSent;
    return result;
}

} // namespace wicker
