#include "baskets/BasketLineScanner.h"

#include <utility>

namespace wicker {

std::string* BasketLineScanner::field() {
    switch (m_field) {
    case 0:
        return &m_fields.symbol;
    case 1:
        return &m_fields.quantity;
    case 2:
        return &m_fields.destination;
    case 3:
        return &m_fields.indexShares;
    default:
        return nullptr;
    }
}

BasketFileFields BasketLineScanner::take() {
    BasketFileFields out = std::move(m_fields);
    m_fields = {};
    m_field = 0;
    m_overlong = false;
    return out;
}

BasketFileFields ScanBasketLine(std::string_view line) {
    BasketLineScanner scanner;
    scanner.feed(line);
    return scanner.take();
}

} // namespace wicker
