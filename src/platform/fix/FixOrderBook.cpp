#include "platform/fix/FixOrderBook.h"

#include "platform/OrderTicket.h"
#include "platform/fix/FixNumbers.h"
#include "platform/fix/FixOrderMapping.h"
#include "platform/fix/FixRejectReasons.h"

#include <algorithm>
#include <array>

namespace wicker {
namespace {

// Tags read from reports.
constexpr int TagAccount = 1;
constexpr int TagAvgPx = 6;
constexpr int TagClOrdID = 11;
constexpr int TagCumQty = 14;
constexpr int TagExecID = 17;
constexpr int TagLastPx = 31;
constexpr int TagLastShares = 32;
constexpr int TagOrderID = 37;
constexpr int TagOrderQty = 38;
constexpr int TagOrdStatus = 39;
constexpr int TagOrigClOrdID = 41;
constexpr int TagPrice = 44;
constexpr int TagRefSeqNum = 45;
constexpr int TagSide = 54;
constexpr int TagSymbol = 55;
constexpr int TagText = 58;
constexpr int TagTimeInForce = 59;
constexpr int TagTransactTime = 60;
constexpr int TagExecTransType = 20;
constexpr int TagExDestination = 100;
constexpr int TagCxlRejReason = 102;
constexpr int TagOrdRejReason = 103;
constexpr int TagExecType = 150;
constexpr int TagLeavesQty = 151;
constexpr int TagSessionRejectReason = 373;
constexpr int TagRefMsgType = 372;
constexpr int TagBusinessRejectRefID = 379;
constexpr int TagBusinessRejectReason = 380;

// An execution report's fields read in one go: the book asks for most of them more than once.
class ReportView final : public FixFieldReader {
public:
    explicit ReportView(const FixFieldReader& m) : m_message(m) {
        m.findAll(kTags.data(), kTags.size(), m_values.data());
    }
    const std::string& msgType() const override { return m_message.msgType(); }
    const std::string* find(int tag) const override {
        const int at = tag >= 0 && tag < kIndexSize ? kIndex[static_cast<size_t>(tag)] : -1;
        return at >= 0 ? m_values[static_cast<size_t>(at)] : m_message.find(tag);
    }
    FixMessage copy() const override { return m_message.copy(); }

private:
    static constexpr std::array<int, 22> kTags{
        TagAccount,       TagAvgPx,       TagClOrdID,      TagCumQty,        TagExecID,
        TagExecTransType, TagLastPx,      TagLastShares,   TagOrderID,       TagOrderQty,
        TagOrdStatus,     TagOrigClOrdID, TagPrice,        TagSide,          TagSymbol,
        TagText,          TagTimeInForce, TagTransactTime, TagExDestination, TagOrdRejReason,
        TagExecType,      TagLeavesQty};
    static constexpr int kIndexSize = TagLeavesQty + 1;
    // Tag -> position in kTags, -1 for the tags read on demand.
    static constexpr std::array<int8_t, kIndexSize> kIndex = [] {
        std::array<int8_t, kIndexSize> index{};
        for (int8_t& i : index) {
            i = -1;
        }
        for (size_t i = 0; i < kTags.size(); ++i) {
            index[static_cast<size_t>(kTags[i])] = static_cast<int8_t>(i);
        }
        return index;
    }();
    static_assert(std::is_sorted(kTags.begin(), kTags.end()));

    const FixFieldReader& m_message;
    std::array<const std::string*, kTags.size()> m_values{};
};

/// A one-character code field (ExecType, OrdStatus, MsgType...) with this value.
bool IsCode(const std::string& value, char code) {
    return value.size() == 1 && value[0] == code;
}

/// Assigns only a changed text: a report repeats most of what the order has.
void Keep(std::string& field, const std::string& value) {
    if (field != value) {
        field = value;
    }
}

const std::string& Value(const FixFieldReader& m, int tag) {
    static const std::string empty;
    const std::string* v = m.find(tag);
    return v != nullptr ? *v : empty;
}

// The numbers of a report, each present or not; `problem` names the first one that is
// present but not a number of its kind, or negative (the whole report is then ignored).
struct ReportNumbers {
    std::string problem;
    std::optional<int32_t> quantity, leaves, cum, lastShares;
    std::optional<double> avgPx, lastPx, price;
};

template <class T, class Parse>
void Read(const FixFieldReader& m, int tag, const char* name, std::optional<T>& into,
          std::string& problem, Parse parse) {
    const std::string* text = m.find(tag);
    if (text == nullptr) {
        return;
    }
    into = parse(*text);
    if (problem.empty() && (!into || *into < 0)) {
        problem = std::string(into ? "negative " : "unreadable ") + name + " " +
                  std::to_string(tag) + "=" + *text;
    }
}

ReportNumbers NumbersOf(const FixFieldReader& m) {
    ReportNumbers n;
    Read(m, TagOrderQty, "OrderQty", n.quantity, n.problem, ParseFixQuantity);
    Read(m, TagLeavesQty, "LeavesQty", n.leaves, n.problem, ParseFixQuantity);
    Read(m, TagCumQty, "CumQty", n.cum, n.problem, ParseFixQuantity);
    Read(m, TagLastShares, "LastShares", n.lastShares, n.problem, ParseFixQuantity);
    Read(m, TagAvgPx, "AvgPx", n.avgPx, n.problem, ParseFixDecimal);
    Read(m, TagLastPx, "LastPx", n.lastPx, n.problem, ParseFixDecimal);
    std::string priceProblem; // a negative limit price is a price, only unreadable is not
    Read(m, TagPrice, "Price", n.price, priceProblem, ParseFixDecimal);
    if (n.problem.empty() && !n.price && m.find(TagPrice) != nullptr) {
        n.problem = priceProblem;
    }
    return n;
}

// Wicker's own ClOrdIDs: <account>-<yyyymmdd>-<send>-<order>, maybe with a suffix.
bool LooksLikeOurs(std::string_view id) {
    size_t pos = 0;
    while ((pos = id.find('-', pos)) != std::string_view::npos) {
        const std::string_view rest = id.substr(pos + 1);
        const auto digits = [](std::string_view t) {
            return std::find_if(t.begin(), t.end(), [](char c) { return c < '0' || c > '9'; });
        };
        if (rest.size() > 9 && digits(rest) == rest.begin() + 8 && rest[8] == '-' &&
            rest.size() > 9 && rest[9] >= '0' && rest[9] <= '9') {
            return pos > 0;
        }
        ++pos;
    }
    return false;
}

// The reject line's words: the counterparty's Text(58), else the meaning of its code.
std::string RejectTextOf(const FixFieldReader& m, FixReasonTag tag) {
    const std::string* text = m.find(TagText);
    if (text != nullptr && !text->empty()) {
        return *text;
    }
    const std::string* code = m.find(static_cast<int>(tag));
    if (code == nullptr) {
        return "";
    }
    const std::optional<int32_t> n = ParseFixQuantity(*code);
    return n ? FixReasonText(tag, *n) : "Reason " + *code;
}

bool IsStatusReport(const FixFieldReader& m) {
    const std::string* execType = m.find(TagExecType);
    const std::string* transType = m.find(TagExecTransType);
    return (execType != nullptr && IsCode(*execType, 'I')) ||
           (transType != nullptr && IsCode(*transType, '3'));
}

bool IsFinal(std::string_view ordStatus) {
    return ordStatus == "2" || ordStatus == "3" || ordStatus == "4" || ordStatus == "8" ||
           ordStatus == "C";
}

constexpr int32_t UnknownOrderReason = 5; // OrdRejReason(103) 5: unknown order
const char* const UnknownToBroker = "Unknown to broker";

int32_t ReasonOf(const FixFieldReader& m, int tag) {
    const std::string* text = m.find(tag);
    if (text == nullptr) {
        return 0;
    }
    const std::optional<int32_t> n = ParseFixQuantity(*text);
    return n.value_or(0);
}

bool IsRejected(const FixFieldReader& m) {
    return IsCode(Value(m, TagExecType), '8') || IsCode(Value(m, TagOrdStatus), '8');
}

// Events kept in an outcome, in order.
class OutcomeCollector final : public FixBookEvents {
public:
    explicit OutcomeCollector(FixBookOutcome& outcome) : m_outcome(outcome) {}
    void onUpdate(const FixOrderState& order) override { m_outcome.events.emplace_back(order); }
    void onReject(const FixOrderReject& reject) override { m_outcome.events.emplace_back(reject); }
    void onWarning(const FixOrderWarning& warning) override {
        m_outcome.events.emplace_back(warning);
    }

private:
    FixBookOutcome& m_outcome;
};

} // namespace

const std::string& OrdStatusText(std::string_view s) {
    static const std::array<std::pair<char, std::string>, 15> names{{
        {'0', "New"},
        {'1', "Partially Filled"},
        {'2', "Filled"},
        {'3', "Done For Day"},
        {'4', "Canceled"},
        {'5', "Replaced"},
        {'6', "Pending Cancel"},
        {'7', "Stopped"},
        {'8', "Rejected"},
        {'9', "Suspended"},
        {'A', "Pending New"},
        {'B', "Calculated"},
        {'C', "Expired"},
        {'D', "Accepted For Bidding"},
        {'E', "Pending Replace"},
    }};
    static const std::string unknown = "Unknown";
    if (s.size() == 1) {
        for (const auto& [code, name] : names) {
            if (code == s[0]) {
                return name;
            }
        }
    }
    return unknown;
}

void FixOrderBook::restoreMemo(const std::string& clOrdID, const std::string& memo) {
    std::lock_guard lock(m_mutex);
    m_memos[clOrdID] = memo;
}

int32_t FixOrderBook::addOrder(const OrderTicket& t) {
    std::lock_guard lock(m_mutex);
    // Made where it stays: a send adds thousands while the trader waits.
    FixOrderState& s = m_orders.emplace_back();
    s.recordId = static_cast<int32_t>(m_orders.size());
    s.clOrdID = t.clOrderID;
    s.currentClOrdID = t.clOrderID;
    s.account = t.account;
    // Updates speak in one-letter side codes: the limit buys' "BUY" is a "B" like the others.
    s.side = SideCodeOf(FixSideOf(t.side).value_or("")).value_or(t.side);
    s.symbol = t.symbol;
    s.destination = t.destination;
    s.tif = t.tif;
    s.memo = t.memo;
    s.priceType = t.priceType;
    s.lmtPrice = t.lmtPrice;
    s.maxFloor = t.maxFloor;
    s.quantity = t.quantity;
    s.leaves = t.quantity;
    s.ordStatus = "A";
    s.status = OrdStatusText(s.ordStatus);
    // The memo stays with the order: the memos by id serve reports of ids the book lacks.
    m_byClOrdID.try_emplace(s.clOrdID, s.recordId).first->second = s.recordId;
    m_awaiting.insert(s.clOrdID);
    return s.recordId;
}

int32_t FixOrderBook::adoptOrder(const FixOrderState& known) {
    if (known.clOrdID.empty() || findByClOrdID(known.clOrdID)) {
        return 0;
    }
    OrderTicket ticket;
    ticket.clOrderID = known.clOrdID;
    ticket.account = known.account;
    ticket.side = known.side;
    ticket.symbol = known.symbol;
    ticket.destination = known.destination;
    ticket.tif = known.tif;
    ticket.memo = known.memo;
    ticket.priceType = known.priceType;
    ticket.lmtPrice = known.lmtPrice;
    ticket.maxFloor = known.maxFloor;
    ticket.quantity = known.quantity;
    const int32_t id = addOrder(ticket);
    std::lock_guard lock(m_mutex);
    FixOrderState& o = m_orders[static_cast<size_t>(id - 1)];
    m_awaiting.erase(o.clOrdID); // nothing was sent now: no answer is awaited
    o.orderID = known.orderID;
    if (!o.orderID.empty()) {
        m_byOrderID[o.orderID] = id;
    }
    o.cum = known.cum;
    o.avgPx = known.avgPx;
    o.leaves = known.leaves;
    // A replace gave it the id the broker knows it by now.
    if (!known.currentClOrdID.empty() && known.currentClOrdID != known.clOrdID) {
        o.currentClOrdID = known.currentClOrdID;
        m_byClOrdID[known.currentClOrdID] = id;
    }
    o.ordStatus = known.ordStatus.empty() ? (o.cum > 0 ? "1" : "0") : known.ordStatus;
    o.status = OrdStatusText(o.ordStatus);
    return id;
}

std::vector<FixOrderState> FixOrderBook::askStatusOfOpenOrders() {
    std::lock_guard lock(m_mutex);
    std::vector<FixOrderState> open;
    for (const FixOrderState& o : m_orders) {
        if (!IsFinal(o.ordStatus)) {
            m_statusAsked.insert(o.recordId);
            open.push_back(o);
        }
    }
    return open;
}

bool FixOrderBook::addCancel(int32_t recordId, const std::string& cancelClOrdID) {
    std::lock_guard lock(m_mutex);
    if (recordId <= 0 || static_cast<size_t>(recordId) > m_orders.size()) {
        return false;
    }
    m_byClOrdID[cancelClOrdID] = recordId;
    m_cancelIDs.insert(cancelClOrdID);
    m_awaiting.insert(cancelClOrdID);
    return true;
}

bool FixOrderBook::addReplace(int32_t recordId, const std::string& newClOrdID,
                              const FixOrderChange& change) {
    std::lock_guard lock(m_mutex);
    if (recordId <= 0 || static_cast<size_t>(recordId) > m_orders.size() || newClOrdID.empty() ||
        m_byClOrdID.count(newClOrdID) > 0) {
        return false;
    }
    FixOrderState& o = m_orders[static_cast<size_t>(recordId - 1)];
    if (!o.pendingReplace.empty()) {
        return false;
    }
    o.pendingReplace = newClOrdID;
    m_byClOrdID[newClOrdID] = recordId;
    m_replaces[newClOrdID] = change;
    // Reports after a restart may name the order only by its new id.
    m_memos[newClOrdID] = o.memo;
    m_awaiting.insert(newClOrdID);
    return true;
}

void FixOrderBook::noteSent(int msgSeqNum, const std::string& clOrdID) {
    std::lock_guard lock(m_seqMutex);
    m_clOrdIDBySeq[msgSeqNum] = clOrdID;
}

std::optional<FixOrderState> FixOrderBook::find(int32_t recordId) const {
    std::lock_guard lock(m_mutex);
    if (recordId <= 0 || static_cast<size_t>(recordId) > m_orders.size()) {
        return std::nullopt;
    }
    return m_orders[static_cast<size_t>(recordId - 1)];
}

std::optional<FixOrderState> FixOrderBook::findByClOrdID(std::string_view clOrdID) const {
    std::lock_guard lock(m_mutex);
    const auto it = m_byClOrdID.find(clOrdID);
    if (it == m_byClOrdID.end()) {
        return std::nullopt;
    }
    return m_orders[static_cast<size_t>(it->second - 1)];
}

size_t FixOrderBook::size() const {
    std::lock_guard lock(m_mutex);
    return m_orders.size();
}

FixOrderState* FixOrderBook::lookup(std::string_view clOrdID) {
    if (clOrdID.empty()) {
        return nullptr;
    }
    const auto it = m_byClOrdID.find(clOrdID);
    return it == m_byClOrdID.end() ? nullptr : &m_orders[static_cast<size_t>(it->second - 1)];
}

FixOrderState* FixOrderBook::lookupReport(const FixFieldReader& m) {
    if (FixOrderState* o = lookup(Value(m, TagClOrdID))) {
        return o;
    }
    if (FixOrderState* o = lookup(Value(m, TagOrigClOrdID))) {
        return o;
    }
    const std::string& orderID = Value(m, TagOrderID);
    if (!orderID.empty()) {
        const auto it = m_byOrderID.find(orderID);
        if (it != m_byOrderID.end()) {
            return &m_orders[static_cast<size_t>(it->second - 1)];
        }
    }
    return nullptr;
}

FixOrderState& FixOrderBook::createFromReport(const FixFieldReader& m) {
    FixOrderState s;
    s.recordId = static_cast<int32_t>(m_orders.size() + 1);
    // A cancel's report names the order's own id in OrigClOrdID.
    const std::string& orig = Value(m, TagOrigClOrdID);
    s.clOrdID = orig.empty() ? Value(m, TagClOrdID) : orig;
    s.account = Value(m, TagAccount);
    s.side = SideCodeOf(Value(m, TagSide)).value_or("");
    s.symbol = Value(m, TagSymbol);
    s.destination = Value(m, TagExDestination);
    for (const std::string* id :
         std::initializer_list<const std::string*>{&s.clOrdID, &Value(m, TagClOrdID)}) {
        if (const auto it = m_memos.find(*id); it != m_memos.end()) {
            s.memo = it->second;
            break;
        }
    }
    if (s.memo.empty() && m_memoTag > 0) {
        s.memo = Value(m, m_memoTag);
    }
    m_orders.push_back(s);
    if (!s.clOrdID.empty()) {
        m_byClOrdID[s.clOrdID] = s.recordId;
    }
    return m_orders.back();
}

void FixOrderBook::answer(const std::string& clOrdID, Run& out) {
    if (m_awaiting.erase(clOrdID) > 0) {
        out.answered.push_back(clOrdID);
    }
}

std::vector<std::string> FixOrderBook::apply(const FixFieldReader& message, FixBookEvents& events) {
    std::lock_guard lock(m_mutex);
    Run out{events, {}};
    const std::string& type = message.msgType();
    if (IsCode(type, '8')) {
        applyExecutionReport(ReportView(message), out);
    } else if (IsCode(type, '9')) {
        applyCancelReject(message, out);
    } else if (IsCode(type, '3')) {
        applyReject(message, TagSessionRejectReason, out);
    } else if (type == "j") {
        applyReject(message, TagBusinessRejectReason, out);
    }
    return std::move(out.answered);
}

FixBookOutcome FixOrderBook::apply(const FixMessage& message) {
    FixBookOutcome outcome;
    OutcomeCollector collect(outcome);
    outcome.answered = apply(FixMessageReader(message), collect);
    return outcome;
}

bool FixOrderBook::isRepeat(const FixOrderState& o, const std::string& execID,
                            std::optional<int32_t> cumQty) {
    // "0" is what some brokers put in status reports, which carry no fill.
    if (execID.empty() || IsCode(execID, '0')) {
        return false;
    }
    // A counterparty that restarts numbers its ExecIDs from 1 again: an ExecID repeats
    // only for the same order and the same CumQty. One that states another CumQty is a
    // new report (CumQty is authoritative; an overfill still gives its warning).
    const int32_t cum = cumQty.value_or(-1);
    // A repeat when stated before with this CumQty (or with none now); another CumQty is
    // remembered for the next repeat.
    const auto seenBefore = [cum](int32_t& stated) {
        if (cum < 0 || stated == cum) {
            return true;
        }
        stated = cum;
        return false;
    };
    const auto index = static_cast<size_t>(o.recordId - 1);
    if (m_execIDs.size() <= index) {
        m_execIDs.resize(index + 1);
    }
    ExecIDsBeside& beside = m_execIDs[index];
    for (size_t i = 0; i < beside.count; ++i) {
        if (beside.seen[i].execID == execID) {
            return seenBefore(beside.seen[i].cum);
        }
    }
    if (beside.count < beside.seen.size()) {
        beside.seen[beside.count++] = ExecSeen{execID, cum};
        return false;
    }
    const auto [it, inserted] = m_moreExecIDs.try_emplace(ExecKey{o.recordId, execID}, cum);
    return !inserted && seenBefore(it->second);
}

void FixOrderBook::unknownToBroker(FixOrderState& o, int32_t reason, std::string text, Run& out) {
    m_statusAsked.erase(o.recordId);
    o.leaves = 0;
    o.ordStatus = "8";
    o.status = UnknownToBroker;
    o.text = text.empty() ? UnknownToBroker : std::move(text);
    ++o.updates;
    out.events.onUpdate(o);
    out.events.onReject(FixOrderReject{o.recordId, o.clOrdID, o.side, o.symbol, o.quantity, reason,
                                       std::string(UnknownToBroker) + " (" + o.text + ")"});
}

void FixOrderBook::applyExecutionReport(const FixFieldReader& m, Run& out) {
    const std::string& clOrdID = Value(m, TagClOrdID);
    const std::string& orderID = Value(m, TagOrderID);
    const std::string& execID = Value(m, TagExecID);
    if (clOrdID.empty() && orderID.empty()) {
        out.events.onWarning(FixOrderWarning{0, "", Value(m, TagSymbol),
                                             "An execution report names no order: ignored."});
        return;
    }
    const ReportNumbers n = NumbersOf(m);
    const bool rejected = IsRejected(m);
    FixOrderState* found = lookupReport(m);
    if (!n.problem.empty()) {
        out.events.onWarning(FixOrderWarning{
            found != nullptr ? found->recordId : 0, found != nullptr ? found->clOrdID : clOrdID,
            found != nullptr ? found->symbol : Value(m, TagSymbol),
            "An execution report with " + n.problem + " was ignored."});
        return;
    }
    if (found == nullptr) {
        const std::string& orig = Value(m, TagOrigClOrdID);
        const std::string& id = orig.empty() ? clOrdID : orig;
        const bool memoEchoed = m_memoTag > 0 && !Value(m, m_memoTag).empty();
        if (m_memos.count(id) == 0 && m_memos.count(clOrdID) == 0 && !memoEchoed &&
            !LooksLikeOurs(id)) {
            out.events.onWarning(FixOrderWarning{
                0, id.empty() ? orderID : id, Value(m, TagSymbol),
                "An execution report for an order that is not Wicker's was ignored."});
            return;
        }
    }
    if (found != nullptr && isRepeat(*found, execID, n.cum)) {
        return;
    }
    FixOrderState& o = found != nullptr ? *found : createFromReport(m);
    if (found == nullptr) {
        isRepeat(o, execID, n.cum);
    }
    if (found != nullptr && m_statusAsked.count(o.recordId) > 0 && rejected &&
        ReasonOf(m, TagOrdRejReason) == UnknownOrderReason) {
        unknownToBroker(o, UnknownOrderReason, Value(m, TagText), out);
        return;
    }
    const bool statusReport = IsStatusReport(m);
    if (statusReport) {
        m_statusAsked.erase(o.recordId);
    }
    const bool replaceAnswer = found != nullptr && !clOrdID.empty() && o.pendingReplace == clOrdID;
    if (replaceAnswer && rejected) {
        answer(clOrdID, out);
        refuseReplace(o, clOrdID, ReasonOf(m, TagOrdRejReason),
                      RejectTextOf(m, FixReasonTag::OrdRejReason), out);
        return;
    }
    const std::string& execType = Value(m, TagExecType);
    // Pending replace: the broker has the request but the order still stands as it was
    // (a fill may still come in under the old terms).
    const bool stillPending =
        replaceAnswer && (IsCode(execType, 'E') || IsCode(Value(m, TagOrdStatus), 'E'));
    const bool announcement = stillPending && IsCode(execType, 'E');
    if (!clOrdID.empty()) {
        // The order's own ids are known already; a new one (a cancel's) is added.
        if (clOrdID != o.currentClOrdID && clOrdID != o.clOrdID) {
            m_byClOrdID.try_emplace(clOrdID, o.recordId);
        }
        if (!stillPending) {
            Keep(o.currentClOrdID, clOrdID);
        }
    }
    if (!orderID.empty()) {
        Keep(o.orderID, orderID);
        m_byOrderID[orderID] = o.recordId;
    }
    if (n.quantity && !announcement) {
        o.quantity = *n.quantity;
    }
    if (n.leaves && !announcement) {
        o.leaves = *n.leaves;
    }
    if (n.cum) {
        o.cum = *n.cum;
    }
    if (n.avgPx) {
        o.avgPx = *n.avgPx;
    }
    // A status report restates the order; its LastShares is no new fill.
    o.lastShares = statusReport ? 0 : n.lastShares.value_or(0);
    o.lastPx = statusReport ? 0 : n.lastPx.value_or(0);
    if (found == nullptr) {
        o.lmtPrice = n.price.value_or(0);
        o.tif = Value(m, TagTimeInForce);
    }
    if (replaceAnswer && !stillPending) {
        // The replace took effect: the order goes on under the new id and terms.
        if (const auto it = m_replaces.find(clOrdID); it != m_replaces.end()) {
            const FixOrderChange& c = it->second;
            o.priceType = c.priceType;
            o.lmtPrice = c.priceType == OrderPriceType::Limit ? n.price.value_or(c.lmtPrice) : 0.0;
            if (!n.quantity) {
                o.quantity = c.quantity;
            }
            if (!n.leaves) {
                o.leaves = std::max(0, o.quantity - o.cum);
            }
            m_replaces.erase(it);
        }
        o.clOrdID = clOrdID;
        o.pendingReplace.clear();
    }
    if (const std::string* s = m.find(TagOrdStatus)) {
        Keep(o.ordStatus, *s);
    }
    if (const std::string* s = m.find(TagExecType)) {
        Keep(o.execType, *s);
    }
    Keep(o.status, OrdStatusText(o.ordStatus));
    Keep(o.text, Value(m, TagText));
    o.transactTime = Value(m, TagTransactTime);
    ++o.updates;

    answer(clOrdID, out);
    if (rejected) {
        o.leaves = 0; // a rejected order is not open, whatever LeavesQty says
        out.events.onUpdate(o);
        out.events.onReject(FixOrderReject{o.recordId, o.clOrdID, o.side, o.symbol, o.quantity,
                                           ReasonOf(m, TagOrdRejReason),
                                           RejectTextOf(m, FixReasonTag::OrdRejReason)});
    } else {
        out.events.onUpdate(o);
    }
    if (o.quantity > 0 && o.cum > o.quantity) {
        out.events.onWarning(FixOrderWarning{o.recordId, o.clOrdID, o.symbol,
                                             "The broker reports " + std::to_string(o.cum) +
                                                 " filled of an order for " +
                                                 std::to_string(o.quantity) + " (overfill)."});
    }
    return;
}

void FixOrderBook::applyCancelReject(const FixFieldReader& m, Run& out) {
    const std::string& clOrdID = Value(m, TagClOrdID);
    const std::string& orig = Value(m, TagOrigClOrdID);
    answer(clOrdID, out);
    FixOrderState* o = lookupReport(m);
    const int32_t reason = ReasonOf(m, TagCxlRejReason);
    const std::string text = RejectTextOf(m, FixReasonTag::CxlRejReason);
    if (o == nullptr) {
        const std::string& id = orig.empty() ? clOrdID : orig;
        if (!id.empty()) {
            out.events.onReject(FixOrderReject{0, id, "", "", 0, reason, text});
        }
        return;
    }
    // A refusal that names the order itself (not a cancel or replace of it) answers the
    // status request made at logon: the broker does not know the order.
    if (m_statusAsked.count(o->recordId) > 0 && !clOrdID.empty() && clOrdID == o->clOrdID &&
        m_cancelIDs.count(clOrdID) == 0 && o->pendingReplace != clOrdID) {
        unknownToBroker(*o, reason, text, out);
        return;
    }
    if (const std::string* s = m.find(TagOrdStatus); s != nullptr && !s->empty()) {
        o->ordStatus = *s;
        o->status = OrdStatusText(*s);
    }
    if (!clOrdID.empty() && o->pendingReplace == clOrdID) {
        refuseReplace(*o, clOrdID, reason, text, out);
        return;
    }
    // The cancel failed: the order stands as last reported (the screen zeroed its open
    // quantity when it asked for the cancel).
    out.events.onReject(
        FixOrderReject{o->recordId, o->clOrdID, o->side, o->symbol, o->quantity, reason, text});
    out.events.onUpdate(*o);
    return;
}

void FixOrderBook::applyReject(const FixFieldReader& m, int reasonTag, Run& out) {
    std::string clOrdID;
    const FixReasonTag tag = reasonTag == TagBusinessRejectReason
                                 ? FixReasonTag::BusinessRejectReason
                                 : FixReasonTag::SessionRejectReason;
    if (reasonTag == TagBusinessRejectReason && Value(m, TagRefMsgType) == "H") {
        FixOrderState* o = lookup(Value(m, TagBusinessRejectRefID));
        if (o != nullptr && m_statusAsked.count(o->recordId) > 0) {
            unknownToBroker(*o, ReasonOf(m, reasonTag), RejectTextOf(m, tag), out);
        }
        return;
    }
    if (reasonTag == TagBusinessRejectReason && lookup(Value(m, TagBusinessRejectRefID))) {
        clOrdID = Value(m, TagBusinessRejectRefID);
    } else if (const std::optional<int32_t> seq = ParseFixInt(Value(m, TagRefSeqNum))) {
        std::lock_guard lock(m_seqMutex);
        if (const auto it = m_clOrdIDBySeq.find(*seq); it != m_clOrdIDBySeq.end()) {
            clOrdID = it->second;
        }
    }
    if (clOrdID.empty()) {
        return; // about a message that was not an order or a cancel
    }
    answer(clOrdID, out);
    refuse(clOrdID, ReasonOf(m, reasonTag), RejectTextOf(m, tag), out);
    return;
}

void FixOrderBook::refuse(const std::string& clOrdID, int32_t reason, std::string text, Run& out) {
    FixOrderState* o = lookup(clOrdID);
    if (o == nullptr) {
        return;
    }
    if (o->pendingReplace == clOrdID) {
        refuseReplace(*o, clOrdID, reason, std::move(text), out);
        return;
    }
    const FixOrderReject reject{o->recordId, o->clOrdID, o->side,        o->symbol,
                                o->quantity, reason,     std::move(text)};
    if (m_cancelIDs.count(clOrdID) > 0) {
        out.events.onReject(reject);
        out.events.onUpdate(*o);
        return;
    }
    if (o->updates > 0) {
        return; // the counterparty has reported on the order: it is alive after all
    }
    o->leaves = 0;
    o->ordStatus = "8";
    o->status = OrdStatusText(o->ordStatus);
    o->text = reject.text;
    ++o->updates;
    out.events.onUpdate(*o);
    out.events.onReject(reject);
}

void FixOrderBook::refuseReplace(FixOrderState& o, const std::string& clOrdID, int32_t reason,
                                 std::string text, Run& out) {
    m_replaces.erase(clOrdID);
    o.pendingReplace.clear();
    out.events.onReject(
        FixOrderReject{o.recordId, clOrdID, o.side, o.symbol, o.quantity, reason, std::move(text)});
    out.events.onUpdate(o);
}

std::vector<std::string> FixOrderBook::notSent(const std::string& clOrdID, FixBookEvents& events,
                                               const char* why) {
    std::lock_guard lock(m_mutex);
    Run out{events, {}};
    answer(clOrdID, out);
    refuse(clOrdID, OfflineRejectReason, why, out);
    return std::move(out.answered);
}

FixBookOutcome FixOrderBook::notSent(const std::string& clOrdID) {
    FixBookOutcome outcome;
    OutcomeCollector collect(outcome);
    outcome.answered = notSent(clOrdID, collect);
    return outcome;
}

} // namespace wicker
