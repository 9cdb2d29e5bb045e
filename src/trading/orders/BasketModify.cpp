#include "trading/orders/BasketModify.h"

#include "common/Conversions.h"
#include "common/Text.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/SubmitErrors.h"

#include <cmath>

namespace wicker {

namespace {

const char* BasisName(ChangeBasis basis) {
    switch (basis) {
    case ChangeBasis::Bid:
        return "Bid";
    case ChangeBasis::Ask:
        return "Ask";
    case ChangeBasis::Last:
        return "Last";
    case ChangeBasis::Market:
        break;
    }
    return "MKT";
}

double QuotePrice(const Quote& quote, ChangeBasis basis) {
    switch (basis) {
    case ChangeBasis::Bid:
        return quote.m_fBidPrice;
    case ChangeBasis::Ask:
        return quote.m_fAskPrice;
    case ChangeBasis::Last:
        return quote.m_fLastPrice;
    case ChangeBasis::Market:
        break;
    }
    return 0;
}

/// Report text of an order, as a send names its lines: symbol, quantity, destination.
std::string ReportText(const OrderUpdate& order) {
    return order.m_strInstrument + " " + std::to_string(order.m_nQuantity) + " " +
           order.m_strDestination.str();
}

} // namespace

std::string BasketModifySummaryText(const BasketModifyReport& report) {
    std::string text = SendSummaryText(report.notSent, report.submitErrors);
    if (!report.journalErrors.empty()) {
        if (!text.empty()) {
            text += "\r\n";
        }
        text += "***** Changed, Journal Not Written *****\r\n";
        for (const std::string& line : report.journalErrors) {
            text += line + "\r\n";
        }
    }
    return text;
}

BasketModify::BasketModify(OrderReplace& replace, const OrderTracker& tracker,
                           const QuoteBoard& quotes, MessageBoxes& boxes)
    : m_replace(replace), m_tracker(tracker), m_quotes(quotes), m_boxes(boxes) {}

BasketModifyReport BasketModify::ModifyBasket(const BasketSend& send,
                                              const BasketChangeTo& changeTo,
                                              bool confirmBeforeChange) {
    BasketModifyReport report;
    const bool market = changeTo.basis == ChangeBasis::Market;
    double modifier = 0;
    if (!market) {
        const std::string text = Trim(changeTo.modifier);
        modifier = text.empty() ? 0.0 : (IsNumeric(text) ? Val(text) : std::nan(""));
        if (!std::isfinite(modifier)) {
            m_boxes.show("The modifier must be a number.", 48, "Modify Basket");
            report.outcome = BasketModifyReport::Outcome::BadModifier;
            return report;
        }
    }
    // Taken before anything is sent: a fill arriving meanwhile cannot add or drop an order.
    std::vector<size_t> open;
    const auto& orders = m_tracker.Orders();
    for (size_t i = 0; i < orders.size(); ++i) {
        const OrderUpdate& o = orders[i];
        if (o.m_nLvsQuantity > 0 && o.m_nBasketSeq == send.basketSeq &&
            o.m_strBasketId == send.basketName) {
            open.push_back(i);
        }
    }
    if (open.empty()) {
        m_boxes.show("That basket does not contain any open orders.", 48, "No Open Orders");
        report.outcome = BasketModifyReport::Outcome::NoOpenOrders;
        return report;
    }
    if (confirmBeforeChange) {
        const std::string to = market ? std::string("market")
                                      : std::string(BasisName(changeTo.basis)) +
                                            (modifier == 0  ? ""
                                             : modifier < 0 ? " - " + NumberText(-modifier)
                                                            : " + " + NumberText(modifier));
        if (m_boxes.show("Do you want to change all open orders for basket #" +
                             std::to_string(send.basketSeq) + " to " + to + "?",
                         292, "Modify Basket") != MsgAnswer::Yes) {
            report.outcome = BasketModifyReport::Outcome::NotConfirmed;
            return report;
        }
    }
    for (size_t i : open) {
        const OrderUpdate& order = orders[i];
        OrderTerms terms{order.m_nQuantity, 1, 0};
        if (!market) {
            const Quote* quote = m_quotes.Latest(order.m_strInstrument);
            const double base = quote != nullptr ? QuotePrice(*quote, changeTo.basis) : 0.0;
            if (base <= 0) {
                report.notSent.push_back(ReportText(order) + ": no " + BasisName(changeTo.basis));
                continue;
            }
            terms.priceType = 5;
            terms.price = base + modifier;
            if (!(terms.price > 0)) {
                report.notSent.push_back(ReportText(order) + ": price " + NumberText(terms.price));
                continue;
            }
        }
        if (SameTerms(order, terms)) {
            ++report.unchanged;
            continue;
        }
        const ReplaceAttempt attempt = m_replace.Replace(i, terms);
        using S = ReplaceAttempt::Status;
        switch (attempt.status) {
        case S::Sent:
            ++report.changed;
            break;
        case S::JournalLost:
            ++report.changed;
            report.journalErrors.push_back(attempt.clOrderId + ": " + attempt.error);
            break;
        case S::Refused:
            if (attempt.code == kReplaceOrderNotOpen) {
                // SubmitOrder never gives this code, so the send's table has no words for it.
                report.notSent.push_back(ReportText(order) + ": " +
                                         GetReplaceErrorStr(attempt.code));
            } else {
                report.submitErrors.emplace_back(ReportText(order), attempt.code);
            }
            break;
        case S::NoId:
            report.notSent.push_back(ReportText(order) + ": no client order id left");
            break;
        case S::NotJournal:
            report.notSent.push_back(ReportText(order) + ": " + attempt.error);
            break;
        }
    }
    const std::string summary = BasketModifySummaryText(report);
    if (!summary.empty()) {
        m_boxes.show(summary, 48, "Some Orders Were Not Changed");
    }
    return report;
}

} // namespace wicker
