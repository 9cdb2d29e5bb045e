#pragma once

#include "platform/OrderTicket.h"
#include "platform/fix/engine/FixWire.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

namespace wicker {

/// What Wicker knows of one order it follows over FIX.
struct FixOrderState {
    int32_t recordId = 0;
    std::string clOrdID;        ///< the id the order was sent with
    std::string currentClOrdID; ///< the latest one (a cancel request's included)
    std::string orderID;        ///< the broker's OrderID(37)
    std::string account;
    std::string side; ///< side code: "B", "S", "T" ("BUY" as sent becomes "B")
    std::string symbol;
    std::string destination;
    std::string tif; ///< TIF letter
    std::string memo;
    int32_t priceType = 0;
    double lmtPrice = 0;
    int32_t maxFloor = 0;
    int32_t quantity = 0;
    int32_t leaves = 0;
    int32_t cum = 0;
    double avgPx = 0;
    double lastPx = 0;
    int32_t lastShares = 0;
    std::string ordStatus; ///< OrdStatus(39)
    std::string execType;  ///< ExecType(150)
    std::string status;    ///< OrdStatus as words
    std::string text;      ///< Text(58) of the latest report
    std::string transactTime;
    int32_t updates = 0;        ///< reports applied so far
    std::string pendingReplace; ///< ClOrdID of a replace request not answered yet
};

/// The terms a replace request asks for, applied when the broker confirms it.
struct FixOrderChange {
    int32_t quantity = 0;
    int32_t priceType = 0;
    double lmtPrice = 0;
};

/// A refused order or cancel: the reason is the counterparty's OrdRejReason(103),
/// CxlRejReason(102), SessionRejectReason(373) or BusinessRejectReason(380), or -16 when
/// the order never left because the session was down.
struct FixOrderReject {
    int32_t recordId = 0;
    std::string clOrdID;
    std::string side;
    std::string symbol;
    int32_t quantity = 0;
    int32_t reason = 0;
    std::string text;
};

/// A report about an order that Wicker could not take as it stands (unreadable, an
/// overfill, an order that is not Wicker's): the trader is told, nothing is dropped quietly.
struct FixOrderWarning {
    int32_t recordId = 0; ///< 0 when the report names no order of the book
    std::string clOrdID;
    std::string symbol;
    std::string text;
};

using FixBookEvent = std::variant<FixOrderState, FixOrderReject, FixOrderWarning>;

/// What one received message did to the book: events for the screen, in order, and the
/// ClOrdIDs whose first answer this was (they leave the sending window).
struct FixBookOutcome {
    std::vector<FixBookEvent> events;
    std::vector<std::string> answered;
};

/// Where the events of a message go as the book makes them, in order. Called with the book
/// locked: a receiver hands them on and must not call the book back.
class FixBookEvents {
public:
    virtual void onUpdate(const FixOrderState& order) = 0;
    virtual void onReject(const FixOrderReject& reject) = 0;
    virtual void onWarning(const FixOrderWarning& warning) = 0;

protected:
    ~FixBookEvents() = default;
};

/// Reason code of a reject for an order that never went out (the platform's "offline").
inline constexpr int32_t OfflineRejectReason = -16;

/// The orders of one FIX session, keyed by ClOrdID, OrderID and local record id, and the
/// interpretation of every report about them. Reports are trusted only as far as they
/// parse: a malformed one changes nothing but gives a warning, a repeated ExecID of the
/// same order and CumQty is applied once (ExecIDs of different orders, or of a counterparty
/// that numbers from 1 again after its restart, are distinct), an unknown ClOrdID in Wicker's
/// format becomes a new order (one sent before the program started) while any other gives
/// a warning, CumQty, LeavesQty and AvgPx are taken as the counterparty states them (a
/// fill beyond the order's quantity with a warning). Thread-safe.
class FixOrderBook {
public:
    /// Memo tag of reports that carry the memo back (0: none); the local memo wins.
    explicit FixOrderBook(int memoTag = 0) : m_memoTag(memoTag) {}

    /// Memos of orders sent in earlier runs, by ClOrdID.
    void restoreMemo(const std::string& clOrdID, const std::string& memo);
    /// A new order about to be sent; returns its record id.
    int32_t addOrder(const OrderTicket& ticket);
    /// An order of an earlier run, taken as it was last known (quantities, average price,
    /// OrdStatus when set) without sending anything; returns its record id, in the same
    /// sequence as new orders. 0 when the ClOrdID is empty or already in the book.
    int32_t adoptOrder(const FixOrderState& known);
    /// The orders that are not final (not filled, cancelled, rejected, expired, done):
    /// each is marked as asked about, so that a refusal naming it means the broker does
    /// not know it.
    std::vector<FixOrderState> askStatusOfOpenOrders();
    /// A cancel request for a known order; false when the record is unknown.
    bool addCancel(int32_t recordId, const std::string& cancelClOrdID);
    /// A replace request for a known order: from now on `newClOrdID` names it. False when
    /// the record is unknown, a replace of it is still unanswered, or the id is in use.
    bool addReplace(int32_t recordId, const std::string& newClOrdID, const FixOrderChange& change);
    /// The message with this ClOrdID went out with this sequence number.
    void noteSent(int msgSeqNum, const std::string& clOrdID);

    std::optional<FixOrderState> find(int32_t recordId) const;
    std::optional<FixOrderState> findByClOrdID(std::string_view clOrdID) const;
    size_t size() const;

    /// Interprets an ExecutionReport (8), OrderCancelReject (9), session Reject (3) or
    /// BusinessMessageReject (j); anything else, or anything unusable, changes nothing.
    /// A replace request's answer: a report with the new ClOrdID (ExecType 5, or any
    /// report that is neither a reject nor a pending replace) makes the change, and the new
    /// id the order's ClOrdID; a reject of it (35=9, ExecType 8, 35=3, 35=j) gives a reject
    /// with the new id and then the order unchanged.
    FixBookOutcome apply(const FixMessage& message);
    /// The same, the events handed to `events` as they happen (no copy of the order's state);
    /// returns the ClOrdIDs whose first answer this was.
    std::vector<std::string> apply(const FixFieldReader& message, FixBookEvents& events);
    /// A message that never reached the counterparty (not resent after a reconnect, or
    /// still waiting to go out when the session dropped): a new order is rejected with
    /// reason -16, unless a report for it has arrived after all; a cancel leaves the order
    /// as it was.
    /// `why` is the reject's text: the session was down, or (kLostNotResent) the order left
    /// as it went down and the counterparty asked for it again after the logon.
    FixBookOutcome notSent(const std::string& clOrdID);
    std::vector<std::string> notSent(const std::string& clOrdID, FixBookEvents& events,
                                     const char* why = kSessionDown);
    static constexpr const char* kSessionDown = "Not sent: the FIX session is down.";
    static constexpr const char* kLostNotResent =
        "Not sent: lost as the FIX session went down (not sent again).";

private:
    /// One message's work: where its events go, and the ids it answered.
    struct Run {
        FixBookEvents& events;
        std::vector<std::string> answered;
    };

    FixOrderState* lookup(std::string_view clOrdID);
    FixOrderState* lookupReport(const FixFieldReader& m);
    FixOrderState& createFromReport(const FixFieldReader& m);
    void applyExecutionReport(const FixFieldReader& m, Run& out);
    void applyCancelReject(const FixFieldReader& m, Run& out);
    void applyReject(const FixFieldReader& m, int reasonTag, Run& out);
    /// The pending replace `clOrdID` of order `o` was refused: the order stands as it was.
    void refuseReplace(FixOrderState& o, const std::string& clOrdID, int32_t reason,
                       std::string text, Run& out);
    // A request that failed before the counterparty acted on it: a new order dies, a
    // cancel leaves its order as it was.
    void refuse(const std::string& clOrdID, int32_t reason, std::string text, Run& out);
    /// The broker does not know this order (asked about its status): it is final.
    void unknownToBroker(FixOrderState& o, int32_t reason, std::string text, Run& out);
    /// The report's ExecID was seen for this order before, with the same CumQty.
    bool isRepeat(const FixOrderState& o, const std::string& execID, std::optional<int32_t> cumQty);
    void answer(const std::string& clOrdID, Run& out);

    int m_memoTag;
    mutable std::mutex m_mutex;
    std::deque<FixOrderState> m_orders; // index = recordId - 1
    // Looked up by views of the report's fields: no key is built for a look-up.
    struct IdHash {
        using is_transparent = void;
        size_t operator()(std::string_view id) const { return std::hash<std::string_view>{}(id); }
    };
    std::unordered_map<std::string, int32_t, IdHash, std::equal_to<>> m_byClOrdID;
    std::unordered_map<std::string, int32_t> m_byOrderID;
    // Written inside QuickFIX's send (on the sending thread): a lock of its own keeps it
    // from waiting for report processing.
    mutable std::mutex m_seqMutex;
    std::unordered_map<int, std::string> m_clOrdIDBySeq;
    std::unordered_map<std::string, std::string> m_memos;
    // ExecIDs applied, with the CumQty each stated: an order's first few beside it (index =
    // recordId - 1; a scan of a handful beats hashing and allocates nothing), any beyond them
    // by order and ExecID.
    struct ExecSeen {
        std::string execID;
        int32_t cum = 0;
    };
    struct ExecIDsBeside {
        std::array<ExecSeen, 3> seen; // an acknowledgement and two fills
        size_t count = 0;
    };
    std::deque<ExecIDsBeside> m_execIDs;
    struct ExecKey {
        int32_t recordId = 0;
        std::string execID;
        bool operator==(const ExecKey&) const = default;
    };
    struct ExecKeyHash {
        size_t operator()(const ExecKey& k) const {
            return std::hash<std::string_view>{}(k.execID) ^
                   (static_cast<size_t>(k.recordId) * 0x9e3779b97f4a7c15u);
        }
    };
    std::unordered_map<ExecKey, int32_t, ExecKeyHash> m_moreExecIDs; // -> CumQty
    std::unordered_set<int32_t> m_statusAsked; // record ids asked about at logon
    std::unordered_set<std::string> m_cancelIDs;
    std::unordered_map<std::string, FixOrderChange> m_replaces; // by the replacing ClOrdID
    std::unordered_set<std::string> m_awaiting;                 // sent, no answer yet
};

/// OrdStatus(39) as words ("New", "Partially Filled", ...); "Unknown" for other values.
const std::string& OrdStatusText(std::string_view ordStatus);

} // namespace wicker
