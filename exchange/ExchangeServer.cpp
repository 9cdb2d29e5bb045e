#include "exchange/ExchangeServer.h"

#include "platform/fix/FixNumbers.h"
#include "platform/fix/NewOrderSingle.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>

namespace wicker {
namespace {

constexpr int SessionFix42 = 0;
constexpr int SessionFix44 = 1;

std::string ValueOf(const FixMessage& m, int tag) {
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : std::string();
}

// What changed between two pictures of a symbol, as an increment.
FixQuoteFields Changes(const FixQuoteFields& before, const FixQuoteFields& now) {
    FixQuoteFields d;
    d.symbol = now.symbol;
    d.snapshot = false;
    const auto take = [](const auto& b, const auto& n, auto& into) {
        if (n && n != b) {
            into = n;
        }
    };
    take(before.bid, now.bid, d.bid);
    take(before.bidSize, now.bidSize, d.bidSize);
    take(before.ask, now.ask, d.ask);
    take(before.askSize, now.askSize, d.askSize);
    take(before.last, now.last, d.last);
    take(before.lastSize, now.lastSize, d.lastSize);
    take(before.open, now.open, d.open);
    take(before.close, now.close, d.close);
    take(before.high, now.high, d.high);
    take(before.low, now.low, d.low);
    take(before.vwap, now.vwap, d.vwap);
    take(before.volume, now.volume, d.volume);
    return d;
}

// What the venue reports while a replace is being answered: it reaches the client after
// the replace's own report.
class HeldSink : public ExchangeVenue::Sink {
public:
    struct Event {
        int64_t key;
        int32_t shares;
        double price;
        bool expired;
    };
    void onFill(int64_t key, int32_t shares, double price) override {
        events.push_back({key, shares, price, false});
    }
    void onExpired(int64_t key) override { events.push_back({key, 0, 0, true}); }
    std::vector<Event> events;
};

bool Empty(const FixQuoteFields& q) {
    return !q.bid && !q.bidSize && !q.ask && !q.askSize && !q.last && !q.lastSize && !q.open &&
           !q.close && !q.high && !q.low && !q.vwap && !q.volume;
}

} // namespace

ExchangeServer::ExchangeServer(ExchangeOptions options, ExchangeVenue& venue)
    : m_options(std::move(options)), m_venue(venue) {
    const auto epoch = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::system_clock::now().time_since_epoch());
    m_runID = std::to_string(epoch.count());
    std::vector<FixSessionConfig> sessions;
    for (const char* version : {"FIX.4.2", "FIX.4.4"}) {
        FixSessionConfig c;
        c.beginString = version;
        c.senderCompID = m_options.senderCompID;
        c.targetCompID = m_options.targetCompID;
        if (!m_options.dataDir.empty()) {
            c.storePath = (std::filesystem::path(m_options.dataDir) / "store").string();
            c.logPath = (std::filesystem::path(m_options.dataDir) / "log").string();
        }
        sessions.push_back(c);
    }
    FixAcceptorListener& listener = *this;
    m_acceptor = std::make_unique<FixAcceptor>(std::move(sessions), listener);
}

ExchangeServer::~ExchangeServer() = default;

Result<void> ExchangeServer::start() {
    if (!m_options.dataDir.empty()) {
        std::error_code ec;
        std::filesystem::create_directories(std::filesystem::path(m_options.dataDir) / "store", ec);
        std::filesystem::create_directories(std::filesystem::path(m_options.dataDir) / "log", ec);
    }
    if (!m_options.journalFile.empty()) {
        m_journal.emplace(m_options.journalFile, std::ios::binary | std::ios::app);
        if (!*m_journal) {
            return Error{"Cannot open the order journal " + m_options.journalFile + "."};
        }
    }
    try {
        m_acceptor->start(m_options.bindAddress, m_options.port);
    } catch (const FixEngineError& e) {
        return Error{e.what()};
    }
    rebuild(SessionFix42);
    rebuild(SessionFix44);
    if (!m_options.portFile.empty()) {
        // Written whole under another name first: a reader never sees half a number.
        const std::string temp = m_options.portFile + ".tmp";
        {
            std::ofstream out(temp, std::ios::trunc);
            out << m_acceptor->port() << "\n";
        }
        std::error_code ec;
        std::filesystem::rename(temp, m_options.portFile, ec);
        if (ec) {
            return Error{"Cannot write the port file " + m_options.portFile + "."};
        }
    }
    m_lastQuotes = std::chrono::steady_clock::now();
    return {};
}

int ExchangeServer::port() const {
    return m_acceptor->port();
}

void ExchangeServer::runOnce(int timeoutMs) {
    m_acceptor->poll(timeoutMs);
    ExchangeVenue::Sink& sink = *this;
    m_venue.advance(std::chrono::steady_clock::now(), sink);
    streamQuotes();
}

FixVersion ExchangeServer::versionOf(int session) const {
    return session == SessionFix44 ? FixVersion::Fix44 : FixVersion::Fix42;
}

std::string ExchangeServer::nextExecID() {
    return "E" + m_runID + "-" + std::to_string(++m_execCount);
}

std::string ExchangeServer::now() const {
    return FixTimestamp(std::chrono::system_clock::now());
}

void ExchangeServer::onLogon(int) {}

void ExchangeServer::onLogout(int session) {
    // Market data is per connection; orders stay in the market.
    std::erase_if(m_subscriptions, [&](const Subscription& s) { return s.session == session; });
}

void ExchangeServer::onMessage(int session, const FixMessage& m) {
    if (m.msgType == "D") {
        newOrder(session, m);
    } else if (m.msgType == "F") {
        cancelOrder(session, m);
    } else if (m.msgType == "G") {
        replaceOrder(session, m);
    } else if (m.msgType == "V") {
        marketData(session, m);
    } else if (m.msgType == "H") {
        orderStatus(session, m);
    } else {
        rejectMessage(session, m, 3, "Message type " + m.msgType + " is not supported here.");
    }
}

void ExchangeServer::journal(const FixMessage& m) {
    if (!m_journal) {
        return;
    }
    std::string line;
    for (const FixField& f : m.fields) {
        line += std::to_string(f.tag) + "=" + f.value + "|";
    }
    *m_journal << line << "\n";
    m_journal->flush();
}

void ExchangeServer::newOrder(int session, const FixMessage& m) {
    journal(m);
    const auto decoded = DecodeNewOrder(m, versionOf(session));
    const int64_t key = m_nextKey++;
    Entry entry;
    entry.session = session;
    entry.order.orderID = "O" + m_runID + "-" + std::to_string(key);
    if (const ExchangeRefusal* refusal = std::get_if<ExchangeRefusal>(&decoded)) {
        // Echo what can be read of an order that cannot be taken.
        ExchangeOrderRequest& r = entry.order.request;
        r.clOrdID = ValueOf(m, 11);
        r.symbol = ValueOf(m, 55);
        r.side = SideCodeOf(ValueOf(m, 54)).value_or(ValueOf(m, 54));
        r.quantity = ParseFixQuantity(ValueOf(m, 38)).value_or(0);
        r.account = ValueOf(m, 1);
        entry.order.ordStatus = "8";
        m_orders[key] = entry;
        report(key, ExecKind::Rejected, 0, 0, refusal->ordRejReason, refusal->text);
        m_orders.erase(key);
        return;
    }
    entry.order.request = std::get<ExchangeOrderRequest>(decoded);
    const ExchangeOrderRequest& r = entry.order.request;
    entry.order.leaves = r.quantity;
    const auto id = std::make_pair(session, r.clOrdID);
    if (m_byClOrdID.count(id) > 0) {
        entry.order.ordStatus = "8";
        entry.order.leaves = 0;
        m_orders[key] = entry;
        report(key, ExecKind::Rejected, 0, 0, OrdRejDuplicateOrder,
               "Duplicate ClOrdID " + r.clOrdID + ".");
        m_orders.erase(key);
        return;
    }
    if (std::find(m_options.halted.begin(), m_options.halted.end(), r.symbol) !=
        m_options.halted.end()) {
        entry.order.ordStatus = "8";
        entry.order.leaves = 0;
        m_orders[key] = entry;
        m_byClOrdID[id] = key;
        report(key, ExecKind::Rejected, 0, 0, OrdRejExchangeClosed, r.symbol + " is halted.");
        return;
    }
    m_orders[key] = entry;
    m_byClOrdID[id] = key;
    report(key, ExecKind::New);
    if (!m_options.restOnly) {
        ExchangeVenue::Sink& sink = *this;
        m_venue.accept(key, r, entry.order.leaves, sink);
    }
}

void ExchangeServer::cancelOrder(int session, const FixMessage& m) {
    const std::string clOrdID = ValueOf(m, 11);
    const std::string orig = ValueOf(m, 41);
    const auto it = m_byClOrdID.find({session, orig});
    if (clOrdID.empty() || it == m_byClOrdID.end()) {
        FixMessage reject = CancelRejectOf(clOrdID, orig, "", "8", 1, "Unknown order.");
        m_acceptor->send(session, reject);
        return;
    }
    Entry& e = m_orders.at(it->second);
    if (e.order.done() || !(m_options.restOnly || m_venue.cancel(it->second))) {
        FixMessage reject = CancelRejectOf(clOrdID, orig, e.order.orderID, e.order.ordStatus, 0,
                                           "Too late to cancel.");
        m_acceptor->send(session, reject);
        return;
    }
    e.order.clOrdID = clOrdID;
    e.order.leaves = 0;
    e.order.ordStatus = "4";
    m_byClOrdID[{session, clOrdID}] = it->second;
    report(it->second, ExecKind::Canceled);
}

void ExchangeServer::replaceOrder(int session, const FixMessage& m) {
    journal(m);
    const std::string clOrdID = ValueOf(m, 11);
    const std::string orig = ValueOf(m, 41);
    const auto refuse = [&](const ExchangeOrder* o, int reason, const std::string& text) {
        FixMessage reject =
            CancelRejectOf(clOrdID, orig, o != nullptr ? o->orderID : "",
                           o != nullptr ? o->ordStatus : "8", reason, text, CxlRejToReplace);
        m_acceptor->send(session, reject);
    };
    const auto it = m_byClOrdID.find({session, orig});
    if (clOrdID.empty() || it == m_byClOrdID.end()) {
        refuse(nullptr, CxlRejUnknownOrder, "Unknown order.");
        return;
    }
    const int64_t key = it->second;
    ExchangeOrder& o = m_orders.at(key).order;
    if (o.done()) {
        refuse(&o, CxlRejTooLate, "Too late to replace.");
        return;
    }
    if (m_byClOrdID.count({session, clOrdID}) > 0) {
        refuse(&o, CxlRejBrokerOption, "Duplicate ClOrdID " + clOrdID + ".");
        return;
    }
    const auto decoded = DecodeNewOrder(m, versionOf(session));
    if (const ExchangeRefusal* refusal = std::get_if<ExchangeRefusal>(&decoded)) {
        refuse(&o, CxlRejBrokerOption, refusal->text);
        return;
    }
    ExchangeOrderRequest r = std::get<ExchangeOrderRequest>(decoded);
    if (r.side != o.request.side || r.symbol != o.request.symbol || r.tif != o.request.tif) {
        refuse(&o, CxlRejBrokerOption, "Side, symbol and time in force cannot change.");
        return;
    }
    if (r.quantity <= o.cum) {
        refuse(&o, CxlRejBrokerOption,
               "OrderQty must stay above the filled quantity " + std::to_string(o.cum) + ".");
        return;
    }
    const int32_t leaves = r.quantity - o.cum;
    HeldSink held;
    if (!m_options.restOnly && !m_venue.replace(key, r, leaves, held)) {
        refuse(&o, CxlRejTooLate, "Too late to replace.");
        return;
    }
    // The report names the replaced id in OrigClOrdID; from then on the order is the new id.
    const std::string replaced = o.request.clOrdID;
    o.request = r;
    o.request.clOrdID = replaced;
    o.clOrdID = clOrdID;
    o.leaves = leaves;
    o.ordStatus = versionOf(session) == FixVersion::Fix42 ? "5" : (o.cum > 0 ? "1" : "0");
    m_byClOrdID[{session, clOrdID}] = key;
    report(key, ExecKind::Replaced);
    o.request.clOrdID = clOrdID;
    for (const HeldSink::Event& e : held.events) {
        if (e.expired) {
            onExpired(e.key);
        } else {
            onFill(e.key, e.shares, e.price);
        }
    }
}

void ExchangeServer::orderStatus(int session, const FixMessage& m) {
    const std::string clOrdID = ValueOf(m, 11);
    const auto it = m_byClOrdID.find({session, clOrdID});
    if (it == m_byClOrdID.end()) {
        FixMessage unknown = UnknownOrderStatusOf(clOrdID, ValueOf(m, 54), ValueOf(m, 55),
                                                  nextExecID(), versionOf(session), now());
        m_acceptor->send(session, unknown);
        return;
    }
    report(it->second, ExecKind::Status);
}

void ExchangeServer::marketData(int session, const FixMessage& m) {
    const std::optional<FixQuoteSubscription> request = ParseMarketDataRequest(m);
    if (!request) {
        FixMessage reject;
        reject.msgType = "Y";
        reject.add(262, ValueOf(m, 262));
        reject.add(281, "0");
        reject.add(58, "Unsupported market data request.");
        m_acceptor->send(session, reject);
        return;
    }
    for (const std::string& symbol : request->symbols) {
        std::erase_if(m_subscriptions, [&](const Subscription& s) {
            return s.session == session && s.symbol == symbol;
        });
        if (!request->subscribe) {
            continue;
        }
        Subscription s{session, request->mdReqID, symbol, m_venue.quote(symbol)};
        s.lastSent.symbol = symbol;
        s.lastSent.snapshot = true;
        FixMessage w = MarketDataMessage(s.lastSent, s.mdReqID);
        m_acceptor->send(session, w);
        m_subscriptions.push_back(std::move(s));
    }
}

void ExchangeServer::streamQuotes() {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastQuotes < std::chrono::milliseconds(m_options.quoteIntervalMs)) {
        return;
    }
    m_lastQuotes = now;
    for (Subscription& s : m_subscriptions) {
        FixQuoteFields q = m_venue.quote(s.symbol);
        const FixQuoteFields d = Changes(s.lastSent, q);
        if (Empty(d)) {
            continue;
        }
        FixMessage x = MarketDataMessage(d, s.mdReqID);
        m_acceptor->send(s.session, x);
        s.lastSent = q;
    }
}

void ExchangeServer::rejectMessage(int session, const FixMessage& m, int reason,
                                   const std::string& text) {
    FixMessage j;
    j.msgType = "j";
    j.add(45, std::to_string(m.msgSeqNum));
    j.add(58, text);
    j.add(372, m.msgType);
    j.add(380, std::to_string(reason));
    m_acceptor->send(session, j);
}

void ExchangeServer::report(int64_t key, ExecKind kind, int32_t lastShares, double lastPx,
                            int ordRejReason, const std::string& text) {
    const Entry& e = m_orders.at(key);
    FixMessage m = ExecutionReportOf(e.order, kind, nextExecID(), versionOf(e.session), now(),
                                     lastShares, lastPx, ordRejReason, text);
    // Sent (or stored for the client's resend request when it is not connected).
    m_acceptor->send(e.session, m);
}

void ExchangeServer::onFill(int64_t key, int32_t shares, double price) {
    const auto it = m_orders.find(key);
    if (it == m_orders.end() || shares <= 0 || it->second.order.done()) {
        return;
    }
    ExchangeOrder& o = it->second.order;
    shares = std::min(shares, o.leaves);
    o.avgPx = (o.avgPx * o.cum + price * shares) / (o.cum + shares);
    o.cum += shares;
    o.leaves -= shares;
    o.ordStatus = o.leaves == 0 ? "2" : "1";
    report(key, ExecKind::Fill, shares, price);
}

void ExchangeServer::onExpired(int64_t key) {
    const auto it = m_orders.find(key);
    if (it == m_orders.end() || it->second.order.done()) {
        return;
    }
    it->second.order.leaves = 0;
    it->second.order.ordStatus = "C";
    report(key, ExecKind::Expired);
}

void ExchangeServer::rebuild(int session) {
    // The last report of each order (by OrderID, which stays through replaces) tells its
    // state; open ones go back to the market. Every ClOrdID the order had still names it.
    struct Seen {
        FixMessage last;
        std::vector<std::string> ids;
    };
    std::map<std::string, Seen> orders;
    std::set<std::string> known;
    for (const FixMessage& m : m_acceptor->sentMessages(session)) {
        if (m.msgType != "8") {
            continue;
        }
        const std::string orderID = ValueOf(m, 37);
        const std::string id = ValueOf(m, 11);
        // A duplicate ClOrdID was refused without touching the order of that id.
        if (ValueOf(m, 150) == "8" && known.count(id) > 0 && orders.count(orderID) == 0) {
            continue;
        }
        Seen& seen = orders[orderID];
        seen.last = m;
        for (const int tag : {11, 41}) {
            if (const std::string* v = m.find(tag); v != nullptr && known.insert(*v).second) {
                seen.ids.push_back(*v);
            }
        }
    }
    for (const auto& [orderID, seen] : orders) {
        const FixMessage& m = seen.last;
        const auto decoded = DecodeNewOrder(m, versionOf(session));
        if (!std::holds_alternative<ExchangeOrderRequest>(decoded)) {
            continue;
        }
        // A cancel's report names the order in OrigClOrdID; any other names it in ClOrdID.
        const std::string* orig = m.find(41);
        const bool cancelReport = ValueOf(m, 150) != "5" && orig != nullptr;
        const int64_t key = m_nextKey++;
        Entry e;
        e.session = session;
        e.order.request = std::get<ExchangeOrderRequest>(decoded);
        e.order.request.clOrdID = cancelReport ? *orig : ValueOf(m, 11);
        e.order.clOrdID = ValueOf(m, 11);
        e.order.orderID = orderID;
        e.order.cum = ParseFixQuantity(ValueOf(m, 14)).value_or(0);
        e.order.leaves = ParseFixQuantity(ValueOf(m, 151)).value_or(0);
        e.order.avgPx = ParseFixDecimal(ValueOf(m, 6)).value_or(0);
        e.order.ordStatus = ValueOf(m, 39);
        m_orders[key] = e;
        for (const std::string& id : seen.ids) {
            m_byClOrdID[{session, id}] = key;
        }
        if (!e.order.done() && !m_options.restOnly) {
            ExchangeVenue::Sink& sink = *this;
            m_venue.accept(key, e.order.request, e.order.leaves, sink);
        }
    }
}

} // namespace wicker
