#include "trading/orders/OrderLedger.h"

#include "common/Formats.h"
#include "platform/TicketOrder.h"
#include "trading/orders/SendRecord.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include <sqlite3.h>

namespace wicker {

namespace {

constexpr std::string_view kSchema = R"(
CREATE TABLE IF NOT EXISTS sends(
    id INTEGER PRIMARY KEY, day TEXT NOT NULL, basketSeq INTEGER NOT NULL, basketName TEXT,
    sentAt TEXT, overrides TEXT, orders TEXT, results TEXT, handedAt TEXT,
    UNIQUE(day, basketSeq));
CREATE TABLE IF NOT EXISTS sendResults(
    day TEXT NOT NULL, basketSeq INTEGER NOT NULL, results TEXT, handedAt TEXT,
    PRIMARY KEY(day, basketSeq));
CREATE TABLE IF NOT EXISTS orders(
    id INTEGER PRIMARY KEY, day TEXT NOT NULL, clOrdId TEXT NOT NULL, account TEXT, action TEXT, destination TEXT, exchClOrdId TEXT, exchOrderId TEXT,
    logMessage TEXT, orderTime TEXT, priceTypeText TEXT, side TEXT, tif TEXT, updateTime TEXT,
    avgPx REAL, lastPx REAL, lmtPrice REAL, seqNum INTEGER, cum INTEGER, display INTEGER,
    leaves INTEGER, recordId INTEGER, status INTEGER, priceType INTEGER, quantity INTEGER,
    moo INTEGER, moc INTEGER, memo TEXT, symbol TEXT, currentClOrdId TEXT, note TEXT,
    seenAt TEXT, answer INTEGER, UNIQUE(day, clOrdId));
CREATE TABLE IF NOT EXISTS events(
    id INTEGER PRIMARY KEY, day TEXT NOT NULL, at TEXT, kind TEXT, clOrdId TEXT,
    recordId INTEGER, status INTEGER, quantity INTEGER, leaves INTEGER, cum INTEGER,
    avgPx REAL, lastPx REAL, reason INTEGER, text TEXT);
)";

// The columns of an order's state, in the order Save binds them from parameter 3 on.
constexpr std::string_view kStateColumns =
    "account, action, destination, exchClOrdId, exchOrderId, logMessage, orderTime, "
    "priceTypeText, side, tif, updateTime, avgPx, lastPx, lmtPrice, seqNum, cum, display, "
    "leaves, recordId, status, priceType, quantity, moo, moc, memo, symbol, currentClOrdId, "
    "note, seenAt, answer";
constexpr int kStateCount = 30;

std::string Placeholders(int from, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += (i == 0 ? "?" : ", ?") + std::to_string(from + i);
    }
    return text;
}

std::string StateUpdates() {
    // "account = excluded.account, ..." for the upsert.
    std::string text;
    std::string_view rest = kStateColumns;
    while (!rest.empty()) {
        const size_t comma = rest.find(',');
        std::string_view column = rest.substr(0, comma);
        while (!column.empty() && column.front() == ' ') {
            column.remove_prefix(1);
        }
        text +=
            (text.empty() ? "" : ", ") + std::string(column) + " = excluded." + std::string(column);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
    }
    return text;
}

void BindState(SqliteStatement& s, int first, const TrackedOrder& t) {
    const QVXOrderStruct& r = t.state;
    int i = first;
    const auto text = [&](std::string_view v) { s.bind(i++, v); };
    const auto real = [&](double v) { s.bind(i++, v); };
    const auto whole = [&](int64_t v) { s.bind(i++, v); };
    for (const std::string* v :
         {&r.Account, &r.Action, &r.Destination, &r.ExchClOrderId, &r.ExchOrderId, &r.LogMessage,
          &r.OrderTime, &r.PriceType, &r.Side, &r.Tif, &r.UpdateTime}) {
        text(*v);
    }
    for (const double v : {r.AvgExecPrice, r.ExecPriceLmt, r.LmtPrice}) {
        real(v);
    }
    for (const int32_t v :
         {r.SeqNum, r.CumExecQuantity, r.Display, r.LvsQuantity, r.OrderRecordId, r.OrderStatus,
          r.PriceTypeCode, r.Quantity, int32_t{r.Moo}, int32_t{r.Moc}}) {
        whole(v);
    }
    for (const std::string* v : {&r.Memo, &r.Symbol, &t.currentClOrderId, &t.note, &t.seenAt}) {
        text(*v);
    }
    whole(static_cast<int64_t>(t.answer));
}

TrackedOrder ReadState(const SqliteStatement& s, int first, std::string clOrderId) {
    TrackedOrder t;
    QVXOrderStruct& r = t.state;
    int i = first;
    const auto i32 = [&s](int column) { return static_cast<int32_t>(s.integer(column)); };
    r.Account = s.text(i++);
    r.Action = s.text(i++);
    r.Destination = s.text(i++);
    r.ExchClOrderId = s.text(i++);
    r.ExchOrderId = s.text(i++);
    r.LogMessage = s.text(i++);
    r.OrderTime = s.text(i++);
    r.PriceType = s.text(i++);
    r.Side = s.text(i++);
    r.Tif = s.text(i++);
    r.UpdateTime = s.text(i++);
    r.AvgExecPrice = s.real(i++);
    r.ExecPriceLmt = s.real(i++);
    r.LmtPrice = s.real(i++);
    r.SeqNum = i32(i++);
    r.CumExecQuantity = i32(i++);
    r.Display = i32(i++);
    r.LvsQuantity = i32(i++);
    r.OrderRecordId = i32(i++);
    r.OrderStatus = i32(i++);
    r.PriceTypeCode = i32(i++);
    r.Quantity = i32(i++);
    r.Moo = s.integer(i++) != 0;
    r.Moc = s.integer(i++) != 0;
    r.Memo = s.text(i++);
    r.Symbol = s.text(i++);
    r.Instrument = r.Symbol;
    t.currentClOrderId = s.text(i++);
    t.note = s.text(i++);
    t.seenAt = s.text(i++);
    const int64_t answer = s.integer(i++);
    t.answer = answer == static_cast<int64_t>(AnswerWatch::State::NoAnswer)
                   ? AnswerWatch::State::NoAnswer
               : answer == static_cast<int64_t>(AnswerWatch::State::Pending)
                   ? AnswerWatch::State::Pending
                   : AnswerWatch::State::Answered;
    r.ClOrderID = std::move(clOrderId);
    return t;
}

/// A number of a send's record; a field that is none means the record cannot be read.
template <class N> N ReadNumber(const std::string& text) {
    N value{};
    const std::from_chars_result read =
        std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
        throw SqliteError("The order journal holds a send it cannot read.");
    }
    return value;
}

/// An order of a send's record as it was handed off (or about to be).
LedgerOrder ReadOrder(const std::vector<std::string>& f, int32_t recordId,
                      const std::string& handedAt) {
    if (f.size() < send_record::OrderFields) {
        throw SqliteError("The order journal holds a send it cannot read.");
    }
    TicketOrder order([](const OrderTicket&) { return 0; });
    order.setClOrderID(f[0]);
    order.setAccount(f[1]);
    order.setSide(f[2]);
    order.setSymbol(f[3]);
    order.setQuantity(ReadNumber<int32_t>(f[4]));
    order.setPriceType(ReadNumber<int32_t>(f[5]));
    order.setTif(f[6]);
    order.setDestination(f[7]);
    order.setMaxFloor(ReadNumber<int32_t>(f[8]));
    order.setMemo(f[9]);
    order.setLmtPrice(ReadNumber<double>(f[10]));
    LedgerOrder o;
    o.maxFloor = order.MaxFloor();
    o.tracked.state = HandedOffRecord(order, recordId, handedAt);
    o.tracked.currentClOrderId = order.ClOrderID();
    o.tracked.seenAt = handedAt;
    o.tracked.answer = AnswerWatch::State::Pending;
    return o;
}

} // namespace

struct OrderLedger::Statements {
    explicit Statements(SqliteFile& f)
        : begin(f, "BEGIN"), commit(f, "COMMIT"),
          send(f, "INSERT INTO sends(day, basketSeq, basketName, sentAt, overrides, orders) "
                  "VALUES(?1, ?2, ?3, ?4, ?5, ?6)"),
          // The parts of a send after the first: each part is twice the one before, so the
          // row is written again about twice over in all.
          sendMore(f, "UPDATE sends SET orders = orders || ?3 WHERE day = ?1 AND basketSeq = ?2"),
          // A row of its own: updating the send's row would write all its orders again.
          sendEnds(f, "INSERT OR REPLACE INTO sendResults(day, basketSeq, results, handedAt) "
                      "VALUES(?1, ?2, ?3, ?4)"),
          save(f, "INSERT INTO orders(day, clOrdId, " + std::string(kStateColumns) +
                      ") VALUES(?1, ?2, " + Placeholders(3, kStateCount) +
                      ") ON CONFLICT(day, clOrdId) DO UPDATE SET " + StateUpdates()),
          event(f, "INSERT INTO events(day, at, kind, clOrdId, recordId, status, quantity, leaves, "
                   "cum, avgPx, lastPx, reason, text) "
                   "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)"),
          // Journals written before sendResults existed keep the answers in sends.
          sends(f, "SELECT s.orders, coalesce(r.results, s.results), "
                   "coalesce(r.handedAt, s.handedAt) FROM sends s LEFT JOIN sendResults r "
                   "ON r.day = s.day AND r.basketSeq = s.basketSeq WHERE s.day = ?1 "
                   "ORDER BY s.id"),
          states(f, "SELECT clOrdId, " + std::string(kStateColumns) +
                        " FROM orders WHERE day = ?1 ORDER BY id"),
          highest(f, "SELECT max(basketSeq) FROM sends WHERE day = ?1") {}

    SqliteStatement begin, commit, send, sendMore, sendEnds, save, event, sends, states, highest;
};

OrderLedger::OrderLedger(const std::filesystem::path& file, const Clock& clock)
    : m_clock(clock), m_lock(HoldFolderOf(file, "The order journal " + file.string())),
      m_file(file), m_record(std::make_unique<SendRecord>()) {
    m_file.exec("PRAGMA journal_mode=WAL");
    // A committed send survives the program's death; a power cut may lose the last commits.
    m_file.exec("PRAGMA synchronous=NORMAL");
    m_file.exec("PRAGMA wal_autocheckpoint=0");
    // Writes go to the ends of the tables and the day's index: a 1 MB page cache holds what
    // they touch, where the default 2 MB stays resident for nothing.
    m_file.exec("PRAGMA cache_size=-1024");
    m_file.exec(kSchema);
    m_stmts = std::make_unique<Statements>(m_file);
    m_checkpointer = std::thread([this, path = file] {
        try {
            SqliteFile copier(path);
            std::unique_lock lock(m_checkpointMutex);
            while (!m_checkpointWake.wait_for(lock, std::chrono::seconds(1),
                                              [this] { return m_stopping; })) {
                lock.unlock();
                // Passive: it never waits for the writer, and a busy moment is tried again.
                sqlite3_wal_checkpoint_v2(copier.handle(), nullptr, SQLITE_CHECKPOINT_PASSIVE,
                                          nullptr, nullptr);
                lock.lock();
            }
        } catch (const SqliteError&) {
            // The log then grows until the next start copies it: nothing is lost.
        }
    });
}

OrderLedger::~OrderLedger() {
    {
        std::lock_guard lock(m_checkpointMutex);
        m_stopping = true;
    }
    m_checkpointWake.notify_all();
    m_checkpointer.join();
    try {
        Flush();
    } catch (const SqliteError&) {
        // Nothing left to tell it to at exit; every send was committed as it left.
    }
}

std::string OrderLedger::Today() const {
    return FormatYyyymmdd(m_clock.localNow());
}

std::string OrderLedger::Now() const {
    const LocalDateTime t = m_clock.localNow();
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", t.year, t.month, t.day,
                  t.hour, t.minute, t.second, t.millisecond);
    return text;
}

void OrderLedger::Begin() {
    if (!m_inTransaction) {
        m_stmts->begin.run();
        m_inTransaction = true;
    }
}

void OrderLedger::Flush() {
    if (m_inTransaction) {
        m_inTransaction = false;
        m_stmts->commit.run();
    }
}

void OrderLedger::SendBegins(int16_t basketSeq, std::string_view basketName,
                             std::span<const QVXOrder* const> orders, std::string_view overrides) {
    // One record for the whole send: thousands of orders cost one row, not thousands.
    m_record->Restart();
    m_sendDay = Today(); // the parts that follow belong to this row, past midnight too
    const std::string_view text = m_record->Append(orders);
    Committed([&] {
        m_stmts->send.bind(1, m_sendDay).bind(2, int64_t{basketSeq}).bind(3, basketName);
        m_stmts->send.bind(4, Now()).bind(5, overrides).bindUncopied(6, text).run();
    });
}

void OrderLedger::SendContinues(int16_t basketSeq, std::span<const QVXOrder* const> orders) {
    const std::string_view text = m_record->Append(orders);
    Committed([&] {
        SqliteStatement& s = m_stmts->sendMore;
        s.bind(1, m_sendDay).bind(2, int64_t{basketSeq}).bindUncopied(3, text).run();
        if (m_file.changes() != 1) {
            throw SqliteError("The order journal lost the record of the send it was writing.");
        }
    });
}

template <class Write> void OrderLedger::Committed(const Write& write) {
    Begin();
    try {
        write();
        Flush();
    } catch (const SqliteError&) {
        m_inTransaction = false;
        m_file.exec("ROLLBACK");
        throw;
    }
}

void OrderLedger::SendEnds(int16_t basketSeq, const std::vector<int32_t>& results,
                           std::string_view handedAt) {
    // Room for the longest number and its separator each: written in place.
    std::string text(results.size() * 12, '\0');
    char* out = text.data();
    for (const int32_t result : results) {
        out = std::to_chars(out, out + 11, result).ptr;
        *out++ = send_record::RecordEnd;
    }
    text.resize(static_cast<size_t>(out - text.data()));
    Begin();
    m_stmts->sendEnds.bind(1, Today()).bind(2, int64_t{basketSeq}).bindUncopied(3, text);
    m_stmts->sendEnds.bind(4, handedAt).run();
}

void OrderLedger::Save(const TrackedOrder& order) {
    Begin();
    SqliteStatement& s = m_stmts->save;
    s.bind(1, Today()).bind(2, order.state.ClOrderID);
    BindState(s, 3, order);
    s.run();
}

void OrderLedger::Event(std::string_view kind, std::string_view clOrderId, int32_t recordId,
                        const QVXOrderStruct* update, int32_t reason, std::string_view text) {
    Begin();
    SqliteStatement& s = m_stmts->event;
    s.bind(1, Today()).bind(2, Now()).bind(3, kind).bind(4, clOrderId).bind(5, int64_t{recordId});
    if (update != nullptr) {
        s.bind(6, int64_t{update->OrderStatus}).bind(7, int64_t{update->Quantity});
        s.bind(8, int64_t{update->LvsQuantity}).bind(9, int64_t{update->CumExecQuantity});
        s.bind(10, update->AvgExecPrice).bind(11, update->ExecPriceLmt);
    }
    s.bind(12, int64_t{reason}).bind(13, text);
    s.run();
}

void OrderLedger::Reported(const QVXOrderStruct& update) {
    Event("update", update.ClOrderID, update.OrderRecordId, &update, 0, update.LogMessage);
}

void OrderLedger::Rejected(const QVXRejectStruct& reject) {
    Event("reject", reject.ClOrderID, 0, nullptr, reject.RejectReason, reject.ReasonText);
}

void OrderLedger::Warned(const QVXOrderWarning& warning) {
    Event("warning", warning.ClOrderID, warning.OrderRecordId, nullptr, 0, warning.Text);
}

std::vector<LedgerOrder> OrderLedger::TodaysOrders() {
    // What reports made of orders, by the id they were sent with.
    std::unordered_map<std::string, TrackedOrder> reported;
    std::vector<std::string> reportOrder;
    SqliteStatement& states = m_stmts->states;
    states.bind(1, Today());
    while (states.next()) {
        std::string id = states.text(0);
        reportOrder.push_back(id);
        reported.emplace(id, ReadState(states, 1, id));
    }
    std::vector<LedgerOrder> orders;
    SqliteStatement& sends = m_stmts->sends;
    sends.bind(1, Today());
    while (sends.next()) {
        const std::vector<std::string> results =
            SplitSendRecords(sends.text(1), send_record::RecordEnd);
        const std::string handedAt = sends.text(2);
        size_t i = 0;
        std::vector<std::string> previous;
        for (const std::string& record : SplitSendRecords(sends.text(0), send_record::RecordEnd)) {
            const bool answered = i < results.size();
            const int32_t result = answered ? ReadNumber<int32_t>(results[i]) : 0;
            ++i;
            const std::vector<std::string>& fields = SendRecordFields(record, previous);
            if (result < 0) {
                continue; // refused: it never left
            }
            LedgerOrder o = ReadOrder(fields, result, handedAt);
            o.handOff = answered ? HandOffState::Taken : HandOffState::Written;
            if (const auto found = reported.find(o.tracked.state.ClOrderID);
                found != reported.end()) {
                o.tracked = std::move(found->second);
                reported.erase(found);
            }
            orders.push_back(std::move(o));
        }
    }
    // Orders sent by other means that the platform reported: after the sends, as found.
    for (const std::string& id : reportOrder) {
        if (const auto found = reported.find(id); found != reported.end()) {
            LedgerOrder o;
            o.tracked = std::move(found->second);
            o.handOff = HandOffState::Taken;
            orders.push_back(std::move(o));
            reported.erase(found);
        }
    }
    return orders;
}

std::optional<int16_t> OrderLedger::HighestBasketSeqToday() {
    SqliteStatement& s = m_stmts->highest;
    s.bind(1, Today());
    std::optional<int16_t> highest;
    if (s.next() && !s.isNull(0)) {
        highest = static_cast<int16_t>(s.integer(0));
    }
    while (s.next()) {
    }
    return highest;
}

} // namespace wicker
