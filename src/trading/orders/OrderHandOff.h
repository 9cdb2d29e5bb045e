#pragma once

#include "trading/orders/OrderTracker.h"
#include "trading/orders/SendListener.h"

namespace wicker {

/// Where the orders of a send go as they are handed to the platform: into order tracking
/// at once, so every order that left is on screen before the broker says a word.
class OrderHandOff final : public SendListener {
public:
    explicit OrderHandOff(OrderTracker& tracker) : m_tracker(tracker) {}

    void SendBegins(int16_t basketSeq, std::string_view basketName,
                    std::span<const QVXOrder* const> orders) override;
    void Submitted(const QVXOrder& order, int32_t result) override;
    void SendEnds(int16_t basketSeq) override;

private:
    OrderTracker& m_tracker;
};

} // namespace wicker
