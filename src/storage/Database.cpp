#include "storage/Database.h"

#include "common/Text.h"
#include "storage/JetSql.h"

#include <system_error>

#include <sqlite3.h>

namespace wicker {
namespace {

// Statement handle that is always finalized.
class Statement {
public:
    Statement(sqlite3* db, const std::string& sql) {
        const char* tail = nullptr;
        const int rc =
            sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &m_stmt, &tail);
        if (rc != SQLITE_OK) {
            throw DbError(sqlite3_errmsg(db), dberr::SyntaxError);
        }
        if (tail != nullptr && !Trim(std::string(tail)).empty()) {
            sqlite3_finalize(m_stmt);
            throw DbError("Characters found after end of SQL statement.", dberr::SyntaxError);
        }
    }
    ~Statement() { sqlite3_finalize(m_stmt); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt* get() const { return m_stmt; }

private:
    sqlite3_stmt* m_stmt = nullptr;
};

[[noreturn]] void ThrowStep(sqlite3* db) {
    const int code = sqlite3_errcode(db);
    const int number = code == SQLITE_ERROR ? dberr::SyntaxError : dberr::Unspecified;
    throw DbError(sqlite3_errmsg(db), number);
}

DbValue ColumnValue(sqlite3_stmt* st, int i) {
    switch (sqlite3_column_type(st, i)) {
    case SQLITE_INTEGER:
        return DbValue(static_cast<int64_t>(sqlite3_column_int64(st, i)));
    case SQLITE_FLOAT:
        return DbValue(sqlite3_column_double(st, i));
    case SQLITE_NULL:
        return DbValue();
    default: {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
        return DbValue(std::string(p ? p : "", static_cast<size_t>(sqlite3_column_bytes(st, i))));
    }
    }
}

sqlite3* OpenHandle(const std::filesystem::path& path, int flags) {
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(path.c_str(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        std::string msg = db ? sqlite3_errmsg(db) : "out of memory";
        sqlite3_close(db);
        throw DbError("Cannot open " + path.string() + ": " + msg, dberr::Unspecified);
    }
    sqlite3_extended_result_codes(db, 0);
    sqlite3_busy_timeout(db, 2000);
    return db;
}

// Reads the schema once so that a file that is not a database fails here,
// before anything could be written to it.
void ProbeSchema(sqlite3* db, const std::filesystem::path& path) {
    char* err = nullptr;
    const int rc = sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, &err);
    if (rc != SQLITE_OK) {
        std::string msg = err ? err : sqlite3_errstr(rc);
        sqlite3_free(err);
        // A lock held by another program says nothing about what the file is.
        if (rc == SQLITE_BUSY || rc == SQLITE_LOCKED) {
            throw DbError(path.string() + " is in use by another program, which holds it locked (" +
                              msg + "). Close that program and start again.",
                          dberr::Unspecified);
        }
        throw DbError(path.string() + " is not a basket database (" + msg + ")",
                      dberr::Unspecified);
    }
}

} // namespace

Recordset::Recordset(std::vector<std::string> columns, std::vector<std::vector<DbValue>> rows)
    : m_columns(std::move(columns)), m_rows(std::move(rows)) {}

const DbValue& Recordset::Field(size_t index) const {
    if (IsEOF()) {
        throw DbError("Either BOF or EOF is True, or the current record has been deleted.",
                      dberr::Unspecified);
    }
    if (index >= m_columns.size()) {
        throw DbError("Item cannot be found in the collection.", dberr::Unspecified);
    }
    return m_rows[m_pos][index];
}

const DbValue& Recordset::Field(std::string_view name) const {
    const std::string wanted = UCase(name);
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (UCase(m_columns[i]) == wanted) {
            return Field(i);
        }
    }
    throw DbError("Item cannot be found in the collection corresponding to the requested name: " +
                      std::string(name),
                  dberr::Unspecified);
}

Database::Database(sqlite3* handle, std::filesystem::path path)
    : m_db(handle), m_path(std::move(path)) {}

Database::~Database() {
    sqlite3_close_v2(m_db);
}

std::unique_ptr<Database> Database::Open(const std::filesystem::path& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        throw DbError("Cannot open " + path.string() + ": no such file", dberr::Unspecified);
    }
    {
        // Validate read-only first: a file that is not a database is never touched.
        sqlite3* probe = OpenHandle(path, SQLITE_OPEN_READONLY);
        try {
            ProbeSchema(probe, path);
        } catch (...) {
            sqlite3_close_v2(probe);
            throw;
        }
        sqlite3_close_v2(probe);
    }
    sqlite3* db = OpenHandle(path, SQLITE_OPEN_READWRITE);
    return std::unique_ptr<Database>(new Database(db, path));
}

std::unique_ptr<Database> Database::Create(const std::filesystem::path& path) {
    std::error_code ec;
    if (std::filesystem::exists(path, ec)) {
        throw DbError("Database " + path.string() + " already exists.", dberr::Unspecified);
    }
    sqlite3* db = OpenHandle(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return std::unique_ptr<Database>(new Database(db, path));
}

std::unique_ptr<Database> Database::OpenInMemory() {
    sqlite3* db = OpenHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return std::unique_ptr<Database>(new Database(db, ":memory:"));
}

void Database::execNative(const std::string& sql) {
    Statement st(m_db, sql);
    int rc;
    while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE) {
        ThrowStep(m_db);
    }
}

void Database::ExecuteSql(std::string_view sql) {
    const JetStatement st = TranslateJet(sql);
    if (st.alterColumn) {
        rebuildColumn(*st.alterColumn);
        return;
    }
    execNative(st.sql);
}

void Database::rebuildColumn(const JetAlterColumn& alter) {
    Recordset rs = OpenRecordset("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = '" +
                                 SqlText(alter.table) + "'");
    if (rs.IsEOF()) {
        throw DbError("The Microsoft Jet database engine cannot find the input table or query '" +
                          alter.table + "'.",
                      dberr::SyntaxError);
    }
    const std::string create = rs.Field(size_t{0}).text();
    const std::string tmp = alter.table + "__rebuild";
    std::string newCreate =
        ReplaceColumnDef(create, alter.column, JetColumnDef(alter.column, alter.type));
    // Point the CREATE at the temporary name: replace the text up to the "(".
    newCreate = "CREATE TABLE \"" + tmp + "\" " + newCreate.substr(newCreate.find('('));

    execNative("SAVEPOINT rebuild");
    try {
        execNative(newCreate);
        execNative("INSERT INTO \"" + tmp + "\" SELECT * FROM \"" + alter.table + "\"");
        execNative("DROP TABLE \"" + alter.table + "\"");
        execNative("ALTER TABLE \"" + tmp + "\" RENAME TO \"" + alter.table + "\"");
        execNative("RELEASE rebuild");
    } catch (...) {
        sqlite3_exec(m_db, "ROLLBACK TO rebuild; RELEASE rebuild", nullptr, nullptr, nullptr);
        throw;
    }
}

Recordset Database::OpenRecordset(std::string_view sql) {
    const JetStatement jet = TranslateJet(sql);
    if (jet.alterColumn) {
        throw DbError("A query cannot change the schema.", dberr::SyntaxError);
    }
    Statement st(m_db, jet.sql);
    const int n = sqlite3_column_count(st.get());
    std::vector<std::string> columns;
    for (int i = 0; i < n; ++i) {
        columns.emplace_back(sqlite3_column_name(st.get(), i));
    }
    std::vector<std::vector<DbValue>> rows;
    int rc;
    while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
        std::vector<DbValue> row;
        row.reserve(static_cast<size_t>(n));
        for (int i = 0; i < n; ++i) {
            row.push_back(ColumnValue(st.get(), i));
        }
        rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        ThrowStep(m_db);
    }
    return Recordset(std::move(columns), std::move(rows));
}

Database::Transaction::Transaction(Database& db) : m_db(db) {
    m_db.execNative("SAVEPOINT tx");
}

Database::Transaction::~Transaction() {
    if (!m_done) {
        sqlite3_exec(m_db.m_db, "ROLLBACK TO tx; RELEASE tx", nullptr, nullptr, nullptr);
    }
}

void Database::Transaction::commit() {
    m_db.execNative("RELEASE tx");
    m_done = true;
}

int Database::Changes() const {
    return sqlite3_changes(m_db);
}

std::string SqliteVersion() {
    return sqlite3_libversion();
}

} // namespace wicker
