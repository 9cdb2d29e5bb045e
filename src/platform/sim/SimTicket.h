#pragma once

#include "common/PackedTexts.h"
#include "platform/OrderTicket.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace wicker {

/// An order's ticket as the simulated book keeps it all day: its texts packed in one string,
/// so that tens of thousands of orders cost a fraction of a full OrderTicket each.
class SimTicket {
public:
    SimTicket() = default;
    explicit SimTicket(const OrderTicket& t) { set(t); }

    void set(const OrderTicket& t) {
        m_texts.assign({t.account, t.side, t.symbol, t.clOrderID, t.tif, t.destination, t.memo});
        quantity = t.quantity;
        lmtPrice = t.lmtPrice;
        priceType = t.priceType;
        maxFloor = t.maxFloor;
    }
    /// The ticket as it was set.
    OrderTicket full() const {
        OrderTicket t;
        t.account = account();
        t.side = side();
        t.symbol = symbol();
        t.quantity = quantity;
        t.lmtPrice = lmtPrice;
        t.priceType = priceType;
        t.clOrderID = clOrderID();
        t.tif = tif();
        t.destination = destination();
        t.maxFloor = maxFloor;
        t.memo = memo();
        return t;
    }

    std::string_view account() const { return m_texts[0]; }
    std::string_view side() const { return m_texts[1]; }
    std::string_view symbol() const { return m_texts[2]; }
    std::string_view clOrderID() const { return m_texts[3]; }
    std::string_view tif() const { return m_texts[4]; }
    std::string_view destination() const { return m_texts[5]; }
    std::string_view memo() const { return m_texts[6]; }

    int32_t quantity = 0;
    double lmtPrice = 0;
    int32_t priceType = 0;
    int32_t maxFloor = 0;

private:
    PackedTexts<7> m_texts;
};

} // namespace wicker
