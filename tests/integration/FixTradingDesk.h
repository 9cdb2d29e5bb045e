#pragma once

// The trading screen's logic (send, track, cancel) wired to the FIX gateway, the way the
// program wires it to its platform: gateway events go through one queue and reach order
// tracking only when the "UI thread" (the test) pumps it.

#include "platform/fix/FixGateway.h"
#include "trading/BasketCancel.h"
#include "trading/BasketExecution.h"
#include "trading/OrderTracker.h"
#include "trading/TradingEvents.h"

#include <deque>
#include <functional>
#include <mutex>
#include <variant>

namespace wicker::test {

/// The order-update record of a FIX order.
inline QVXOrderStruct ReportOf(const FixOrderState& o) {
    QVXOrderStruct r;
    r.Account = o.account;
    r.Destination = o.destination;
    r.ExchOrderId = o.orderID;
    r.LogMessage = o.text;
    r.Side = o.side;
    r.Tif = o.tif;
    r.UpdateTime = o.transactTime;
    r.AvgExecPrice = o.avgPx;
    r.LmtPrice = o.lmtPrice;
    r.SeqNum = o.updates;
    r.CumExecQuantity = o.cum;
    r.LvsQuantity = o.leaves;
    r.OrderRecordId = o.recordId;
    r.PriceTypeCode = o.priceType;
    r.Quantity = o.quantity;
    r.Memo = o.memo;
    r.ClOrderID = o.clOrdID;
    r.Symbol = o.symbol;
    return r;
}

inline QVXRejectStruct RejectOf(const FixOrderReject& x) {
    return QVXRejectStruct{x.clOrdID, x.side, x.quantity, x.symbol, x.reason};
}

/// Gateway events queued for the UI thread.
class QueuedGatewayEvents : public FixGatewayEvents {
public:
    void onOrderUpdate(const FixOrderState& order) override { push(order); }
    void onOrderReject(const FixOrderReject& reject) override {
        std::lock_guard lock(m_mutex);
        m_queue.emplace_back(reject);
        m_rejects.push_back(reject);
    }
    void onQuote(const FixQuoteFields&) override {}
    void onSessionStatus(bool, const std::string&) override {}

    /// Delivers everything queued to the screen's event handlers.
    void pump(TradingEvents& events) {
        std::deque<std::variant<FixOrderState, FixOrderReject>> batch;
        {
            std::lock_guard lock(m_mutex);
            batch.swap(m_queue);
        }
        for (const auto& e : batch) {
            if (const FixOrderState* o = std::get_if<FixOrderState>(&e)) {
                events.OnQVXOrderUpdate(ReportOf(*o));
            } else {
                events.OnQVXOrderReject(RejectOf(std::get<FixOrderReject>(e)));
            }
        }
    }
    std::vector<FixOrderReject> rejects() const {
        std::lock_guard lock(m_mutex);
        return m_rejects;
    }
    /// Order updates received so far, pumped or not.
    size_t updateCount() const {
        std::lock_guard lock(m_mutex);
        return m_updateCount;
    }

private:
    void push(const FixOrderState& o) {
        std::lock_guard lock(m_mutex);
        m_queue.emplace_back(o);
        ++m_updateCount;
    }
    mutable std::mutex m_mutex;
    std::deque<std::variant<FixOrderState, FixOrderReject>> m_queue;
    std::vector<FixOrderReject> m_rejects;
    size_t m_updateCount = 0;
};

/// QVXOrder over the gateway: the properties go into a ticket that SubmitOrder hands on.
class GatewayOrder : public QVXOrder {
public:
    GatewayOrder(FixGateway& gateway, std::function<void()> beforeSubmit)
        : m_gateway(gateway), m_beforeSubmit(std::move(beforeSubmit)) {}

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
    std::string ClOrderID() const override { return m_t.clOrdID; }
    void setClOrderID(std::string v) override { m_t.clOrdID = std::move(v); }
    std::string Tif() const override { return m_t.tif; }
    void setTif(std::string v) override { m_t.tif = std::move(v); }
    std::string Destination() const override { return m_t.destination; }
    void setDestination(std::string v) override { m_t.destination = std::move(v); }
    int32_t SubmitOrder() override {
        if (m_beforeSubmit) {
            m_beforeSubmit();
        }
        return m_gateway.SubmitOrder(m_t);
    }
    int32_t MaxFloor() const override { return m_t.maxFloor; }
    void setMaxFloor(int32_t v) override { m_t.maxFloor = v; }
    std::string Memo() const override { return m_t.memo; }
    void setMemo(std::string v) override { m_t.memo = std::move(v); }

private:
    FixGateway& m_gateway;
    std::function<void()> m_beforeSubmit;
    FixOrderTicket m_t;
};

class GatewayOrders : public QVXOrderFactory, public QVXOrderMaintenance {
public:
    explicit GatewayOrders(FixGateway& gateway) : m_gateway(gateway) {}
    std::unique_ptr<QVXOrder> CreateOrder() override {
        return std::make_unique<GatewayOrder>(m_gateway, m_beforeSubmit);
    }
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string&,
                     const std::string&) override {
        m_gateway.CancelOrder(clOrderId, orderRecordId);
    }
    /// Runs before every SubmitOrder (a test's way into the middle of a basket).
    void setBeforeSubmit(std::function<void()> hook) { m_beforeSubmit = std::move(hook); }

private:
    FixGateway& m_gateway;
    std::function<void()> m_beforeSubmit;
};

} // namespace wicker::test
