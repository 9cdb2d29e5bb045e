#pragma once

#include "platform/QVXOrder.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace wicker {

/// Hears of every order of a basket send: the order journal keeps it across a crash before
/// it leaves, and order tracking shows it, before any answer. Called on the thread that
/// sends, which drains the platform's answers only after the send: the orders go out first
/// and are tracked once all have.
class SendListener {
public:
    virtual ~SendListener() = default;
    /// A send with this number begins: `orders` are complete and about to be submitted, in
    /// this order. Nothing has left yet; an exception stops the send before anything does.
    /// `overrides` names the limits the trader chose to override for it.
    virtual void SendBegins(int16_t basketSeq, std::string_view basketName,
                            std::span<const QVXOrder* const> orders,
                            std::string_view overrides) = 0;
    /// SubmitOrder returned `result` for the send's next order: the platform's record id
    /// (> 0), or the refusal (< 0). The next order leaves right after: keep this cheap.
    virtual void Submitted(int32_t result) = 0;
    /// The send has handed its orders to the platform: all of them, or those before a line
    /// ended it with an error. `orders[i]` got the i-th result. The send is done with them:
    /// the listener may take their texts.
    virtual void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) = 0;
    /// The send is over, also when a line ended it with an error.
    virtual void SendEnds(int16_t basketSeq) = 0;
};

} // namespace wicker
