#include "trading/orders/BasketCancel.h"

#include "common/Conversions.h"

#include <vector>

namespace wicker {

namespace {

/// What the platform's cancel operation takes to find an order.
struct CancelEntry {
    std::string text;
    int32_t number = 0;
};

bool IsOpen(const OrderUpdate& order) {
    return order.m_nLvsQuantity > 0;
}

/// Zeroes the leaves of every open order that `matches` accepts at once, so a second
/// click finds nothing, and only then sends the requests.
template <class Match>
int CancelMatching(OrderTracker& tracker, QVXOrderMaintenance& maintenance, Match matches) {
    std::vector<CancelEntry> list;
    const auto& orders = tracker.Orders();
    for (size_t i = 0; i < orders.size(); ++i) {
        const OrderUpdate& order = orders[i];
        if (IsOpen(order) && matches(order)) {
            list.push_back(CancelEntry{order.m_strClOrderId, order.m_nOrderRecordId});
            tracker.ZeroLeaves(i);
        }
    }
    for (const CancelEntry& entry : list) {
        maintenance.CancelOrder(entry.text, entry.number, "", "");
    }
    return static_cast<int>(list.size());
}

} // namespace

BasketCancel::BasketCancel(OrderTracker& tracker, QVXOrderMaintenance& maintenance,
                           MessageBoxes& boxes)
    : m_tracker(tracker), m_maintenance(maintenance), m_boxes(boxes) {}

int BasketCancel::mnuCxlAll(bool confirmBeforeCancel) {
    size_t open = 0;
    for (const OrderUpdate& order : m_tracker.Orders()) {
        open += IsOpen(order) ? 1 : 0;
    }
    if (open == 0) {
        m_boxes.show("There are no baskets with open orders.", 48, "No Open Orders");
        return 0;
    }
    if (confirmBeforeCancel && m_boxes.show("Do you want to cancel all open basket orders?", 292,
                                            "Cancel All Basket Orders") != MsgAnswer::Yes) {
        return 0;
    }
    return CancelMatching(m_tracker, m_maintenance, [](const OrderUpdate&) { return true; });
}

int BasketCancel::mnuCxlSel(const std::optional<BasketListSelection>& selected,
                            bool confirmBeforeCancel) {
    if (!selected) {
        return 0;
    }
    const double basketNum = Val(selected->basketNum);
    const std::string& name = selected->basketName;
    // Two sends of one basket share its name: only the selected send is cancelled.
    auto inBasket = [&](const OrderUpdate& order) {
        return order.m_strBasketId == name && order.m_nBasketSeq == basketNum;
    };
    size_t open = 0;
    for (const OrderUpdate& order : m_tracker.Orders()) {
        open += IsOpen(order) && inBasket(order) ? 1 : 0;
    }
    if (open == 0) {
        m_boxes.show("That basket does not contain any open orders.", 48, "No Open Orders");
        return 0;
    }
    if (confirmBeforeCancel &&
        m_boxes.show("Do you want to cancel all orders for basket #" + NumberText(basketNum), 292,
                     "Cancel Selected Orders") != MsgAnswer::Yes) {
        return 0;
    }
    return CancelMatching(m_tracker, m_maintenance, inBasket);
}

} // namespace wicker
