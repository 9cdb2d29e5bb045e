#include "trading/orders/SendSequence.h"

namespace wicker {

int16_t SendSequence::TakeOrderSeq() {
    const int16_t taken = m_orderSeq;
    m_orderSeq = m_orderSeq < LastOrderSeq ? static_cast<int16_t>(m_orderSeq + 1) : int16_t{1};
    return taken;
}

} // namespace wicker
