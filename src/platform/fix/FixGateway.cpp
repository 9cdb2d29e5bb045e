#include "platform/fix/FixGateway.h"

#include "common/Text.h"
#include "platform/fix/FixNumbers.h"

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
    c.marketData = s.quotes == FixQuoteSource::Fix;
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

// Market data requests waiting for their first answer at once, and how long one may wait
// before its slot is given up.
constexpr size_t QuoteRequestsInFlight = 50;
constexpr std::chrono::seconds QuoteRequestTimeout{10};
// A send window full for this long is news for the trader.
constexpr std::chrono::seconds StallWarningAfter{5};
// How long a stop waits for orders and cancels still queued behind the window.
constexpr std::chrono::seconds FlushBeforeStop{10};
// How often the sender looks at the clock while nothing happens.
constexpr std::chrono::milliseconds SenderTick{500};
// MDReqRejReason(281) 0: the one symbol is unknown; the others refuse the whole feed.
constexpr const char* UnknownSymbolRefusal = "0";

} // namespace

FixGateway::FixGateway(FixPlatformSettings settings, std::filesystem::path folder,
                       const Clock& clock, FixGatewayEvents& events)
    : m_settings(std::move(settings)), m_folder(std::move(folder)), m_clock(clock),
      m_events(events), m_book(m_settings.memoTag),
      m_window(static_cast<size_t>(m_settings.sendWindow)),
      m_pacer(QuoteRequestsInFlight, QuoteRequestTimeout) {
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
            // What the trader handed over last (the cancels of "cancel all and exit")
            // still goes out while the session is up, as fast as the window lets it.
            std::unique_lock lock(m_sendMutex);
            m_allSent.wait_for(lock, FlushBeforeStop,
                               [&] { return !m_online || m_window.waiting() == 0; });
            m_stopping = true;
        }
        m_sendWake.notify_one();
        m_sender.join();
        std::vector<FixMessage> dropped;
        {
            std::lock_guard lock(m_sendMutex);
            m_online = false;
            dropped = m_window.reset();
        }
        refuseUnsent(dropped);
    }
    if (m_engine) {
        m_engine->stop();
    }
}

bool FixGateway::isLoggedOn() const {
    return m_engine && m_engine->isLoggedOn();
}

std::string FixGateway::downReason() const {
    std::lock_guard lock(m_causeMutex);
    return m_cause;
}

void FixGateway::onSessionEvent(const std::string& text) {
    const auto has = [&](const char* s) { return text.find(s) != std::string::npos; };
    std::string cause;
    if (has("Connection failed")) {
        cause = "the connection to " + m_settings.host + ":" + std::to_string(m_settings.port) +
                " failed (nothing listens there, or it refuses us)";
    } else if (has("MsgSeqNum too low")) {
        cause = text.substr(text.find("MsgSeqNum too low")) +
                "; the counterparty started its sequence numbers again: set FixResetOnLogon=1 "
                "in basket.ini section \"Platform\" (or reset the session with the broker)";
    } else if (const size_t at = text.find(" Rejected: "); at != std::string::npos) {
        cause = "a message of the counterparty was refused (" + text.substr(at + 11) + ")";
    } else if (text.rfind("Logout", 0) == 0 || text.rfind("Timed out", 0) == 0) {
        cause = text;
    } else {
        return;
    }
    {
        std::lock_guard lock(m_causeMutex);
        // The first cause explains what follows it (our logout, its timeout) until the
        // disconnect is reported.
        if (!m_causeHeld) {
            m_cause = cause;
            m_causeHeld = !has("Connection failed");
        }
    }
    if (has("Connection failed")) {
        // Every attempt is told: they come seconds to a minute apart.
        m_events.onSessionStatus(false, "FIX session " + m_engine->sessionName() +
                                            " not connected: " + cause + nextAttempt() + ".");
    }
}

std::string FixGateway::nextAttempt() const {
    const int seconds = m_engine ? m_engine->secondsToNextAttempt() : 0;
    return seconds > 0 ? "; next attempt in " + std::to_string(seconds) + " s" : "";
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
    const int32_t recordId = m_book.addOrder(ticket);
    bool wake = false;
    {
        std::unique_lock lock(m_sendMutex);
        if (!m_online) {
            // The session dropped since the check above: refused where the trader sees it,
            // never left waiting for a later logon.
            lock.unlock();
            m_book.notSent(ticket.clOrderID, *this);
            return recordId;
        }
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
    const int32_t recordId = m_book.adoptOrder(known);
    if (recordId <= 0) {
        return recordId;
    }
    bool wake = false;
    {
        std::lock_guard lock(m_sendMutex);
        if (m_online) {
            askStatus({*m_book.find(recordId)});
            wake = true;
        }
    }
    if (wake) {
        m_sendWake.notify_one();
    }
    return recordId;
}

void FixGateway::askStatus(const std::vector<FixOrderState>& orders) {
    for (const FixOrderState& o : orders) {
        if (std::optional<FixMessage> request =
                BuildOrderStatusRequest(o.clOrdID, o.orderID, o.side, o.symbol)) {
            m_statusRequests.push_back(std::move(*request));
        }
    }
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
        enqueueQuoteRequest(MarketDataRequest(symbol, true));
    }
    drain();
}

void FixGateway::DeregisterSymbol(const std::string& symbol) {
    {
        std::lock_guard lock(m_symbolMutex);
        if (m_symbols.erase(symbol) == 0 || !m_subscribing || m_quotesRefused) {
            return;
        }
        FixMessage request = MarketDataRequest(symbol, false);
        std::lock_guard quoteLock(m_quoteMutex);
        if (m_pacer.withdraw(*request.find(262))) {
            return; // never asked for: nothing to end
        }
        m_pacer.push(std::move(request));
    }
    drain();
}

void FixGateway::enqueue(FixMessage message) {
    std::lock_guard lock(m_sendMutex);
    m_window.push(std::move(message));
}

void FixGateway::enqueueQuoteRequest(FixMessage request) {
    if (m_quotesRefused) {
        return; // asked once this session and refused: no retry storm
    }
    std::lock_guard lock(m_quoteMutex);
    m_pacer.push(std::move(request));
}

bool FixGateway::sendable() const {
    if (m_window.ready() || !m_statusRequests.empty()) {
        return true;
    }
    std::lock_guard lock(m_quoteMutex);
    return m_pacer.ready(std::chrono::steady_clock::now());
}

void FixGateway::drain() {
    // A sender woken while the window is full would only go back to sleep: a burst of
    // thousands of orders must not cost a context switch each.
    bool ready = false;
    {
        std::lock_guard lock(m_sendMutex);
        ready = sendable();
    }
    if (ready) {
        m_sendWake.notify_one();
    }
}

std::optional<std::string> FixGateway::checkStall(std::chrono::steady_clock::time_point now) {
    const bool full = m_window.waiting() > 0 && m_window.outstanding() >= m_window.limit();
    // A window kept full by a slow broker that still answers is flow control, not a stall.
    const bool moved = m_window.answers() != m_answersSeen;
    m_answersSeen = m_window.answers();
    if (!full || moved) {
        m_fullSince = full ? std::optional(now) : std::nullopt;
        if (m_stallReported) {
            m_stallReported = false;
            return "Orders are going out again.";
        }
        return std::nullopt;
    }
    if (!m_fullSince) {
        m_fullSince = now;
    }
    if (m_stallReported || now - *m_fullSince < StallWarningAfter) {
        return std::nullopt;
    }
    m_stallReported = true;
    const size_t waiting = m_window.waiting();
    return std::to_string(waiting) + (waiting == 1 ? " order is" : " orders are") +
           " waiting to be sent: the broker has answered none of the last " +
           std::to_string(m_window.outstanding()) + " orders sent for " +
           std::to_string(StallWarningAfter.count()) + " seconds (FixSendWindow).";
}

void FixGateway::sendLoop() {
    std::unique_lock lock(m_sendMutex);
    for (;;) {
        m_sendWake.wait_for(lock, SenderTick, [&] { return m_stopping || sendable(); });
        if (m_stopping) {
            return;
        }
        const auto now = std::chrono::steady_clock::now();
        std::vector<FixMessage> batch = std::move(m_statusRequests);
        m_statusRequests.clear();
        while (std::optional<FixMessage> next = m_window.next()) {
            batch.push_back(std::move(*next));
        }
        {
            std::lock_guard quoteLock(m_quoteMutex);
            while (std::optional<FixMessage> next = m_pacer.next(now)) {
                batch.push_back(std::move(*next));
            }
        }
        if (std::optional<std::string> stall = checkStall(now)) {
            m_events.onSessionStatus(isLoggedOn(), *stall);
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
        m_allSent.notify_all();
    }
}

void FixGateway::sendOne(FixMessage& message) {
    if (m_engine && m_engine->send(message) > 0) {
        return;
    }
    // The session went down under our feet: nothing was sent or numbered.
    if (const std::string* id = message.find(11); id != nullptr && IsOrderFlow(message.msgType)) {
        answered({*id});
        m_book.notSent(*id, *this);
    } else if (const std::string* req = message.find(262)) {
        std::lock_guard lock(m_quoteMutex);
        m_pacer.answered(*req);
    }
}

void FixGateway::refuseUnsent(const std::vector<FixMessage>& dropped) {
    for (const FixMessage& m : dropped) {
        if (const std::string* id = m.find(11); id != nullptr && IsOrderFlow(m.msgType)) {
            m_book.notSent(*id, *this);
        }
    }
}

void FixGateway::quotesRefused(const std::string& mdReqID, const FixFieldReader& refusal) {
    const std::string* reason = refusal.find(281);
    const std::string* text = refusal.find(58);
    const std::string why = text != nullptr && !text->empty() ? " (" + *text + ")" : "";
    if (refusal.msgType() == "Y" && reason != nullptr && *reason == UnknownSymbolRefusal) {
        const std::string symbol = mdReqID.rfind("Q-", 0) == 0 ? mdReqID.substr(2) : mdReqID;
        m_events.onSessionStatus(isLoggedOn(), "No quotes for " + symbol + why + ".");
        return;
    }
    {
        std::lock_guard lock(m_symbolMutex);
        if (m_quotesRefused) {
            return;
        }
        m_quotesRefused = true;
        std::lock_guard quoteLock(m_quoteMutex);
        m_pacer.reset();
    }
    m_events.onSessionStatus(isLoggedOn(),
                             "Quotes unavailable: the counterparty refuses market data" + why +
                                 "; orders still go out.");
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

void FixGateway::onUpdate(const FixOrderState& order) {
    try {
        m_events.onOrderUpdate(order);
    } catch (...) {
    }
}

void FixGateway::onReject(const FixOrderReject& reject) {
    try {
        m_events.onOrderReject(reject);
    } catch (...) {
    }
}

void FixGateway::onWarning(const FixOrderWarning& warning) {
    try {
        m_events.onOrderWarning(warning);
    } catch (...) {
    }
}

void FixGateway::onLogon() {
    {
        // Orders that may have changed while the session was down, or that never got an
        // answer, are asked about before anything else goes out.
        std::lock_guard lock(m_sendMutex);
        m_online = true;
        askStatus(m_book.askStatusOfOpenOrders());
    }
    {
        std::lock_guard lock(m_causeMutex);
        m_cause.clear();
        m_causeHeld = false;
    }
    m_events.onSessionStatus(true, "FIX session " + m_engine->sessionName() + " logged on.");
    {
        // Subscriptions live as long as the connection: all of them again, once.
        std::lock_guard lock(m_symbolMutex);
        m_subscribing = true;
        m_quotesRefused = false;
        for (const std::string& s : m_symbols) {
            enqueueQuoteRequest(MarketDataRequest(s, true));
        }
    }
    drain();
}

void FixGateway::onLogout() {
    {
        std::lock_guard lock(m_symbolMutex);
        m_subscribing = false;
    }
    {
        std::lock_guard lock(m_quoteMutex);
        m_pacer.reset();
    }
    std::vector<FixMessage> dropped;
    {
        std::lock_guard lock(m_sendMutex);
        m_online = false;
        dropped = m_window.reset();
        m_fullSince.reset();
        m_stallReported = false;
        m_allSent.notify_all();
    }
    // Orders still waiting for the window never left: they are refused, not sent late.
    refuseUnsent(dropped);
    std::string cause;
    {
        std::lock_guard lock(m_causeMutex);
        cause = m_cause;
        m_causeHeld = false; // reported: the next attempt may have a cause of its own
    }
    m_events.onSessionStatus(false, "FIX session " + (m_engine ? m_engine->sessionName() : "") +
                                        " disconnected" + (cause.empty() ? "" : ": " + cause) +
                                        nextAttempt() + ".");
}

void FixGateway::onMessage(const FixMessage& message) {
    onReceived(FixMessageReader(message));
}

void FixGateway::onReceived(const FixFieldReader& message) {
    // Every message type this handles is one character long.
    const std::string& msgType = message.msgType();
    const char type = msgType.size() == 1 ? msgType[0] : '\0';
    if (type == '3') {
        // A session Reject of a market data request ends its slot and, like 35=Y, says
        // this counterparty gives no quotes.
        std::optional<std::string> mdReqID;
        if (const std::string* ref = message.find(45)) {
            if (const std::optional<int32_t> seq = ParseFixInt(*ref)) {
                std::lock_guard lock(m_quoteMutex);
                mdReqID = m_pacer.bySeqNum(*seq);
                if (mdReqID) {
                    m_pacer.answered(*mdReqID);
                }
            }
        }
        if (mdReqID) {
            quotesRefused(*mdReqID, message);
            return;
        }
    }
    if (type == '8' || type == '9' || type == '3' || type == 'j') {
        answered(m_book.apply(message, *this));
        return;
    }
    if (type == 'W' || type == 'X' || type == 'Y') {
        if (type != 'X') {
            if (const std::string* req = message.find(262)) {
                {
                    std::lock_guard lock(m_quoteMutex);
                    m_pacer.answered(*req);
                }
                drain();
                if (type == 'Y') {
                    quotesRefused(*req, message);
                    return;
                }
            }
        }
        for (const FixQuoteFields& q : ParseMarketData(message.copy())) {
            m_events.onQuote(q);
        }
    }
}

void FixGateway::onSending(const std::string& msgType, int msgSeqNum, const std::string& clOrdID) {
    if (IsOrderFlow(msgType)) {
        m_book.noteSent(msgSeqNum, clOrdID);
    } else if (msgType == "V") {
        std::lock_guard lock(m_quoteMutex);
        m_pacer.sent(clOrdID, msgSeqNum);
    }
}

void FixGateway::onStaleNotResent(const std::string& msgType, int, const std::string& clOrdID) {
    if (IsOrderFlow(msgType)) {
        m_book.notSent(clOrdID, *this, FixOrderBook::kLostNotResent);
    } else if (msgType == "H") {
        // A gap-filled status request is never answered: its order is asked about again.
        if (std::optional<FixOrderState> order = m_book.findByClOrdID(clOrdID)) {
            {
                std::lock_guard lock(m_sendMutex);
                if (!m_online) {
                    return; // the next logon asks about every open order
                }
                askStatus({*order});
            }
            m_sendWake.notify_one();
        }
    } else if (msgType == "V") {
        std::lock_guard lock(m_quoteMutex); // gap-filled: its answer will never come
        m_pacer.answered(clOrdID);
    }
}

} // namespace wicker
