#include "storage/SqliteFile.h"

#include <sqlite3.h>

namespace wicker {

std::optional<FolderLock> HoldFolderOf(const std::filesystem::path& file, std::string_view what) {
    const std::filesystem::path folder =
        file.parent_path().empty() ? std::filesystem::path(".") : file.parent_path();
    Result<std::optional<FolderLock>> held = FolderLock::HoldFor(folder);
    if (!held) {
        throw SqliteError(std::string(what) + " is not opened: " + held.error().message);
    }
    return std::move(held).value();
}

SqliteFile::SqliteFile(const std::filesystem::path& path) : m_path(path) {
    const int rc =
        sqlite3_open_v2(path.c_str(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK) {
        const std::string text = m_db != nullptr ? sqlite3_errmsg(m_db) : sqlite3_errstr(rc);
        sqlite3_close(m_db);
        m_db = nullptr;
        throw SqliteError(path.string() + " cannot be opened: " + text);
    }
    sqlite3_busy_timeout(m_db, 2000);
    try {
        // Reading the schema proves it is a database before anything is written to it.
        exec("SELECT count(*) FROM sqlite_master");
    } catch (const SqliteError&) {
        const int code = sqlite3_errcode(m_db);
        sqlite3_close(m_db);
        m_db = nullptr;
        if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
            throw SqliteError(path.string() + " is in use by another program.");
        }
        throw SqliteError(path.string() +
                          " is not a database Wicker can read; it is left as it is.");
    }
}

SqliteFile::~SqliteFile() {
    sqlite3_close(m_db);
}

void SqliteFile::exec(std::string_view sql) {
    if (sqlite3_exec(m_db, std::string(sql).c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail(sql);
    }
}

int SqliteFile::changes() const {
    return sqlite3_changes(m_db);
}

void SqliteFile::fail(std::string_view what) const {
    throw SqliteError(std::string(what) + ": " + sqlite3_errmsg(m_db));
}

SqliteStatement::SqliteStatement(SqliteFile& file, std::string_view sql) : m_file(file) {
    if (sqlite3_prepare_v2(file.handle(), sql.data(), static_cast<int>(sql.size()), &m_stmt,
                           nullptr) != SQLITE_OK) {
        file.fail(sql);
    }
}

SqliteStatement::~SqliteStatement() {
    sqlite3_finalize(m_stmt);
}

SqliteStatement& SqliteStatement::bind(int index, int64_t value) {
    sqlite3_bind_int64(m_stmt, index, value);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, double value) {
    sqlite3_bind_double(m_stmt, index, value);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::string_view value) {
    sqlite3_bind_text(m_stmt, index, value.data(), static_cast<int>(value.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

SqliteStatement& SqliteStatement::bindUncopied(int index, std::string_view value) {
    sqlite3_bind_text(m_stmt, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    return *this;
}

SqliteStatement& SqliteStatement::bindNull(int index) {
    sqlite3_bind_null(m_stmt, index);
    return *this;
}

void SqliteStatement::run() {
    const int rc = sqlite3_step(m_stmt);
    reset();
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) {
        m_file.fail(sqlite3_sql(m_stmt));
    }
}

bool SqliteStatement::next() {
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW) {
        return true;
    }
    reset();
    if (rc != SQLITE_DONE) {
        m_file.fail(sqlite3_sql(m_stmt));
    }
    return false;
}

void SqliteStatement::reset() {
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
}

int64_t SqliteStatement::integer(int column) const {
    return sqlite3_column_int64(m_stmt, column);
}

double SqliteStatement::real(int column) const {
    return sqlite3_column_double(m_stmt, column);
}

std::string SqliteStatement::text(int column) const {
    const auto* p = sqlite3_column_text(m_stmt, column);
    return p != nullptr ? std::string(reinterpret_cast<const char*>(p),
                                      static_cast<size_t>(sqlite3_column_bytes(m_stmt, column)))
                        : std::string();
}

bool SqliteStatement::isNull(int column) const {
    return sqlite3_column_type(m_stmt, column) == SQLITE_NULL;
}

} // namespace wicker
