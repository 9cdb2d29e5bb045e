#pragma once

#include <optional>
#include <string>
#include <string_view>

// The statements of the program are written in the Jet dialect and built by splicing
// values into text. This file makes them safe and runnable on SQLite.
namespace wicker {

/// Error numbers the old provider raised, kept so handlers can tell failures apart.
namespace dberr {
inline constexpr int Unspecified = -2147467259; ///< 0x80004005: constraint, size, engine
inline constexpr int SyntaxError = -2147217900; ///< 0x80040E14: statement text refused
} // namespace dberr

/// A text value for a quoted slot ('...'). A value holding an apostrophe would end the
/// quote early: the statement fails here (DbError, SyntaxError) instead of reaching
/// the engine, which is what an unescaped apostrophe always did, without the injection.
std::string SqlText(std::string_view value);

/// A value for a bare numeric slot: only a plain number literal ("12", "-1.5",
/// "1e3") passes; anything else fails the statement (DbError, SyntaxError).
std::string SqlNumber(std::string_view value);

/// True for a plain number literal as SqlNumber accepts it.
bool IsNumberLiteral(std::string_view value);

/// ALTER TABLE t ALTER COLUMN c Type, which SQLite lacks: done as a table rebuild.
struct JetAlterColumn {
    std::string table;
    std::string column;
    std::string type;
};

/// A Jet statement rewritten for SQLite.
struct JetStatement {
    std::string sql;                           ///< runnable text (empty for alterColumn)
    std::optional<JetAlterColumn> alterColumn; ///< set when a rebuild is needed
};

/// Rewrites one Jet statement: ISNULL(x) -> ((x) IS NULL), #date# -> 'date',
/// ADD COLUMN with a Jet type -> a column with its checks, ALTER COLUMN -> rebuild.
/// More than one statement, or an unterminated quote, is a DbError (SyntaxError).
JetStatement TranslateJet(std::string_view sql);

/// SQLite column definition for a Jet type: "Text(50)" / "Text" (255), "Long",
/// "Integer", "Single", "Double", "Date", "Counter" (auto-increment key). Text columns
/// compare without case and refuse longer values; numeric columns refuse text.
std::string JetColumnDef(std::string_view column, std::string_view jetType);

/// The CREATE TABLE text `createSql` with the definition of `column` replaced by
/// `newDef`; DbError when the column is not there.
std::string ReplaceColumnDef(std::string_view createSql, std::string_view column,
                             std::string_view newDef);

} // namespace wicker
