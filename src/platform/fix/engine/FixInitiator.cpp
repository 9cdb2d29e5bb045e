#include "platform/fix/engine/FixInitiator.h"

#include "platform/fix/engine/FixConvert.h"
#include "platform/fix/engine/FixSettings.h"
#include "platform/fix/engine/ReconnectBackoff.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include <quickfix/Application.h>
#include <quickfix/FileLog.h>
#include <quickfix/FileStore.h>
#include <quickfix/FixFields.h>
#include <quickfix/Session.h>
#include <quickfix/SocketInitiator.h>

namespace wicker {
namespace {

// The longest wait between two connection attempts.
constexpr std::chrono::seconds ReconnectCap{60};

// A log that also tells the listener of the session's events (connection failures,
// timeouts), and writes to the file log when there is one. A failed connection is
// reported to `connectFailed` first, so the listener hears of it with its next attempt
// already planned.
class ListeningLog : public FIX::Log {
public:
    ListeningLog(FIX::Log* inner, FixSessionListener& listener, std::function<void()> connectFailed)
        : m_inner(inner), m_listener(listener), m_connectFailed(std::move(connectFailed)) {}
    FIX::Log* inner() const { return m_inner; }
    void clear() override {
        if (m_inner) {
            m_inner->clear();
        }
    }
    void backup() override {
        if (m_inner) {
            m_inner->backup();
        }
    }
    void onIncoming(const std::string& s) override {
        if (m_inner) {
            m_inner->onIncoming(s);
        }
    }
    void onOutgoing(const std::string& s) override {
        if (m_inner) {
            m_inner->onOutgoing(s);
        }
    }
    void onEvent(const std::string& s) override {
        if (m_inner) {
            m_inner->onEvent(s);
        }
        try {
            if (s.find("Connection failed") != std::string::npos) {
                m_connectFailed();
            }
            m_listener.onSessionEvent(s);
        } catch (...) {
        }
    }

private:
    FIX::Log* m_inner;
    FixSessionListener& m_listener;
    std::function<void()> m_connectFailed;
};

class ListeningLogFactory : public FIX::LogFactory {
public:
    ListeningLogFactory(FIX::LogFactory* inner, FixSessionListener& listener,
                        std::function<void()> connectFailed)
        : m_inner(inner), m_listener(listener), m_connectFailed(std::move(connectFailed)) {}
    FIX::Log* create() override { return wrap(m_inner ? m_inner->create() : nullptr); }
    FIX::Log* create(const FIX::SessionID& id) override {
        return wrap(m_inner ? m_inner->create(id) : nullptr);
    }
    void destroy(FIX::Log* log) override {
        ListeningLog* l = static_cast<ListeningLog*>(log);
        if (m_inner && l->inner()) {
            m_inner->destroy(l->inner());
        }
        delete l;
    }

private:
    FIX::Log* wrap(FIX::Log* inner) { return new ListeningLog(inner, m_listener, m_connectFailed); }
    FIX::LogFactory* m_inner;
    FixSessionListener& m_listener;
    std::function<void()> m_connectFailed;
};

// Text(58) of an admin message, or "".
std::string TextOf(const FIX::Message& message) {
    FIX::Text text;
    return message.getFieldIfSet(text) ? text.getValue() : std::string();
}

bool HasSetting(const FIX::SessionSettings& s, const FIX::SessionID& id, const char* key) {
    return s.has(id) && s.get(id).has(key);
}

// The QuickFIX side of the session: turns callbacks into listener calls and keeps every
// order that is stale or sent while disconnected off the wire.
class InitiatorApplication : public FIX::Application {
public:
    InitiatorApplication(FixSessionListener& listener, bool marketData, std::function<void()> up,
                         std::function<void()> down)
        : m_listener(listener), m_marketData(marketData), m_up(std::move(up)),
          m_down(std::move(down)) {}

    bool loggedOn() const { return m_loggedOn.load(); }

    void onCreate(const FIX::SessionID& id) override {
        if (!m_marketData) {
            return;
        }
        if (FIX::Session* s = FIX::Session::lookupSession(id)) {
            s->setDataDictionaryProvider(MarketDataDictionaries(id.getBeginString()));
        }
    }
    void onLogon(const FIX::SessionID&) override {
        m_loggedOn.store(true);
        Guard([&] { m_up(); });
        Guard([&] { m_listener.onLogon(); });
    }
    void onLogout(const FIX::SessionID&) override {
        m_loggedOn.store(false);
        Guard([&] { m_down(); });
        Guard([&] { m_listener.onLogout(); });
    }
    void toAdmin(FIX::Message& message, const FIX::SessionID&) override {
        FIX::MsgType type;
        if (!message.getHeader().getFieldIfSet(type)) {
            return;
        }
        // Rejects we send are in the log's events ("Message 2 Rejected: CompID problem").
        const std::string text = TextOf(message);
        if (type.getValue() == FIX::MsgType_Logout && !text.empty()) {
            Guard([&] { m_listener.onSessionEvent("Logout sent: " + text); });
        }
    }
    void toApp(FIX::Message& message, const FIX::SessionID&) throw(FIX::DoNotSend) override {
        const FIX::Header& header = message.getHeader();
        FIX::MsgType type;
        FIX::MsgSeqNum seq;
        header.getFieldIfSet(type);
        header.getFieldIfSet(seq);
        // Orders are known by their ClOrdID, market data requests by their MDReqID.
        FIX::ClOrdID clOrdID;
        if (!message.getFieldIfSet(clOrdID)) {
            FIX::MDReqID mdReqID;
            if (message.getFieldIfSet(mdReqID)) {
                clOrdID.setValue(mdReqID.getValue());
            }
        }
        FIX::PossDupFlag possDup;
        if (header.getFieldIfSet(possDup) && possDup.getValue()) {
            Guard([&] {
                m_listener.onStaleNotResent(type.getValue(), seq.getValue(), clOrdID.getValue());
            });
            throw FIX::DoNotSend();
        }
        // Sent while the session went down between the caller's check and here: refusing
        // keeps QuickFIX from storing it for a late resend.
        if (!m_loggedOn.load()) {
            throw FIX::DoNotSend();
        }
        Guard([&] { m_listener.onSending(type.getValue(), seq.getValue(), clOrdID.getValue()); });
    }
    void fromAdmin(const FIX::Message& message,
                   const FIX::SessionID&) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                                FIX::IncorrectTagValue, FIX::RejectLogon) override {
        FIX::MsgType type;
        if (message.getHeader().getFieldIfSet(type) && type.getValue() == FIX::MsgType_Reject) {
            Guard([&] { m_listener.onReceived(QuickFixReader(message)); });
        } else if (type.getValue() == FIX::MsgType_Logout) {
            const std::string text = TextOf(message);
            Guard([&] {
                m_listener.onSessionEvent("Logout received" + (text.empty() ? "" : ": " + text));
            });
        }
    }
    void fromApp(const FIX::Message& message,
                 const FIX::SessionID&) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                              FIX::IncorrectTagValue,
                                              FIX::UnsupportedMessageType) override {
        Guard([&] { m_listener.onReceived(QuickFixReader(message)); });
    }

private:
    // A listener that throws must not take the network thread down with it.
    template <class F> static void Guard(F f) {
        try {
            f();
        } catch (...) {
        }
    }

    FixSessionListener& m_listener;
    bool m_marketData;
    std::function<void()> m_up;
    std::function<void()> m_down;
    std::atomic<bool> m_loggedOn{false};
};

} // namespace

struct FixInitiator::Impl {
    Impl(const FixSessionConfig& c, FixSessionListener& l)
        : config(c), listener(l), application(
                                      l, c.marketData, [this] { up(); }, [this] { down(); }),
          backoff(std::chrono::seconds(c.reconnectInterval), ReconnectCap) {}

    // QuickFIX would try again every ReconnectInterval; instead the session is disabled
    // after each failure and enabled again when its back-off wait is over.
    void up() {
        std::lock_guard<std::mutex> lock(timerMutex);
        backoff.loggedOn(std::chrono::steady_clock::now());
    }
    void down() {
        const auto now = std::chrono::steady_clock::now();
        std::lock_guard<std::mutex> lock(timerMutex);
        if (timerStopping || held) {
            return; // stopping, or the same failure told twice: no attempt was made since
        }
        const std::chrono::seconds wait = backoff.wentDown(now);
        if (FIX::Session* s = FIX::Session::lookupSession(sessionID)) {
            s->logout();
        }
        resumeAt = now + wait;
        waitSeconds = static_cast<int>(wait.count());
        held = true;
        timerWake.notify_one();
    }
    void timerLoop() {
        std::unique_lock<std::mutex> lock(timerMutex);
        while (!timerStopping) {
            if (!held) {
                timerWake.wait(lock);
            } else if (std::chrono::steady_clock::now() < resumeAt) {
                timerWake.wait_until(lock, resumeAt);
            } else {
                held = false;
                if (FIX::Session* s = FIX::Session::lookupSession(sessionID)) {
                    s->logon();
                }
            }
        }
    }

    FixSessionConfig config;
    FixSessionListener& listener;
    InitiatorApplication application;
    std::mutex timerMutex;
    std::condition_variable timerWake;
    ReconnectBackoff backoff;
    bool held = false; ///< the session is disabled until resumeAt
    bool timerStopping = false;
    std::chrono::steady_clock::time_point resumeAt;
    int waitSeconds = 0;
    std::thread timer;

    void stopTimer() {
        {
            std::lock_guard<std::mutex> lock(timerMutex);
            timerStopping = true;
        }
        timerWake.notify_one();
        if (timer.joinable()) {
            timer.join();
        }
    }
    FIX::SessionSettings settings;
    FIX::SessionID sessionID;
    std::unique_ptr<FIX::MessageStoreFactory> store;
    std::unique_ptr<FIX::LogFactory> log;
    std::unique_ptr<FIX::LogFactory> listeningLog; // over `log`: events reach the listener
    std::unique_ptr<FIX::SocketInitiator> initiator;
    FIX::Session* session = nullptr;
    // Read by the engine's thread too (a logon names the session), set once it runs.
    std::atomic<bool> started{false};
    // The message sent last is filled again for the next one of its kind: a basket's
    // orders differ only in their values, and building and freeing each costs more
    // than QuickFIX's own send.
    std::mutex sendMutex;
    FIX::Message lastSent;
};

FixInitiator::FixInitiator(const FixSessionConfig& config, FixSessionListener& listener)
    : m_impl(new Impl(config, listener)) {}

FixInitiator::~FixInitiator() {
    stop();
}

void FixInitiator::start() {
    Impl& d = *m_impl;
    if (d.started) {
        return;
    }
    try {
        d.settings = InitiatorSettings(d.config);
        const std::set<FIX::SessionID> ids = d.settings.getSessions();
        if (ids.size() != 1) {
            throw FixEngineError("The FIX settings must name exactly one session.");
        }
        d.sessionID = *ids.begin();
        if (!d.config.storePath.empty()) {
            d.store.reset(new FIX::FileStoreFactory(d.config.storePath));
        } else if (HasSetting(d.settings, d.sessionID, "FileStorePath")) {
            d.store.reset(new FIX::FileStoreFactory(d.settings));
        } else {
            d.store.reset(new FIX::MemoryStoreFactory());
        }
        if (!d.config.logPath.empty()) {
            d.log.reset(new FIX::FileLogFactory(d.config.logPath));
        } else if (HasSetting(d.settings, d.sessionID, "FileLogPath")) {
            d.log.reset(new FIX::FileLogFactory(d.settings));
        }
        d.listeningLog.reset(new ListeningLogFactory(d.log.get(), d.listener, [&d] { d.down(); }));
        d.initiator.reset(
            new FIX::SocketInitiator(d.application, *d.store, d.settings, *d.listeningLog));
        d.timerStopping = false;
        d.timer = std::thread([&d] { d.timerLoop(); });
        d.initiator->start();
        d.session = FIX::Session::lookupSession(d.sessionID);
        d.started = true;
    } catch (const FixEngineError&) {
        d.stopTimer();
        throw;
    } catch (const std::exception& e) {
        d.stopTimer();
        d.initiator.reset();
        throw FixEngineError(e.what());
    }
}

void FixInitiator::stop() {
    Impl& d = *m_impl;
    if (!d.started) {
        return;
    }
    d.started = false;
    d.stopTimer();
    try {
        // QuickFIX's own wait for the logout reply sleeps in whole seconds; waiting here
        // in short steps saves a second on every clean stop.
        if (d.session != nullptr && d.application.loggedOn()) {
            d.session->logout();
            const auto limit = std::chrono::steady_clock::now() +
                               std::chrono::seconds(std::max(1, d.config.logonTimeout));
            while (d.application.loggedOn() && std::chrono::steady_clock::now() < limit) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        }
        d.initiator->stop(true);
    } catch (...) {
    }
    d.session = nullptr;
}

bool FixInitiator::isLoggedOn() const {
    return m_impl->started && m_impl->application.loggedOn();
}

int FixInitiator::send(FixMessage& message) {
    Impl& d = *m_impl;
    if (!isLoggedOn() || d.session == nullptr) {
        return 0;
    }
    try {
        std::lock_guard<std::mutex> lock(d.sendMutex);
        FIX::Message& m = d.lastSent;
        if (!RefillQuickFix(m, message)) {
            m = ToQuickFix(message, d.sessionID.getBeginString());
        }
        if (!d.session->send(m)) {
            return 0;
        }
        FIX::MsgSeqNum seq;
        if (!m.getHeader().getFieldIfSet(seq)) {
            return 0;
        }
        message.msgSeqNum = seq.getValue();
        return message.msgSeqNum;
    } catch (const std::exception&) {
        return 0;
    }
}

int FixInitiator::secondsToNextAttempt() const {
    std::lock_guard<std::mutex> lock(m_impl->timerMutex);
    return m_impl->held ? m_impl->waitSeconds : 0;
}

std::string FixInitiator::sessionName() const {
    if (m_impl->started) {
        return m_impl->sessionID.toString();
    }
    const FixSessionConfig& c = m_impl->config;
    return c.beginString + ":" + c.senderCompID + "->" + c.targetCompID;
}

} // namespace wicker
