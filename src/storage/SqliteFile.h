#pragma once

#include "storage/FolderLock.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace wicker {

/// A failure of a native SQLite file: what failed and SQLite's own words.
class SqliteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Holds the folder of `file` for writing it (see FolderLock::HoldFor); a SqliteError saying
/// that `what` is not opened when another program holds the folder.
std::optional<FolderLock> HoldFolderOf(const std::filesystem::path& file, std::string_view what);

class SqliteFile;

/// One prepared statement, reused for every row: bind, step, and it resets itself for the
/// next use.
class SqliteStatement {
public:
    SqliteStatement(SqliteFile& file, std::string_view sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    /// Parameters count from 1, as SQLite numbers them.
    SqliteStatement& bind(int index, int64_t value);
    SqliteStatement& bind(int index, double value);
    SqliteStatement& bind(int index, std::string_view value);
    SqliteStatement& bindNull(int index);
    /// Binds a text without copying it (a large one would cost its size in fresh memory):
    /// the text must stay as it is until the statement has run.
    SqliteStatement& bindUncopied(int index, std::string_view value);
    /// Runs an action statement to its end.
    void run();
    /// The next row of a query; false at its end (the statement is then ready again).
    bool next();
    int64_t integer(int column) const;
    double real(int column) const;
    std::string text(int column) const;
    bool isNull(int column) const;

private:
    void reset();
    SqliteFile& m_file;
    sqlite3_stmt* m_stmt = nullptr;
};

/// A plain SQLite file of Wicker's own (not the basket database and its old dialect):
/// opened or created, held until destroyed.
class SqliteFile {
public:
    /// Opens the file, creating it when missing. SqliteError when it is no database or
    /// cannot be opened; a file another program holds locked says so.
    explicit SqliteFile(const std::filesystem::path& path);
    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    /// Runs statements that take no parameters (schema, pragmas, BEGIN/COMMIT).
    void exec(std::string_view sql);
    int changes() const;
    /// SQLite's last error text, prefixed with `what`.
    [[noreturn]] void fail(std::string_view what) const;
    sqlite3* handle() const { return m_db; }
    const std::filesystem::path& path() const { return m_path; }

private:
    sqlite3* m_db = nullptr;
    std::filesystem::path m_path;
};

} // namespace wicker
