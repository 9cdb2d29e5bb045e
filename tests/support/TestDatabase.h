#pragma once

#include "storage/BasketDatabase.h"
#include "storage/Database.h"
#include "support/TempDir.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace wicker::test {

/// Creates `file` at the current schema with its initial data (eight enabled destinations),
/// or (`bare`) with the tables and nothing in them, and opens it.
std::unique_ptr<Database> CreateTestDatabase(const std::filesystem::path& file, bool bare = false);

/// Rows of a query as "a|b|c" texts, NULL shown as "<null>".
std::vector<std::string> RowTexts(Database& db, const std::string& sql);

/// A baskets.mdb in a temp folder, with the helpers the basket and admin tests share.
struct TestDb {
    TempDir dir;
    std::unique_ptr<Database> db;

    explicit TestDb(bool bare = false) : db(CreateTestDatabase(dir / "baskets.mdb", bare)) {}

    std::vector<std::string> rows(const std::string& sql) const { return RowTexts(*db, sql); }
    int count(const std::string& table) const;

    /// Adds a basket row and returns its number.
    int32_t addBasket(const std::string& name, const std::string& button = "B1",
                      int onButton = 0) const;
    /// Adds a line; `shares` empty leaves nIndexShares null.
    void addLine(int32_t basket, const std::string& sym, const std::string& qty,
                 const std::string& dest, const std::string& shares = "") const;
    /// Lines of a basket as "sym|qty|dest|shares" in record order.
    std::vector<std::string> lines(int32_t basket) const;

    /// tblAccount in stored order, "name|default".
    std::vector<std::string> accounts() const {
        return rows("SELECT strAcct, lngDefault FROM tblAccount ORDER BY rowid");
    }
    /// tblDest in stored order, "name|enabled".
    std::vector<std::string> destinations() const {
        return rows("SELECT strDest, intEnabled FROM tblDest ORDER BY rowid");
    }
    void addAccount(const std::string& name, int isDefault) const;
};

using Texts = std::vector<std::string>;

} // namespace wicker::test
