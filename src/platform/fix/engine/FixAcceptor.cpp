#include "platform/fix/engine/FixAcceptor.h"

#include "platform/fix/engine/FixConvert.h"
#include "platform/fix/engine/FixSettings.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <quickfix/Application.h>
#include <quickfix/FileLog.h>
#include <quickfix/FileStore.h>
#include <quickfix/FixFields.h>
#include <quickfix/Parser.h>
#include <quickfix/Responder.h>
#include <quickfix/Session.h>
#include <quickfix/SessionFactory.h>

namespace wicker {
namespace {

void SetNonBlocking(int fd) {
    const int flags = ::fcntl(fd, F_GETFL, 0);
    ::fcntl(fd, F_SETFL, flags | O_NONBLOCK);
}

// One accepted socket. QuickFIX writes through send() and asks to hang up through
// disconnect(); the poll loop does the actual reading, writing and closing.
class Connection : public FIX::Responder {
public:
    explicit Connection(int fd) : m_fd(fd) {}
    ~Connection() override { ::close(m_fd); }

    int fd() const { return m_fd; }
    bool closed() const { return m_closed; }
    bool wantsWrite() const { return !m_out.empty(); }
    FIX::Parser& parser() { return m_parser; }
    FIX::Session* session = nullptr;

    bool send(const std::string& bytes) override {
        if (m_closed) {
            return false;
        }
        m_out.append(bytes);
        flush();
        return !m_closed;
    }
    void disconnect() override { m_closed = true; }

    void flush() {
        while (!m_out.empty() && !m_closed) {
            const ssize_t n = ::send(m_fd, m_out.data(), m_out.size(), MSG_NOSIGNAL);
            if (n > 0) {
                m_out.erase(0, static_cast<size_t>(n));
            } else if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) {
                return;
            } else {
                m_closed = true;
            }
        }
    }

    // Reads what is there; false when the peer closed or the socket failed.
    bool read() {
        char buffer[65536];
        for (;;) {
            const ssize_t n = ::recv(m_fd, buffer, sizeof buffer, 0);
            if (n > 0) {
                m_parser.addToStream(buffer, static_cast<size_t>(n));
                continue;
            }
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) {
                return true;
            }
            return false;
        }
    }

private:
    int m_fd;
    bool m_closed = false;
    FIX::Parser m_parser;
    std::string m_out;
};

class AcceptorApplication : public FIX::Application {
public:
    explicit AcceptorApplication(FixAcceptorListener& listener) : m_listener(listener) {}

    void add(const FIX::SessionID& id) { m_ids.push_back(id); }
    int indexOf(const FIX::SessionID& id) const {
        for (size_t i = 0; i < m_ids.size(); ++i) {
            if (m_ids[i] == id) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    void onCreate(const FIX::SessionID& id) override {
        if (FIX::Session* s = FIX::Session::lookupSession(id)) {
            s->setDataDictionaryProvider(MarketDataDictionaries(id.getBeginString()));
        }
    }
    void onLogon(const FIX::SessionID& id) override {
        const int i = indexOf(id);
        Guard([&] { m_listener.onLogon(i); });
    }
    void onLogout(const FIX::SessionID& id) override {
        const int i = indexOf(id);
        Guard([&] { m_listener.onLogout(i); });
    }
    void toAdmin(FIX::Message&, const FIX::SessionID&) override {}
    void toApp(FIX::Message&, const FIX::SessionID&) throw(FIX::DoNotSend) override {}
    void fromAdmin(const FIX::Message&,
                   const FIX::SessionID&) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                                FIX::IncorrectTagValue, FIX::RejectLogon) override {
    }
    void fromApp(const FIX::Message& message,
                 const FIX::SessionID& id) throw(FIX::FieldNotFound, FIX::IncorrectDataFormat,
                                                 FIX::IncorrectTagValue,
                                                 FIX::UnsupportedMessageType) override {
        const int i = indexOf(id);
        Guard([&] { m_listener.onMessage(i, FromQuickFix(message)); });
    }

private:
    template <class F> static void Guard(F f) {
        try {
            f();
        } catch (...) {
        }
    }

    FixAcceptorListener& m_listener;
    std::vector<FIX::SessionID> m_ids;
};

using SteadyClock = std::chrono::steady_clock;

} // namespace

struct FixAcceptor::Impl {
    Impl(std::vector<FixSessionConfig> c, FixAcceptorListener& listener)
        : configs(std::move(c)), application(listener) {}
    ~Impl() {
        connections.clear();
        if (factory) {
            for (FIX::Session* s : sessions) {
                factory->destroy(s);
            }
        }
        if (listenFd >= 0) {
            ::close(listenFd);
        }
    }

    void acceptAll();
    void handle(Connection& c, const std::string& raw);
    void closeConnection(Connection& c);
    bool ours(const FIX::Session* s) const {
        return std::find(sessions.begin(), sessions.end(), s) != sessions.end();
    }
    Connection* ownerOf(const FIX::Session* s) const {
        for (const std::unique_ptr<Connection>& c : connections) {
            if (c->session == s && !c->closed()) {
                return c.get();
            }
        }
        return nullptr;
    }

    std::vector<FixSessionConfig> configs;
    AcceptorApplication application;
    std::unique_ptr<FIX::MessageStoreFactory> store;
    std::unique_ptr<FIX::LogFactory> log;
    std::unique_ptr<FIX::SessionFactory> factory;
    std::vector<FIX::Session*> sessions;
    std::vector<std::unique_ptr<Connection>> connections;
    int listenFd = -1;
    int port = 0;
    SteadyClock::time_point lastTick;
};

void FixAcceptor::Impl::acceptAll() {
    for (;;) {
        const int fd = ::accept(listenFd, nullptr, nullptr);
        if (fd < 0) {
            return;
        }
        SetNonBlocking(fd);
        int one = 1;
        ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
        connections.push_back(std::unique_ptr<Connection>(new Connection(fd)));
    }
}

void FixAcceptor::Impl::handle(Connection& c, const std::string& raw) {
    if (c.session == nullptr) {
        FIX::Session* s = FIX::Session::lookupSession(raw, true);
        // Unknown CompIDs, or a second connection for a session that already has one.
        if (s == nullptr || !ours(s) || ownerOf(s) != nullptr) {
            c.disconnect();
            return;
        }
        c.session = s;
        s->setResponder(&c);
    }
    try {
        c.session->next(raw, FIX::UtcTimeStamp());
    } catch (const std::exception&) {
        c.disconnect();
    }
}

void FixAcceptor::Impl::closeConnection(Connection& c) {
    if (c.session != nullptr) {
        c.session->disconnect();
        c.session = nullptr;
    }
}

FixAcceptor::FixAcceptor(std::vector<FixSessionConfig> sessions, FixAcceptorListener& listener)
    : m_impl(new Impl(std::move(sessions), listener)) {}

FixAcceptor::~FixAcceptor() {
    for (const std::unique_ptr<Connection>& c : m_impl->connections) {
        m_impl->closeConnection(*c);
    }
}

void FixAcceptor::start(const std::string& bindAddress, int port) {
    Impl& d = *m_impl;
    if (d.configs.empty()) {
        throw FixEngineError("No FIX session is configured.");
    }
    try {
        const FixSessionConfig& first = d.configs.front();
        if (!first.storePath.empty()) {
            d.store.reset(new FIX::FileStoreFactory(first.storePath));
        } else {
            d.store.reset(new FIX::MemoryStoreFactory());
        }
        if (!first.logPath.empty()) {
            d.log.reset(new FIX::FileLogFactory(first.logPath));
        }
        d.factory.reset(new FIX::SessionFactory(d.application, *d.store, d.log.get()));
        for (const FixSessionConfig& c : d.configs) {
            const FIX::SessionID id(c.beginString, c.senderCompID, c.targetCompID);
            d.application.add(id);
            d.sessions.push_back(d.factory->create(id, AcceptorDictionary(c)));
        }
    } catch (const std::exception& e) {
        throw FixEngineError(e.what());
    }

    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(static_cast<uint16_t>(port));
    if (::inet_pton(AF_INET, bindAddress.c_str(), &addr.sin_addr) != 1) {
        throw FixEngineError("Not an IPv4 address: " + bindAddress);
    }
    d.listenFd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (d.listenFd < 0) {
        throw FixEngineError("Cannot create a socket.");
    }
    int one = 1;
    ::setsockopt(d.listenFd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    if (::bind(d.listenFd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0 ||
        ::listen(d.listenFd, 16) != 0) {
        throw FixEngineError("Cannot listen on " + bindAddress + ":" + std::to_string(port) + ".");
    }
    SetNonBlocking(d.listenFd);
    socklen_t len = sizeof addr;
    ::getsockname(d.listenFd, reinterpret_cast<sockaddr*>(&addr), &len);
    d.port = ntohs(addr.sin_port);
    d.lastTick = SteadyClock::now();
}

int FixAcceptor::port() const {
    return m_impl->port;
}

void FixAcceptor::poll(int timeoutMs) {
    Impl& d = *m_impl;
    std::vector<pollfd> fds;
    fds.reserve(d.connections.size() + 1);
    fds.push_back(pollfd{d.listenFd, POLLIN, 0});
    for (const std::unique_ptr<Connection>& c : d.connections) {
        const short events = static_cast<short>(POLLIN | (c->wantsWrite() ? POLLOUT : 0));
        fds.push_back(pollfd{c->fd(), events, 0});
    }
    const int ready = ::poll(fds.data(), fds.size(), timeoutMs);
    if (ready > 0) {
        // Connections accepted now are polled from the next round on.
        const size_t polled = d.connections.size();
        for (size_t i = 0; i < polled; ++i) {
            Connection& c = *d.connections[i];
            const short revents = fds[i + 1].revents;
            if (revents & POLLOUT) {
                c.flush();
            }
            if (revents & (POLLIN | POLLHUP | POLLERR)) {
                const bool open = c.read();
                std::string raw;
                try {
                    while (!c.closed() && c.parser().readFixMessage(raw)) {
                        d.handle(c, raw);
                    }
                } catch (const std::exception&) {
                    c.disconnect(); // not FIX framing: garbage on the wire
                }
                if (!open) {
                    c.disconnect();
                }
            }
        }
        if (fds[0].revents & POLLIN) {
            d.acceptAll();
        }
    }
    // Heartbeats, test requests and logon/logout timeouts run on the session's clock.
    const SteadyClock::time_point now = SteadyClock::now();
    if (now - d.lastTick >= std::chrono::milliseconds(200)) {
        d.lastTick = now;
        for (const std::unique_ptr<Connection>& c : d.connections) {
            if (c->session != nullptr && !c->closed()) {
                try {
                    c->session->next();
                } catch (const std::exception&) {
                    c->disconnect();
                }
            }
        }
    }
    for (size_t i = 0; i < d.connections.size();) {
        if (d.connections[i]->closed()) {
            d.closeConnection(*d.connections[i]);
            d.connections.erase(d.connections.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
}

bool FixAcceptor::send(int session, FixMessage& message) {
    Impl& d = *m_impl;
    if (session < 0 || static_cast<size_t>(session) >= d.sessions.size()) {
        return false;
    }
    try {
        FIX::Session* s = d.sessions[static_cast<size_t>(session)];
        FIX::Message m = ToQuickFix(message, s->getSessionID().getBeginString());
        if (!s->send(m)) {
            return false;
        }
        FIX::MsgSeqNum seq;
        if (m.getHeader().getFieldIfSet(seq)) {
            message.msgSeqNum = seq.getValue();
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool FixAcceptor::isLoggedOn(int session) const {
    const Impl& d = *m_impl;
    if (session < 0 || static_cast<size_t>(session) >= d.sessions.size()) {
        return false;
    }
    return d.sessions[static_cast<size_t>(session)]->isLoggedOn();
}

std::vector<FixMessage> FixAcceptor::sentMessages(int session) const {
    const Impl& d = *m_impl;
    std::vector<FixMessage> out;
    if (session < 0 || static_cast<size_t>(session) >= d.sessions.size()) {
        return out;
    }
    FIX::Session* s = d.sessions[static_cast<size_t>(session)];
    const FIX::DataDictionaryProvider provider =
        MarketDataDictionaries(s->getSessionID().getBeginString());
    const FIX::DataDictionary& dd =
        provider.getSessionDataDictionary(s->getSessionID().getBeginString());
    std::vector<std::string> raw;
    try {
        const FIX::MessageStore* store = s->getStore();
        const int last = store->getNextSenderMsgSeqNum() - 1;
        if (last >= 1) {
            store->get(1, last, raw);
        }
    } catch (const std::exception&) {
        return out;
    }
    for (const std::string& r : raw) {
        try {
            FIX::Message m(r, dd, false);
            if (m.isApp()) {
                out.push_back(FromQuickFix(m));
            }
        } catch (const std::exception&) {
        }
    }
    return out;
}

void FixAcceptor::dropConnections() {
    for (const std::unique_ptr<Connection>& c : m_impl->connections) {
        c->disconnect();
    }
}

} // namespace wicker
