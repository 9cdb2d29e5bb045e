#pragma once

// The trading screen's logic (send, track, cancel) wired to the FIX gateway, the way the
// program wires it to its platform: gateway events go through one queue and reach order
// tracking only when the "UI thread" (the test) pumps it.

#include "platform/TicketOrder.h"
#include "platform/fix/FixGateway.h"
#include "platform/fix/FixPlatformRecords.h"
#include "trading/TradingEvents.h"
#include "trading/orders/BasketCancel.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/OrderTracker.h"

#include <deque>
#include <functional>
#include <mutex>
#include <variant>

namespace wicker::test {

/// Gateway events queued for the UI thread.
class QueuedGatewayEvents : public FixGatewayEvents {
public:
    void onOrderUpdate(const FixOrderState& order) override { push(order); }
    void onOrderReject(const FixOrderReject& reject) override {
        std::lock_guard lock(m_mutex);
        m_queue.emplace_back(reject);
        m_rejects.push_back(reject);
    }
    void onOrderWarning(const FixOrderWarning& w) override {
        std::lock_guard lock(m_mutex);
        m_warnings.push_back(w);
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
                events.OnQVXOrderUpdate(OrderStructOf(*o));
            } else {
                events.OnQVXOrderReject(RejectStructOf(std::get<FixOrderReject>(e)));
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
    std::vector<FixOrderWarning> m_warnings; // kept for a debugger; the peers send none
    size_t m_updateCount = 0;
};

class GatewayOrders : public QVXOrderFactory, public QVXOrderMaintenance {
public:
    explicit GatewayOrders(FixGateway& gateway) : m_gateway(gateway) {}
    std::unique_ptr<QVXOrder> CreateOrder() override {
        return std::make_unique<TicketOrder>([this](const OrderTicket& t) {
            if (m_beforeSubmit) {
                m_beforeSubmit();
            }
            return m_gateway.SubmitOrder(t);
        });
    }
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string&,
                     const std::string&) override {
        m_gateway.CancelOrder(clOrderId, orderRecordId);
    }
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange& change) override {
        return m_gateway.ReplaceOrder(clOrderId, orderRecordId, change);
    }
    /// Runs before every SubmitOrder (a test's way into the middle of a basket).
    void setBeforeSubmit(std::function<void()> hook) { m_beforeSubmit = std::move(hook); }

private:
    FixGateway& m_gateway;
    std::function<void()> m_beforeSubmit;
};

} // namespace wicker::test
