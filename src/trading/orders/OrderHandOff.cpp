#include "trading/orders/OrderHandOff.h"

namespace wicker {

void OrderHandOff::SendBegins(int16_t, std::string_view, std::span<const QVXOrder* const>) {}

void OrderHandOff::Submitted(const QVXOrder& order, int32_t result) {
    // A refusal is reported in the send's summary; nothing of it reached the broker.
    if (result > 0) {
        m_tracker.OnOrderHandedOff(order, result);
    }
}

void OrderHandOff::SendEnds(int16_t) {}

} // namespace wicker
