#pragma once

#include "common/Clock.h"
#include "common/Result.h"
#include "platform/QVXOrderMaintenance.h"
#include "platform/fix/FixMarketData.h"
#include "platform/fix/FixOrderBook.h"
#include "platform/fix/FixPlatformSettings.h"
#include "platform/fix/MarketDataPacer.h"
#include "platform/fix/MemoJournal.h"
#include "platform/fix/NewOrderSingle.h"
#include "platform/fix/SendWindow.h"
#include "platform/fix/engine/FixInitiator.h"
#include "platform/fix/engine/FixSessionListener.h"

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace wicker {

/// Where the gateway's news goes. Called on QuickFIX's network thread, and on the thread
/// of SubmitOrder / CancelOrder for orders that could not go out: an implementation hands
/// everything to one queue and returns at once.
class FixGatewayEvents {
public:
    virtual ~FixGatewayEvents() = default;
    virtual void onOrderUpdate(const FixOrderState& order) = 0;
    virtual void onOrderReject(const FixOrderReject& reject) = 0;
    /// A report about an order that could not be taken as it stands.
    virtual void onOrderWarning(const FixOrderWarning& warning) = 0;
    virtual void onQuote(const FixQuoteFields& quote) = 0;
    /// Logon, logout and disconnect, with a line for the status bar.
    virtual void onSessionStatus(bool loggedOn, const std::string& text) = 0;
};

/// Wicker's link to a broker over FIX: orders out through a paced window, cancels, market
/// data subscriptions, and every report turned into order events. The FIX store and log
/// (the audit trail of every order) and the memo journal live in `folder`.
class FixGateway : private FixSessionListener, private FixBookEvents {
public:
    FixGateway(FixPlatformSettings settings, std::filesystem::path folder, const Clock& clock,
               FixGatewayEvents& events);
    /// Stops the session (may wait for the logout: never on the UI thread).
    ~FixGateway() override;
    FixGateway(const FixGateway&) = delete;
    FixGateway& operator=(const FixGateway&) = delete;

    /// Opens the memo journal and starts connecting; an error when either fails.
    Result<void> start();
    /// Sends what still waits for the window (for up to 10 s while logged on), then logs
    /// out and stops (may take seconds). Whatever could not go out is refused.
    void stop();
    bool isLoggedOn() const;
    /// Why the session went down or cannot come up, in words for the trader ("" when it
    /// never failed), with the setting that fixes it when there is one.
    std::string downReason() const;

    /// The checks the platform makes of every order besides its fields (destination not
    /// enabled -7, exposure limit -8, ...): 0 to let it pass, else the refusal. Set it on
    /// the thread that submits orders.
    void setPreTradeCheck(std::function<int32_t(const OrderTicket&)> check);
    /// Local checks (-1 account, -2 side, -3 quantity, -4 symbol, -5 price type, -6 TIF),
    /// then the pre-trade check, then -16 when the session is not logged on; otherwise the
    /// order is queued for the wire and its record id (> 0) returned.
    int32_t SubmitOrder(const OrderTicket& ticket);
    /// Sends OrderCancelRequest for the order with this record id (or, failing that, this
    /// ClOrdID). 0 when queued; -16 offline; -4 when the order is not known.
    int32_t CancelOrder(const std::string& clOrdID, int32_t orderRecordId);
    /// Sends OrderCancelReplaceRequest for the order with this record id (or, failing that,
    /// this ClOrdID): 0 when queued; kReplaceOrderNotOpen when the order is unknown, done,
    /// has a replace unanswered or the new id is in use; -3 for a quantity not above the
    /// filled one; -5 / -6 as for a new order; the pre-trade check's refusal; -16 offline.
    /// An empty new id becomes "<current id>-R<n>".
    int32_t ReplaceOrder(const std::string& clOrdID, int32_t orderRecordId,
                         const QVXOrderChange& change);
    /// Puts an order of an earlier run into the book without sending it (see
    /// FixOrderBook::adoptOrder); its status is asked at every logon like that of any open
    /// order, at once when logged on now. Returns its record id, 0 when it is known already.
    int32_t adoptOrder(const FixOrderState& known);
    /// Market data for a symbol while it is registered (again after every logon).
    void RegisterSymbol(const std::string& symbol);
    void DeregisterSymbol(const std::string& symbol);

    /// The order book, for inspection.
    const FixOrderBook& book() const { return m_book; }

private:
    // FixSessionListener, on the network thread.
    void onLogon() override;
    void onLogout() override;
    void onMessage(const FixMessage& message) override;
    void onReceived(const FixFieldReader& message) override;
    void onSending(const std::string& msgType, int msgSeqNum, const std::string& clOrdID) override;
    void onStaleNotResent(const std::string& msgType, int msgSeqNum,
                          const std::string& clOrdID) override;
    void onSessionEvent(const std::string& text) override;
    /// "; next attempt in 20 s" while a reconnect is planned, else "".
    std::string nextAttempt() const;

    /// Queues a cancel or replace behind the orders waiting for the window.
    void enqueue(FixMessage message);
    /// Queues a market data request for its own pacing (m_symbolMutex held).
    void enqueueQuoteRequest(FixMessage request);
    /// Wakes the sender: it puts on the wire what the window and the pacer let through.
    void drain();
    bool sendable() const; // m_sendMutex held
    /// Tells the trader once when orders have waited for a full window for seconds, and
    /// again when they flow (m_sendMutex held; returns the status line to show, if any).
    std::optional<std::string> checkStall(std::chrono::steady_clock::time_point now);
    /// A refusal of market data: the symbol's, or the whole session's.
    void quotesRefused(const std::string& mdReqID, const FixFieldReader& refusal);
    /// Queues an OrderStatusRequest for each open order (m_sendMutex held).
    void askStatus(const std::vector<FixOrderState>& orders);
    /// Orders that will never leave are refused where the trader sees them.
    void refuseUnsent(const std::vector<FixMessage>& dropped);
    /// The sender thread: one thread sends, so orders go out in the order they were
    /// submitted while the network thread keeps reading reports, and no lock is held
    /// while QuickFIX sends.
    void sendLoop();
    void sendOne(FixMessage& message);
    void answered(const std::vector<std::string>& ids);
    // FixBookEvents: the book's events straight to the owner, in the book's order. A receiver
    // that throws (out of memory) loses that event only: the book finishes the message, and
    // the orders it answered still leave the window.
    void onUpdate(const FixOrderState& order) override;
    void onReject(const FixOrderReject& reject) override;
    void onWarning(const FixOrderWarning& warning) override;

    FixPlatformSettings m_settings;
    std::filesystem::path m_folder;
    const Clock& m_clock;
    FixGatewayEvents& m_events;
    FixOrderProfile m_profile;
    std::function<int32_t(const OrderTicket&)> m_preTradeCheck;
    FixOrderBook m_book;
    std::optional<MemoJournal> m_journal;
    std::unique_ptr<FixInitiator> m_engine;

    std::mutex m_sendMutex; // window, sender state, cancel numbering, journal
    std::condition_variable m_sendWake;
    std::condition_variable m_allSent; ///< the sender put a batch on the wire, or we went offline
    SendWindow m_window;               // orders, cancels and replaces only
    bool m_online = false;             ///< logged on as far as queuing orders goes
    std::vector<FixMessage> m_statusRequests; ///< OrderStatusRequests to send, unpaced
    bool m_stopping = false;
    std::optional<std::chrono::steady_clock::time_point> m_fullSince;
    size_t m_answersSeen = 0; // the window's answers() at the last check
    bool m_stallReported = false;
    bool m_journalDirty = false;
    int m_cancelCount = 0;
    int m_replaceCount = 0;
    std::thread m_sender;

    std::mutex m_symbolMutex; // taken before m_sendMutex, never after
    std::set<std::string> m_symbols;
    bool m_subscribing = false;   ///< logged on, and the registered symbols were asked for
    bool m_quotesRefused = false; ///< the counterparty refuses market data this session

    mutable std::mutex m_causeMutex;
    std::string m_cause;      ///< the latest event that explains a disconnect
    bool m_causeHeld = false; ///< m_cause explains the disconnect to come

    mutable std::mutex m_quoteMutex; // the pacer; taken alone or after m_sendMutex
    MarketDataPacer m_pacer;
};

} // namespace wicker
