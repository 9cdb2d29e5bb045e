#pragma once

#include "common/Clock.h"
#include "platform/Platform.h"
#include "platform/PreTradeLimits.h"
#include "platform/fix/FixGateway.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace wicker {

/// The platform over a FIX session to a broker: orders, cancels and market data go through
/// the gateway; every report arrives in the platform's event queue.
class FixPlatform final : public Platform, private FixGatewayEvents {
public:
    /// `folder` holds the FIX store, log and memo journal.
    FixPlatform(FixPlatformSettings settings, PreTradeLimits limits, std::filesystem::path folder,
                const Clock& clock);
    /// Logs out first (may wait for the counterparty).
    ~FixPlatform() override;

    /// "FIX host:port".
    std::string DisplayName() const override;
    /// QuickFIX version, FIX version, the session's CompIDs and whether it is logged on.
    std::string Details() const override;
    Result<void> Start() override;
    void Stop() override;
    std::unique_ptr<QVXOrder> CreateOrder() override;
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string& third,
                     const std::string& fourth) override;
    /// Into the gateway's book without sending it; the broker is asked its status at every
    /// logon (at once when logged on). 0 when its client order id is known already.
    int32_t AdoptOrder(const KnownOrder& order) override;
    /// An OrderCancelReplaceRequest through the gateway (see FixGateway::ReplaceOrder).
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange& change) override;
    void RegisterSymbol(const std::string& symbol, const std::string& exchange) override;
    void DeregisterSymbol(const std::string& symbol, const std::string& exchange) override;

    bool isLoggedOn() const { return m_gateway.isLoggedOn(); }

private:
    // FixGatewayEvents, on the gateway's threads: straight into the queue.
    void onOrderUpdate(const FixOrderState& order) override;
    void onOrderReject(const FixOrderReject& reject) override;
    void onOrderWarning(const FixOrderWarning& warning) override;
    void onQuote(const FixQuoteFields& quote) override;
    void onSessionStatus(bool loggedOn, const std::string& text) override;

    /// -7 / -8 for an order, with the last price seen for a market order.
    int32_t CheckLimits(const OrderTicket& ticket) const;

    FixPlatformSettings m_settings;
    PreTradeLimits m_limits;
    mutable std::mutex m_priceMutex;
    std::unordered_map<std::string, double> m_lastPrice; ///< by symbol, from market data
    FixGateway m_gateway; // last: its threads call back into the members above
};

/// The FIX platform the settings in `dataFolder`/basket.ini describe, its files in
/// `dataFolder`/fix. An error names the bad setting.
Result<std::unique_ptr<Platform>> CreateFixPlatform(const std::filesystem::path& dataFolder,
                                                    const Clock& clock);

} // namespace wicker
