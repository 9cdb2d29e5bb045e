#include "platform/fix/engine/FixBareLoop.h"

#include "platform/fix/engine/FixConvert.h"
#include "platform/fix/engine/FixSettings.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#include <quickfix/Application.h>
#include <quickfix/FileLog.h>
#include <quickfix/FileStore.h>
#include <quickfix/FixFields.h>
#include <quickfix/Session.h>
#include <quickfix/SocketInitiator.h>

namespace wicker {
namespace {

class CountingApplication : public FIX::Application {
public:
    void onCreate(const FIX::SessionID&) override {}
    void onLogon(const FIX::SessionID&) override {
        std::lock_guard<std::mutex> lock(mutex);
        loggedOn = true;
        changed.notify_all();
    }
    void onLogout(const FIX::SessionID&) override {
        std::lock_guard<std::mutex> lock(mutex);
        loggedOn = false;
        changed.notify_all();
    }
    void toAdmin(FIX::Message&, const FIX::SessionID&) override {}
    void toApp(FIX::Message&, const FIX::SessionID&) throw(FIX::DoNotSend) override {}
    void fromAdmin(const FIX::Message&,
                   const FIX::SessionID&) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                                FIX::IncorrectTagValue, FIX::RejectLogon) override {
    }
    void fromApp(const FIX::Message& message,
                 const FIX::SessionID&) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                              FIX::IncorrectTagValue,
                                              FIX::UnsupportedMessageType) override {
        FIX::MsgType type;
        if (message.getHeader().getFieldIfSet(type) &&
            type.getValue() == FIX::MsgType_ExecutionReport) {
            std::lock_guard<std::mutex> lock(mutex);
            ++reports;
            if (reports == awaited) {
                lastReport = std::chrono::steady_clock::now();
                changed.notify_all();
            }
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    bool loggedOn = false;
    int reports = 0;
    int awaited = 0;
    std::chrono::steady_clock::time_point lastReport;
};

} // namespace

struct FixBareLoop::Impl {
    FixSessionConfig config;
    CountingApplication application;
    FIX::SessionSettings settings;
    FIX::SessionID sessionID;
    std::unique_ptr<FIX::MessageStoreFactory> store;
    std::unique_ptr<FIX::LogFactory> log;
    std::unique_ptr<FIX::SocketInitiator> initiator;
};

FixBareLoop::FixBareLoop(const FixSessionConfig& config) : m_impl(new Impl) {
    m_impl->config = config;
}

FixBareLoop::~FixBareLoop() {
    stop();
}

bool FixBareLoop::logon(int timeoutMs) {
    Impl& d = *m_impl;
    try {
        d.settings = InitiatorSettings(d.config);
        d.sessionID = *d.settings.getSessions().begin();
        if (d.config.storePath.empty()) {
            d.store.reset(new FIX::MemoryStoreFactory());
        } else {
            d.store.reset(new FIX::FileStoreFactory(d.config.storePath));
        }
        if (d.config.logPath.empty()) {
            d.initiator.reset(new FIX::SocketInitiator(d.application, *d.store, d.settings));
        } else {
            d.log.reset(new FIX::FileLogFactory(d.config.logPath));
            d.initiator.reset(
                new FIX::SocketInitiator(d.application, *d.store, d.settings, *d.log));
        }
        d.initiator->start();
    } catch (const std::exception& e) {
        throw FixEngineError(e.what());
    }
    std::unique_lock<std::mutex> lock(d.application.mutex);
    return d.application.changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                          [&] { return d.application.loggedOn; });
}

double FixBareLoop::sendAndAwait(const std::vector<FixMessage>& orders, int answers,
                                 int timeoutMs) {
    Impl& d = *m_impl;
    std::vector<FIX::Message> messages;
    messages.reserve(orders.size());
    for (const FixMessage& o : orders) {
        messages.push_back(ToQuickFix(o, d.sessionID.getBeginString()));
    }
    {
        std::lock_guard<std::mutex> lock(d.application.mutex);
        d.application.reports = 0;
        d.application.awaited = answers;
    }
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    for (FIX::Message& m : messages) {
        FIX::Session::sendToTarget(m, d.sessionID);
    }
    std::unique_lock<std::mutex> lock(d.application.mutex);
    if (!d.application.changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                        [&] { return d.application.reports >= answers; })) {
        return -1;
    }
    return std::chrono::duration<double>(d.application.lastReport - start).count();
}

void FixBareLoop::stop() {
    if (m_impl->initiator) {
        m_impl->initiator->stop();
        m_impl->initiator.reset();
    }
}

} // namespace wicker
