#pragma once

#include "platform/OrderTicket.h"
#include "platform/QVXOrder.h"

#include <functional>
#include <utility>

namespace wicker {

/// An order object whose properties fill a ticket that SubmitOrder hands to the platform's
/// own submit (the simulator, or the FIX gateway behind the pre-trade checks).
class TicketOrder final : public QVXOrder {
public:
    explicit TicketOrder(std::function<int32_t(const OrderTicket&)> submit)
        : m_submit(std::move(submit)) {}

    std::string Account() const override { return m_t.account; }
    void setAccount(std::string v) override { m_t.account = std::move(v); }
    std::string Side() const override { return m_t.side; }
    void setSide(std::string v) override { m_t.side = std::move(v); }
    std::string Symbol() const override { return m_t.symbol; }
    void setSymbol(std::string v) override { m_t.symbol = std::move(v); }
    int32_t Quantity() const override { return m_t.quantity; }
    void setQuantity(int32_t v) override { m_t.quantity = v; }
    double LmtPrice() const override { return m_t.lmtPrice; }
    void setLmtPrice(double v) override { m_t.lmtPrice = v; }
    int32_t PriceType() const override { return m_t.priceType; }
    void setPriceType(int32_t v) override { m_t.priceType = v; }
    std::string ClOrderID() const override { return m_t.clOrderID; }
    void setClOrderID(std::string v) override { m_t.clOrderID = std::move(v); }
    std::string Tif() const override { return m_t.tif; }
    void setTif(std::string v) override { m_t.tif = std::move(v); }
    std::string Destination() const override { return m_t.destination; }
    void setDestination(std::string v) override { m_t.destination = std::move(v); }
    int32_t SubmitOrder() override { return m_submit(m_t); }
    int32_t MaxFloor() const override { return m_t.maxFloor; }
    void setMaxFloor(int32_t v) override { m_t.maxFloor = v; }
    std::string Memo() const override { return m_t.memo; }
    void setMemo(std::string v) override { m_t.memo = std::move(v); }
    /// The fields as they are, for readers that would otherwise copy each one.
    const OrderTicket& ticket() const { return m_t; }
    /// The fields, for the one reader that takes them once the order is done with.
    OrderTicket& ticket() { return m_t; }

private:
    std::function<int32_t(const OrderTicket&)> m_submit;
    OrderTicket m_t;
};

} // namespace wicker
