#pragma once

#include "common/Result.h"

#include <cstdint>

namespace wicker {

/// The numbering of basket sends: BasketSeq, the number of the next send, and OrderSeq,
/// the number of the next order within a send. The screen owns one and loads it from the
/// settings at start-up ("Sequence" / "BasketNum" and "SeqNum").
class SendSequence {
public:
    static constexpr int16_t LastOrderSeq = 9999;

    SendSequence(int16_t basketSeq = 1, int16_t orderSeq = 1)
        : m_basketSeq(basketSeq), m_orderSeq(orderSeq) {}

    int16_t BasketSeq() const { return m_basketSeq; }
    int16_t OrderSeq() const { return m_orderSeq; }
    void setBasketSeq(int16_t n) { m_basketSeq = n; }
    void setOrderSeq(int16_t n) { m_orderSeq = n; }

    /// Returns the order number to use and moves to the next: after 9999 comes 1.
    int16_t TakeOrderSeq();

private:
    int16_t m_basketSeq;
    int16_t m_orderSeq;
};

/// Durable store of the next basket send number (basket.ini). A send writes the number that
/// follows its own while its orders go out; what keeps a crash in the middle of a basket
/// from making the next run reuse their client order ids is the order journal, which holds
/// the send before its first order leaves.
class SequenceStore {
public:
    virtual ~SequenceStore() = default;
    /// Stores the next basket send number; an error when it did not reach the disk. Called
    /// on a helper thread of the send.
    virtual Result<void> SaveBasketNum(int16_t nextBasketSeq) = 0;
};

} // namespace wicker
