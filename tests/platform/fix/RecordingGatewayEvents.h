#pragma once

// Gateway events recorded for tests, with waiting.

#include "platform/fix/FixGateway.h"

#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace wicker::test {

class RecordingGatewayEvents : public FixGatewayEvents {
public:
    void onOrderUpdate(const FixOrderState& order) override {
        std::lock_guard lock(m_mutex);
        m_updates.push_back(order);
    }
    void onOrderReject(const FixOrderReject& reject) override {
        std::lock_guard lock(m_mutex);
        m_rejects.push_back(reject);
    }
    void onOrderWarning(const FixOrderWarning& warning) override {
        std::lock_guard lock(m_mutex);
        m_warnings.push_back(warning);
    }
    void onQuote(const FixQuoteFields& quote) override {
        std::lock_guard lock(m_mutex);
        m_quotes.push_back(quote);
    }
    void onSessionStatus(bool loggedOn, const std::string& text) override {
        std::lock_guard lock(m_mutex);
        m_status.emplace_back(loggedOn, text);
    }

    std::vector<FixOrderState> updates() const {
        std::lock_guard lock(m_mutex);
        return m_updates;
    }
    std::vector<FixOrderReject> rejects() const {
        std::lock_guard lock(m_mutex);
        return m_rejects;
    }
    std::vector<FixOrderWarning> warnings() const {
        std::lock_guard lock(m_mutex);
        return m_warnings;
    }
    std::vector<FixQuoteFields> quotes() const {
        std::lock_guard lock(m_mutex);
        return m_quotes;
    }
    std::vector<std::pair<bool, std::string>> status() const {
        std::lock_guard lock(m_mutex);
        return m_status;
    }
    bool loggedOn() const {
        std::lock_guard lock(m_mutex);
        return !m_status.empty() && m_status.back().first;
    }

    /// Polls pred (which may call the accessors) until it holds or the time is up.
    template <class Pred>
    static bool waitFor(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(15)) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (!pred()) {
            if (std::chrono::steady_clock::now() >= deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<FixOrderState> m_updates;
    std::vector<FixOrderReject> m_rejects;
    std::vector<FixOrderWarning> m_warnings;
    std::vector<FixQuoteFields> m_quotes;
    std::vector<std::pair<bool, std::string>> m_status;
};

} // namespace wicker::test
