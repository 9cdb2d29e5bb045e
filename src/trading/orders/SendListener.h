#pragma once

#include "platform/QVXOrder.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace wicker {

/// Hears of every order of a basket send: the order journal keeps it across a crash before
/// it leaves, and order tracking shows it, before any answer. A send makes and announces its
/// orders in parts: the first on the thread that sends, the others on a helper thread while
/// the orders before them leave. The rest is heard on the thread that sends, which drains
/// the platform's answers only after the send: the orders go out first and are tracked once
/// all have.
class SendListener {
public:
    virtual ~SendListener() = default;
    /// A send with this number begins with its first orders (maybe none): complete and about
    /// to be submitted, in this order. Nothing has left yet; an exception stops the send
    /// before anything does. `overrides` names the limits the trader chose to override.
    virtual void SendBegins(int16_t basketSeq, std::string_view basketName,
                            std::span<const QVXOrder* const> orders,
                            std::string_view overrides) = 0;
    /// The send's next orders, complete, after those before them; none of them leaves before
    /// this returns. Called on a helper thread of the send, a part at a time, while the
    /// orders before are submitted; an exception ends the send before any of these leaves.
    virtual void SendContinues(int16_t basketSeq, std::span<const QVXOrder* const> orders) = 0;
    /// SubmitOrder returned `result` for the send's next order: the platform's record id
    /// (> 0), or the refusal (< 0). The next order leaves right after: keep this cheap.
    virtual void Submitted(int32_t result) = 0;
    /// The send has handed its orders to the platform: all of them, or those before an error
    /// ended it. `orders[i]` got the i-th result. The send is done with them:
    /// the listener may take their texts.
    virtual void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) = 0;
    /// The send is over, also when an error ended it.
    virtual void SendEnds(int16_t basketSeq) = 0;
};

} // namespace wicker
