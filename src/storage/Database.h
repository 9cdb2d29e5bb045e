#pragma once

#include "storage/DbValue.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace wicker {

struct JetAlterColumn;

/// A statement the database refused (bad SQL, constraint, type, guard of a spliced value).
/// The number is the old provider's (see dberr in JetSql.h).
/// The SQLite library's version, as it runs.
std::string SqliteVersion();

class DbError : public std::runtime_error {
public:
    DbError(const std::string& what, int number) : std::runtime_error(what), m_number(number) {}
    int number() const noexcept { return m_number; }

private:
    int m_number;
};

/// Rows of one query, read forwards. Field names compare without case, as they did.
class Recordset {
public:
    Recordset(std::vector<std::string> columns, std::vector<std::vector<DbValue>> rows);

    bool IsEOF() const { return m_pos >= m_rows.size(); }
    void MoveNext() { ++m_pos; }
    /// Field of the current row by name; DbError for an unknown name or past the end.
    const DbValue& Field(std::string_view name) const;
    /// Field of the current row by position.
    const DbValue& Field(size_t index) const;
    const std::vector<std::string>& Columns() const { return m_columns; }
    size_t RowCount() const { return m_rows.size(); }

private:
    std::vector<std::string> m_columns;
    std::vector<std::vector<DbValue>> m_rows;
    size_t m_pos = 0;
};

/// The one connection to baskets.mdb, held for the program's life. Statements are
/// written in the old Jet dialect and translated (JetSql.h) before SQLite sees them.
class Database {
public:
    /// Opens an existing database file; DbError when it is not a database.
    static std::unique_ptr<Database> Open(const std::filesystem::path& path);
    /// Creates a new, empty file (an existing file is an error, never replaced).
    static std::unique_ptr<Database> Create(const std::filesystem::path& path);
    /// In-memory database, for tests.
    static std::unique_ptr<Database> OpenInMemory();

    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Runs one action statement; DbError when it fails (nothing of it is applied).
    void ExecuteSql(std::string_view sql);
    /// Runs one query and reads all its rows.
    Recordset OpenRecordset(std::string_view sql);
    /// Rows changed by the last action statement.
    int Changes() const;

    const std::filesystem::path& path() const { return m_path; }

    /// All-or-nothing group of statements: rolled back unless commit() is called.
    class Transaction {
    public:
        explicit Transaction(Database& db);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void commit();

    private:
        Database& m_db;
        bool m_done = false;
    };

private:
    Database(sqlite3* handle, std::filesystem::path path);
    void execNative(const std::string& sql);
    void rebuildColumn(const JetAlterColumn& alter);

    sqlite3* m_db;
    std::filesystem::path m_path;
};

} // namespace wicker
