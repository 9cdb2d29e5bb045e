#pragma once

#include "exchange/ExchangeOptions.h"
#include "exchange/ExchangeVenue.h"
#include "exchange/ExecutionReports.h"
#include "platform/fix/engine/FixAcceptor.h"

#include <chrono>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace wicker {

/// wicker-exchange's FIX side: accepts the FIX 4.2 and 4.4 sessions of one client,
/// keeps every order's book (quantities, average price, status), answers orders, cancels,
/// cancel-replaces and market data requests, and reports what the venue does. Single-threaded: the
/// owner calls runOnce() in a loop.
class ExchangeServer : private FixAcceptorListener, private ExchangeVenue::Sink {
public:
    ExchangeServer(ExchangeOptions options, ExchangeVenue& venue);
    ~ExchangeServer() override;
    ExchangeServer(const ExchangeServer&) = delete;
    ExchangeServer& operator=(const ExchangeServer&) = delete;

    /// Listens, and takes back the open orders of an earlier run from the FIX store.
    /// Writes the port file when one is named.
    Result<void> start();
    int port() const;
    /// One round: network events, the market's moves, market data.
    void runOnce(int timeoutMs);

    size_t orderCount() const { return m_orders.size(); }

private:
    struct Subscription {
        int session = 0;
        std::string mdReqID;
        std::string symbol;
        FixQuoteFields lastSent;
    };

    // FixAcceptorListener
    void onLogon(int session) override;
    void onLogout(int session) override;
    void onMessage(int session, const FixMessage& message) override;
    // ExchangeVenue::Sink
    void onFill(int64_t orderKey, int32_t shares, double price) override;
    void onExpired(int64_t orderKey) override;

    void newOrder(int session, const FixMessage& m);
    void cancelOrder(int session, const FixMessage& m);
    void replaceOrder(int session, const FixMessage& m);
    void marketData(int session, const FixMessage& m);
    /// OrderStatusRequest(H): a status report of the order, or of an unknown one.
    void orderStatus(int session, const FixMessage& m);
    void rejectMessage(int session, const FixMessage& m, int reason, const std::string& text);
    void report(int64_t key, ExecKind kind, int32_t lastShares = 0, double lastPx = 0,
                int ordRejReason = 0, const std::string& text = "");
    void streamQuotes();
    void rebuild(int session);
    void journal(const FixMessage& m);
    FixVersion versionOf(int session) const;
    std::string nextExecID();
    std::string now() const;

    ExchangeOptions m_options;
    ExchangeVenue& m_venue;
    std::unique_ptr<FixAcceptor> m_acceptor;
    std::optional<std::ofstream> m_journal;
    std::string m_runID; ///< makes OrderIDs and ExecIDs unique across restarts
    int64_t m_nextKey = 1;
    int64_t m_execCount = 0;

    struct Entry {
        int session = 0;
        ExchangeOrder order;
    };
    std::unordered_map<int64_t, Entry> m_orders;
    std::map<std::pair<int, std::string>, int64_t> m_byClOrdID;
    std::vector<Subscription> m_subscriptions;
    std::chrono::steady_clock::time_point m_lastQuotes;
};

} // namespace wicker
