#pragma once

#include "RecordingOrders.h"
#include "platform/Platform.h"

#include <string>
#include <utility>
#include <vector>

namespace wicker::test {

/// A platform that records what the screen asks of it: quote registrations in order,
/// cancels, and every order object (through RecordingOrders).
class FakePlatform : public Platform {
public:
    struct Registration {
        bool registered = false; ///< false: dropped
        std::string symbol;
        std::string exchange;
        bool operator==(const Registration&) const = default;
    };

    std::string DisplayName() const override { return "FAKE"; }
    Result<void> Start() override { return {}; }
    void Stop() override {}
    void RegisterSymbol(const std::string& symbol, const std::string& exchange) override {
        calls.push_back({true, symbol, exchange});
    }
    void DeregisterSymbol(const std::string& symbol, const std::string& exchange) override {
        calls.push_back({false, symbol, exchange});
    }
    std::unique_ptr<QVXOrder> CreateOrder() override { return orders.CreateOrder(); }
    void CancelOrder(const std::string& clOrderId, int32_t orderRecordId, const std::string&,
                     const std::string&) override {
        cancels.emplace_back(clOrderId, orderRecordId);
    }
    int32_t AdoptOrder(const KnownOrder& order) override {
        adopted.push_back(order);
        return adoptResult == 0 ? 0 : adoptResult++;
    }
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t orderRecordId,
                         const QVXOrderChange& change) override {
        replaces.push_back({clOrderId, orderRecordId, change});
        return replaceResult;
    }

    /// Symbols registered (true) or dropped (false) by the calls so far, in call order.
    std::vector<std::string> Symbols(bool registered) const {
        std::vector<std::string> out;
        for (const auto& c : calls) {
            if (c.registered == registered) {
                out.push_back(c.symbol);
            }
        }
        return out;
    }

    std::vector<Registration> calls;
    std::vector<std::pair<std::string, int32_t>> cancels;
    struct Replace {
        std::string clOrderId;
        int32_t orderRecordId = 0;
        QVXOrderChange change;
    };
    std::vector<Replace> replaces;
    int32_t replaceResult = 0; ///< what ReplaceOrder answers
    std::vector<KnownOrder> adopted;
    int32_t adoptResult = 0; ///< the record id the next AdoptOrder gives (0: unknown)
    RecordingOrders orders;
};

} // namespace wicker::test
