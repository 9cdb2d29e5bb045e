#include "trading/orders/OrderLedger.h"

#include "common/Formats.h"

#include <cstdio>

namespace wicker {

namespace {

constexpr std::string_view kSchema = R"(
CREATE TABLE IF NOT EXISTS sends(
    day TEXT NOT NULL, basketSeq INTEGER NOT NULL, basketName TEXT, sentAt TEXT,
    overrides TEXT, PRIMARY KEY(day, basketSeq));
CREATE TABLE IF NOT EXISTS orders(
    id INTEGER PRIMARY KEY, day TEXT NOT NULL, clOrdId TEXT NOT NULL, basketSeq INTEGER,
    handOff INTEGER NOT NULL, submitResult INTEGER, maxFloor INTEGER, writtenAt TEXT,
    account TEXT, action TEXT, destination TEXT, exchClOrdId TEXT, exchOrderId TEXT,
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

} // namespace

struct OrderLedger::Statements {
    explicit Statements(SqliteFile& f)
        : begin(f, "BEGIN"), commit(f, "COMMIT"),
          send(f, "INSERT INTO sends(day, basketSeq, basketName, sentAt, overrides) "
                  "VALUES(?1, ?2, ?3, ?4, ?5)"),
          written(f, "INSERT INTO orders(day, clOrdId, basketSeq, handOff, maxFloor, writtenAt, " +
                         std::string(kStateColumns) + ") VALUES(?1, ?2, ?3, 0, ?4, ?5, " +
                         Placeholders(6, kStateCount) + ")"),
          refused(f, "UPDATE orders SET handOff = 2, submitResult = ?3, leaves = 0 "
                     "WHERE day = ?1 AND clOrdId = ?2"),
          save(f, "INSERT INTO orders(day, clOrdId, basketSeq, handOff, " +
                      std::string(kStateColumns) + ") VALUES(?1, ?2, NULL, 1, " +
                      Placeholders(3, kStateCount) + ") ON CONFLICT(day, clOrdId) DO UPDATE SET " +
                      "handOff = CASE WHEN handOff = 0 THEN 1 ELSE handOff END, " + StateUpdates()),
          event(f, "INSERT INTO events(day, at, kind, clOrdId, recordId, status, quantity, leaves, "
                   "cum, avgPx, lastPx, reason, text) "
                   "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)"),
          today(f, "SELECT clOrdId, handOff, submitResult, maxFloor, " +
                       std::string(kStateColumns) +
                       " FROM orders WHERE day = ?1 AND handOff IN (0, 1) ORDER BY id"),
          highest(f, "SELECT max(basketSeq) FROM sends WHERE day = ?1") {}

    SqliteStatement begin, commit, send, written, refused, save, event, today, highest;
};

OrderLedger::OrderLedger(const std::filesystem::path& file, const Clock& clock)
    : m_clock(clock), m_file(file) {
    m_file.exec("PRAGMA journal_mode=WAL");
    // A committed send survives the program's death; a power cut may lose the last commits.
    m_file.exec("PRAGMA synchronous=NORMAL");
    m_file.exec(kSchema);
    m_stmts = std::make_unique<Statements>(m_file);
}

OrderLedger::~OrderLedger() {
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
    Begin();
    const std::string day = Today();
    const std::string now = Now();
    try {
        m_stmts->send.bind(1, day).bind(2, int64_t{basketSeq}).bind(3, basketName);
        m_stmts->send.bind(4, now).bind(5, overrides).run();
        TrackedOrder t;
        t.seenAt = FormatTime12(m_clock.localNow());
        t.answer = AnswerWatch::State::Pending;
        for (const QVXOrder* order : orders) {
            QVXOrderStruct& r = t.state;
            r.Account = order->Account();
            r.Action = "Pending New";
            r.Destination = order->Destination();
            r.Side = order->Side().substr(0, 1);
            r.Tif = order->Tif();
            r.LmtPrice = order->LmtPrice();
            r.LvsQuantity = order->Quantity();
            r.PriceTypeCode = order->PriceType();
            r.Quantity = order->Quantity();
            r.Memo = order->Memo();
            r.Symbol = order->Symbol();
            t.currentClOrderId = order->ClOrderID();
            SqliteStatement& s = m_stmts->written;
            s.bind(1, day).bind(2, order->ClOrderID()).bind(3, int64_t{basketSeq});
            s.bind(4, int64_t{order->MaxFloor()}).bind(5, now);
            BindState(s, 6, t);
            s.run();
        }
        Flush();
    } catch (const SqliteError&) {
        m_inTransaction = false;
        m_file.exec("ROLLBACK");
        throw;
    }
}

void OrderLedger::Refused(std::string_view clOrderId, int32_t result) {
    Begin();
    m_stmts->refused.bind(1, Today()).bind(2, clOrderId).bind(3, int64_t{result}).run();
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
    std::vector<LedgerOrder> orders;
    SqliteStatement& s = m_stmts->today;
    s.bind(1, Today());
    while (s.next()) {
        LedgerOrder o;
        o.handOff = s.integer(1) == 0 ? HandOffState::Written : HandOffState::Taken;
        o.submitResult = static_cast<int32_t>(s.integer(2));
        o.maxFloor = static_cast<int32_t>(s.integer(3));
        o.tracked = ReadState(s, 4, s.text(0));
        orders.push_back(std::move(o));
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
