#pragma once

#include "platform/QVXOrder.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace wicker {

/// Hears of every order of a basket send as it is handed to the platform: order tracking
/// shows the order at once, before any answer, and the order journal keeps it across a
/// crash. Called on the thread that sends.
class SendListener {
public:
    virtual ~SendListener() = default;
    /// A send with this number begins: `orders` are complete and about to be submitted, in
    /// this order. Nothing has left yet; an exception stops the send before anything does.
    /// `overrides` names the limits the trader chose to override for it.
    virtual void SendBegins(int16_t basketSeq, std::string_view basketName,
                            std::span<const QVXOrder* const> orders,
                            std::string_view overrides) = 0;
    /// SubmitOrder returned `result`: the platform's record id of the order (> 0), or the
    /// refusal (< 0). The send is done with `order`: the listener may take its texts.
    virtual void Submitted(QVXOrder& order, int32_t result) = 0;
    /// The send is over, also when a line ended it with an error.
    virtual void SendEnds(int16_t basketSeq) = 0;
};

} // namespace wicker
