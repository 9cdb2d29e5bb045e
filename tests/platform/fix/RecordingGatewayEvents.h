#pragma once

// Gateway events recorded for tests, with waiting.

#include "platform/fix/FixGateway.h"
#include "support/WaitFor.h"

#include <mutex>
#include <vector>

namespace wicker::test {

class RecordingGatewayEvents : public FixGatewayEvents {
public:
    void onOrderUpdate(const FixOrderState& order) override { add(m_updates, order); }
    void onOrderReject(const FixOrderReject& reject) override { add(m_rejects, reject); }
    void onOrderWarning(const FixOrderWarning& warning) override { add(m_warnings, warning); }
    void onQuote(const FixQuoteFields& quote) override { add(m_quotes, quote); }
    void onSessionStatus(bool loggedOn, const std::string& text) override {
        add(m_status, {loggedOn, text});
    }

    std::vector<FixOrderState> updates() const { return copy(m_updates); }
    std::vector<FixOrderReject> rejects() const { return copy(m_rejects); }
    std::vector<FixOrderWarning> warnings() const { return copy(m_warnings); }
    std::vector<FixQuoteFields> quotes() const { return copy(m_quotes); }
    std::vector<std::pair<bool, std::string>> status() const { return copy(m_status); }
    bool loggedOn() const {
        std::lock_guard lock(m_mutex);
        return !m_status.empty() && m_status.back().first;
    }

    /// Polls pred (which may call the accessors) until it holds or the time is up.
    template <class Pred>
    static bool waitFor(Pred pred, std::chrono::milliseconds limit = std::chrono::seconds(15)) {
        return WaitFor(pred, limit);
    }

private:
    template <class T> void add(std::vector<T>& to, T value) {
        std::lock_guard lock(m_mutex);
        to.push_back(std::move(value));
    }
    template <class T> std::vector<T> copy(const std::vector<T>& from) const {
        std::lock_guard lock(m_mutex);
        return from;
    }

    mutable std::mutex m_mutex;
    std::vector<FixOrderState> m_updates;
    std::vector<FixOrderReject> m_rejects;
    std::vector<FixOrderWarning> m_warnings;
    std::vector<FixQuoteFields> m_quotes;
    std::vector<std::pair<bool, std::string>> m_status;
};

} // namespace wicker::test
