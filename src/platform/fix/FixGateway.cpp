#include "platform/fix/FixGateway.h"

#include "common/Text.h"

#include <variant>

namespace wicker {
namespace {

FixSessionConfig SessionConfig(const FixPlatformSettings& s, const std::filesystem::path& folder) {
    FixSessionConfig c;
    c.beginString = BeginStringOf(s.version);
    c.senderCompID = s.senderCompID;
    c.targetCompID = s.targetCompID;
    c.host = s.host;
    c.port = s.port;
    c.heartBtInt = s.heartBtInt;
    c.reconnectInterval = s.reconnectInterval;
    c.resetOnLogon = s.resetOnLogon;
    c.storePath = (folder / "store").string();
    c.logPath = (folder / "log").string();
    if (!s.settingsFile.empty()) {
        const std::filesystem::path file(s.settingsFile);
        c.settingsFile = (file.is_absolute() ? file : folder.parent_path() / file).string();
    }
    return c;
}

bool IsOrderFlow(const std::string& msgType) {
    return msgType == "D" || msgType == "F" || msgType == "G";
}

} // namespace

FixGateway::FixGateway(FixPlatformSettings settings, std::filesystem::path folder,
                       const Clock& clock, FixGatewayEvents& events)
    : m_settings(std::move(settings)), m_folder(std::move(folder)), m_clock(clock),
      m_events(events), m_book(m_settings.memoTag),
      m_window(static_cast<size_t>(m_settings.sendWindow)) {
    m_profile.version = m_settings.version;
    m_profile.handlInst = m_settings.handlInst;
    m_profile.memoTag = m_settings.memoTag;
    m_profile.tif = m_settings.tifProfile;
}

FixGateway::~FixGateway() {
    stop();
}

Result<void> FixGateway::start() {
    const std::filesystem::path journalFile = m_folder / "memos.txt";
    for (const auto& [clOrdID, memo] : MemoJournal::Read(journalFile)) {
        m_book.restoreMemo(clOrdID, memo);
    }
    Result<MemoJournal> journal = MemoJournal::Open(journalFile);
    if (!journal) {
        return journal.error();
    }
    m_journal.emplace(std::move(journal.value()));
    std::error_code ec;
    std::filesystem::create_directories(m_folder / "store", ec);
    std::filesystem::create_directories(m_folder / "log", ec);
    FixSessionListener& listener = *this;
    m_engine = std::make_unique<FixInitiator>(SessionConfig(m_settings, m_folder), listener);
    try {
        m_engine->start();
    } catch (const FixEngineError& e) {
        m_engine.reset();
        return Error{std::string("The FIX session cannot start: ") + e.what()};
    }
    m_sender = std::thread([this] { sendLoop(); });
    return {};
}

void FixGateway::stop() {
    if (m_sender.joinable()) {
        {
            std::lock_guard lock(m_sendMutex);
            m_stopping = true;
        }
        m_sendWake.notify_one();
        m_sender.join();
    }
    if (m_engine) {
        m_engine->stop();
    }
}

bool FixGateway::isLoggedOn() const {
    return m_engine && m_engine->isLoggedOn();
}

void FixGateway::setPreTradeCheck(std::function<int32_t(const OrderTicket&)> check) {
    m_preTradeCheck = std::move(check);
}

int32_t FixGateway::SubmitOrder(const OrderTicket& ticket) {
    NewOrderSingleOrRefusal built = BuildNewOrderSingle(ticket, m_profile, m_clock);
    if (built.refusal != 0) {
        return built.refusal;
    }
    if (m_preTradeCheck) {
        if (const int32_t refusal = m_preTradeCheck(ticket); refusal < 0) {
            return refusal;
        }
    }
    if (!isLoggedOn()) {
        return OfflineRejectReason;
    }
    FixOrderState order;
    order.clOrdID = ticket.clOrderID;
    order.account = ticket.account;
    order.side = ticket.side;
    order.symbol = ticket.symbol;
    order.destination = ticket.destination;
    order.tif = ticket.tif;
    order.memo = ticket.memo;
    order.priceType = ticket.priceType;
    order.lmtPrice = ticket.lmtPrice;
    order.maxFloor = ticket.maxFloor;
    order.quantity = ticket.quantity;
    const int32_t recordId = m_book.addOrder(order);
    bool wake = false;
    {
        std::lock_guard lock(m_sendMutex);
        if (m_journal) {
            m_journal->append(ticket.clOrderID, ticket.memo);
            m_journalDirty = true;
        }
        m_window.push(std::move(built.message));
        wake = m_window.ready();
    }
    if (wake) {
        m_sendWake.notify_one();
    }
    return recordId;
}

int32_t FixGateway::CancelOrder(const std::string& clOrdID, int32_t orderRecordId) {
    std::optional<FixOrderState> order = m_book.find(orderRecordId);
    if (!order || (!clOrdID.empty() && order->clOrdID != clOrdID)) {
        order = m_book.findByClOrdID(clOrdID);
    }
    if (!order) {
        return -4;
    }
    if (!isLoggedOn()) {
        return OfflineRejectReason;
    }
    std::string cancelID;
    {
        std::lock_guard lock(m_sendMutex);
        cancelID = order->clOrdID + "-C" + std::to_string(++m_cancelCount);
    }
    std::optional<FixMessage> request = BuildCancelRequest(
        cancelID, order->currentClOrdID.empty() ? order->clOrdID : order->currentClOrdID,
        order->orderID, order->side, order->symbol, order->quantity, m_clock);
    if (!request) {
        return -2;
    }
    m_book.addCancel(order->recordId, cancelID);
    enqueue(std::move(*request));
    drain();
    return 0;
}

int32_t FixGateway::ReplaceOrder(const std::string& clOrdID, int32_t orderRecordId,
                                 const QVXOrderChange& change) {
    std::optional<FixOrderState> order = m_book.find(orderRecordId);
    if (!order || (!clOrdID.empty() && order->clOrdID != clOrdID)) {
        // The screen may still know the order by an id it had before a replace.
        order = m_book.findByClOrdID(clOrdID);
    }
    const auto done = [](const std::string& s) {
        return s == "2" || s == "3" || s == "4" || s == "8" || s == "C";
    };
    if (!order || order->leaves <= 0 || done(order->ordStatus) || !order->pendingReplace.empty()) {
        return kReplaceOrderNotOpen;
    }
    if (change.quantity <= order->cum) {
        return -3;
    }
    std::string newID = change.newClOrderID;
    if (newID.empty()) {
        std::lock_guard lock(m_sendMutex);
        newID = order->clOrdID + "-R" + std::to_string(++m_replaceCount);
    }
    OrderTicket t;
    t.account = order->account;
    t.side = order->side;
    t.symbol = order->symbol;
    t.quantity = change.quantity;
    t.lmtPrice = change.lmtPrice;
    t.priceType = change.priceType;
    t.clOrderID = newID;
    t.tif = order->tif;
    t.destination = order->destination;
    t.maxFloor = order->maxFloor;
    t.memo = order->memo;
    NewOrderSingleOrRefusal built = BuildReplaceRequest(
        t, order->currentClOrdID.empty() ? order->clOrdID : order->currentClOrdID, order->orderID,
        m_profile, m_clock);
    if (built.refusal != 0) {
        return built.refusal;
    }
    if (m_preTradeCheck) {
        if (const int32_t refusal = m_preTradeCheck(t); refusal < 0) {
            return refusal;
        }
    }
    if (!isLoggedOn()) {
        return OfflineRejectReason;
    }
    if (!m_book.addReplace(order->recordId, newID, {t.quantity, t.priceType, t.lmtPrice})) {
        return kReplaceOrderNotOpen; // another replace got there first, or the id is taken
    }
    bool wake = false;
    {
        std::lock_guard lock(m_sendMutex);
        if (m_journal) {
            m_journal->append(newID, t.memo);
            m_journalDirty = true;
        }
        m_window.push(std::move(built.message));
        wake = m_window.ready();
    }
    if (wake) {
        m_sendWake.notify_one();
    }
    return 0;
}

int32_t FixGateway::adoptOrder(const FixOrderState& known) {
    return m_book.adoptOrder(known);
}

void FixGateway::RegisterSymbol(const std::string& symbol) {
    if (m_settings.quotes != FixQuoteSource::Fix || symbol.empty()) {
        return;
    }
    {
        std::lock_guard lock(m_symbolMutex);
        if (!m_symbols.insert(symbol).second || !m_subscribing) {
            return; // known already, or asked for with all the others at the next logon
        }
        enqueue(MarketDataRequest(symbol, true));
    }
    drain();
}

void FixGateway::DeregisterSymbol(const std::string& symbol) {
    {
        std::lock_guard lock(m_symbolMutex);
        if (m_symbols.erase(symbol) == 0 || !m_subscribing) {
            return;
        }
        enqueue(MarketDataRequest(symbol, false));
    }
    drain();
}

void FixGateway::enqueue(FixMessage message) {
    std::lock_guard lock(m_sendMutex);
    m_window.push(std::move(message));
}

void FixGateway::drain() {
    // A sender woken while the window is full would only go back to sleep: a burst of
    // thousands of orders must not cost a context switch each.
    bool ready = false;
    {
        std::lock_guard lock(m_sendMutex);
        ready = m_window.ready();
    }
    if (ready) {
        m_sendWake.notify_one();
    }
}

void FixGateway::sendLoop() {
    std::unique_lock lock(m_sendMutex);
    for (;;) {
        m_sendWake.wait(lock, [&] { return m_stopping || m_window.ready(); });
        if (m_stopping) {
            return;
        }
        std::vector<FixMessage> batch;
        while (std::optional<FixMessage> next = m_window.next()) {
            batch.push_back(std::move(*next));
        }
        // The memos of these orders reach the journal before the orders leave.
        if (m_journalDirty && m_journal) {
            m_journalDirty = false;
            if (!m_journal->flush()) {
                m_events.onSessionStatus(isLoggedOn(),
                                         "The order memo journal cannot be written: orders sent "
                                         "now will not be recognised after a restart.");
            }
        }
        lock.unlock();
        for (FixMessage& m : batch) {
            sendOne(m);
        }
        lock.lock();
    }
}

void FixGateway::sendOne(FixMessage& message) {
    if (m_engine && m_engine->send(message) > 0) {
        return;
    }
    // The session went down under our feet: nothing was sent or numbered.
    const std::string* id = message.find(11);
    if (id == nullptr) {
        id = message.find(262);
    }
    if (id != nullptr) {
        answered({*id});
        if (IsOrderFlow(message.msgType)) {
            publish(m_book.notSent(*id));
        }
    }
}

void FixGateway::answered(const std::vector<std::string>& ids) {
    if (ids.empty()) {
        return;
    }
    bool wake = false;
    {
        std::lock_guard lock(m_sendMutex);
        for (const std::string& id : ids) {
            m_window.answered(id);
        }
        // Answers free the window one slot at a time; the sender is woken for a batch.
        wake = m_window.batchReady();
    }
    if (wake) {
        m_sendWake.notify_one();
    }
}

void FixGateway::publish(const FixBookOutcome& outcome) {
    for (const FixBookEvent& e : outcome.events) {
        if (const FixOrderState* order = std::get_if<FixOrderState>(&e)) {
            m_events.onOrderUpdate(*order);
        } else {
            m_events.onOrderReject(std::get<FixOrderReject>(e));
        }
    }
}

void FixGateway::onLogon() {
    m_events.onSessionStatus(true, "FIX session " + m_engine->sessionName() + " logged on.");
    {
        // Subscriptions live as long as the connection: all of them again, once.
        std::lock_guard lock(m_symbolMutex);
        m_subscribing = true;
        for (const std::string& s : m_symbols) {
            enqueue(MarketDataRequest(s, true));
        }
    }
    drain();
}

void FixGateway::onLogout() {
    {
        std::lock_guard lock(m_symbolMutex);
        m_subscribing = false;
    }
    std::vector<FixMessage> dropped;
    {
        std::lock_guard lock(m_sendMutex);
        dropped = m_window.reset();
    }
    // Orders still waiting for the window never left: they are refused, not sent late.
    for (const FixMessage& m : dropped) {
        if (const std::string* id = m.find(11); id != nullptr && IsOrderFlow(m.msgType)) {
            publish(m_book.notSent(*id));
        }
    }
    m_events.onSessionStatus(false, "FIX session " + (m_engine ? m_engine->sessionName() : "") +
                                        " disconnected.");
}

void FixGateway::onMessage(const FixMessage& message) {
    const std::string& type = message.msgType;
    if (type == "8" || type == "9" || type == "3" || type == "j") {
        const FixBookOutcome outcome = m_book.apply(message);
        if (!outcome.answered.empty()) {
            answered(outcome.answered);
        }
        publish(outcome);
        return;
    }
    if (type == "W" || type == "X" || type == "Y") {
        if (type != "X") {
            if (const std::string* req = message.find(262)) {
                answered({*req});
            }
        }
        for (const FixQuoteFields& q : ParseMarketData(message)) {
            m_events.onQuote(q);
        }
    }
}

void FixGateway::onSending(const std::string& msgType, int msgSeqNum, const std::string& clOrdID) {
    if (IsOrderFlow(msgType)) {
        m_book.noteSent(msgSeqNum, clOrdID);
    }
}

void FixGateway::onStaleNotResent(const std::string& msgType, int, const std::string& clOrdID) {
    if (IsOrderFlow(msgType)) {
        publish(m_book.notSent(clOrdID));
    }
}

} // namespace wicker
