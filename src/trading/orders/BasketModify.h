#pragma once

#include "common/MessageBox.h"
#include "trading/orders/OrderReplace.h"
#include "trading/orders/OrderSummary.h"
#include "trading/quotes/QuoteBoard.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace wicker {

/// What "Modify Basket" changes the open orders to.
enum class ChangeBasis { Bid, Ask, Last, Market };

struct BasketChangeTo {
    ChangeBasis basis = ChangeBasis::Market;
    std::string modifier = "0"; ///< added to the bid, ask or last; unused for market
};

/// What one Modify Basket did.
struct BasketModifyReport {
    enum class Outcome { NoOpenOrders, BadModifier, NotConfirmed, Worked };
    Outcome outcome = Outcome::Worked;
    int32_t changed = 0;              ///< replaces the platform took
    int32_t unchanged = 0;            ///< open orders that already had the new terms
    std::vector<std::string> notSent; ///< "IBM 300 NASDAQ: no Bid"
    std::vector<std::pair<std::string, int32_t>> submitErrors; ///< report text, result
    std::vector<std::string> journalErrors;
};

/// The one message after a Modify Basket: the send's summary (orders not sent, refusals
/// with their short texts) and the journal rows that could not be written. Empty when all
/// went well.
std::string BasketModifySummaryText(const BasketModifyReport& report);

/// "Modify Basket..." and "Change Selected Basket to MKT" on "Basket Options": every OPEN
/// order of one send (leaves above 0) is replaced, keeping its quantity, by a limit at the
/// symbol's latest bid, ask or last plus the modifier, or by a market order. Filled,
/// cancelled and rejected orders are not touched. Refusals come in one message at the end;
/// a refusal never stops the rest.
class BasketModify {
public:
    BasketModify(OrderReplace& replace, const OrderTracker& tracker, const QuoteBoard& quotes,
                 MessageBoxes& boxes);

    BasketModifyReport ModifyBasket(const BasketSend& send, const BasketChangeTo& changeTo,
                                    bool confirmBeforeChange);

private:
    OrderReplace& m_replace;
    const OrderTracker& m_tracker;
    const QuoteBoard& m_quotes;
    MessageBoxes& m_boxes;
};

} // namespace wicker
