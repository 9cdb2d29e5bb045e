#include "admin/OpenLeaves.h"

namespace wicker {

int ZeroOpenLeaves(OrderTracker& tracker) {
    int changed = 0;
    const auto& orders = tracker.Orders();
    for (size_t i = 0; i < orders.size(); ++i) {
        if (orders[i].m_nLvsQuantity > 0) {
            tracker.ZeroLeaves(i);
            ++changed;
        }
    }
    return changed;
}

} // namespace wicker
