#include "platform/sim/SimBookFile.h"

#include <cstdio>
#include <utility>

namespace wicker {

namespace {

constexpr std::string_view kSchema = R"(
CREATE TABLE IF NOT EXISTS book(
    day TEXT NOT NULL, recordId INTEGER NOT NULL, account TEXT, side TEXT, symbol TEXT,
    quantity INTEGER, lmtPrice REAL, priceType INTEGER, clOrdId TEXT, tif TEXT,
    destination TEXT, maxFloor INTEGER, memo TEXT, formerIds TEXT, status INTEGER,
    cum INTEGER, notional INTEGER, updates INTEGER, replaces INTEGER, resting INTEGER,
    orderTime TEXT, lastFill TEXT, PRIMARY KEY(day, recordId));
)";

constexpr std::string_view kColumns =
    "recordId, account, side, symbol, quantity, lmtPrice, priceType, clOrdId, tif, "
    "destination, maxFloor, memo, formerIds, status, cum, notional, updates, replaces, "
    "resting, orderTime, lastFill";

// Former ids apart; a client order id never holds this control character.
constexpr char kIdEnd = '\x1e';

std::string JoinIds(const std::vector<std::string>& ids) {
    std::string text;
    for (const std::string& id : ids) {
        text += id;
        text += kIdEnd;
    }
    return text;
}

std::vector<std::string> SplitIds(const std::string& text) {
    std::vector<std::string> ids;
    size_t from = 0;
    for (size_t end = text.find(kIdEnd); end != std::string::npos; end = text.find(kIdEnd, from)) {
        ids.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return ids;
}

} // namespace

struct SimBookFile::Statements {
    explicit Statements(SqliteFile& f)
        : begin(f, "BEGIN"), commit(f, "COMMIT"), clear(f, "DELETE FROM book WHERE day = ?1"),
          save(f, "INSERT OR REPLACE INTO book(day, " + std::string(kColumns) +
                      ") VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, "
                      "?15, ?16, ?17, ?18, ?19, ?20, ?21, ?22)"),
          load(f,
               "SELECT " + std::string(kColumns) + " FROM book WHERE day = ?1 ORDER BY recordId") {}

    SqliteStatement begin, commit, clear, save, load;
};

SimBookFile::SimBookFile(const std::filesystem::path& file, std::string today)
    : m_lock(HoldFolderOf(file, "The simulated broker's book " + file.string())), m_file(file),
      m_today(std::move(today)) {
    m_file.exec("PRAGMA journal_mode=WAL");
    m_file.exec("PRAGMA synchronous=OFF");
    m_file.exec(kSchema);
    m_stmts = std::make_unique<Statements>(m_file);
    // A day order does not outlive its day at a broker either.
    SqliteStatement old(m_file, "DELETE FROM book WHERE day <> ?1");
    old.bind(1, m_today).run();
}

SimBookFile::~SimBookFile() = default;

std::vector<SimKeptOrder> SimBookFile::Load() {
    std::vector<SimKeptOrder> orders;
    SqliteStatement& s = m_stmts->load;
    s.bind(1, m_today);
    while (s.next()) {
        SimKeptOrder o;
        int i = 0;
        const auto i32 = [&s, &i] { return static_cast<int32_t>(s.integer(i++)); };
        o.recordId = i32();
        o.ticket.account = s.text(i++);
        o.ticket.side = s.text(i++);
        o.ticket.symbol = s.text(i++);
        o.ticket.quantity = i32();
        o.ticket.lmtPrice = s.real(i++);
        o.ticket.priceType = i32();
        o.ticket.clOrderID = s.text(i++);
        o.ticket.tif = s.text(i++);
        o.ticket.destination = s.text(i++);
        o.ticket.maxFloor = i32();
        o.ticket.memo = s.text(i++);
        o.formerIds = SplitIds(s.text(i++));
        o.status = i32();
        o.cum = i32();
        o.notional = s.integer(i++);
        o.updates = i32();
        o.replaces = i32();
        o.resting = s.integer(i++) != 0;
        o.orderTime = s.text(i++);
        o.lastFill = s.text(i++);
        orders.push_back(std::move(o));
    }
    return orders;
}

void SimBookFile::Save(const std::vector<SimKeptOrder>& orders, bool replaceAll) {
    m_stmts->begin.run();
    try {
        if (replaceAll) {
            m_stmts->clear.bind(1, m_today).run();
        }
        SqliteStatement& s = m_stmts->save;
        for (const SimKeptOrder& o : orders) {
            const OrderTicket& t = o.ticket;
            s.bind(1, m_today).bind(2, int64_t{o.recordId}).bind(3, t.account).bind(4, t.side);
            s.bind(5, t.symbol).bind(6, int64_t{t.quantity}).bind(7, t.lmtPrice);
            s.bind(8, int64_t{t.priceType}).bind(9, t.clOrderID).bind(10, t.tif);
            s.bind(11, t.destination).bind(12, int64_t{t.maxFloor}).bind(13, t.memo);
            s.bind(14, JoinIds(o.formerIds)).bind(15, int64_t{o.status}).bind(16, int64_t{o.cum});
            s.bind(17, o.notional).bind(18, int64_t{o.updates}).bind(19, int64_t{o.replaces});
            s.bind(20, int64_t{o.resting ? 1 : 0}).bind(21, o.orderTime).bind(22, o.lastFill);
            s.run();
        }
        m_stmts->commit.run();
    } catch (const SqliteError&) {
        m_file.exec("ROLLBACK");
        throw;
    }
}

} // namespace wicker
