#pragma once

#include "storage/BasketDatabase.h"
#include "storage/Database.h"
#include "support/TempDir.h"

#include <memory>
#include <string>
#include <vector>

namespace wicker::test {

/// A baskets.mdb file in a temp folder: at the current schema with its initial data, or
/// (`bare`) with the six tables and nothing in them.
struct AdminTestDb {
    TempDir dir;
    std::unique_ptr<Database> db;

    explicit AdminTestDb(bool bare = false) {
        const auto path = dir / "baskets.mdb";
        CreateBasketDatabase(path);
        db = Database::Open(path);
        if (!bare) {
            CreateInitialData(*db);
            RunVersionLadder(*db, "1.2.0");
        }
    }

    /// Rows of a query as "a|b" texts, NULL shown as "<null>".
    std::vector<std::string> rows(const std::string& sql) const {
        std::vector<std::string> out;
        for (auto rs = db->OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) {
            std::string line;
            for (size_t i = 0; i < rs.Columns().size(); ++i) {
                const DbValue& v = rs.Field(i);
                line += (i ? "|" : "") + (v.isNull() ? std::string("<null>") : v.text());
            }
            out.push_back(line);
        }
        return out;
    }

    /// tblAccount in stored order, "name|default".
    std::vector<std::string> accounts() const {
        return rows("SELECT strAcct, lngDefault FROM tblAccount ORDER BY rowid");
    }
    /// tblDest in stored order, "name|enabled".
    std::vector<std::string> destinations() const {
        return rows("SELECT strDest, intEnabled FROM tblDest ORDER BY rowid");
    }
    void addAccount(const std::string& name, int isDefault) const {
        db->ExecuteSql("INSERT INTO tblAccount(strAcct,lngDefault) VALUES('" + name + "'," +
                       std::to_string(isDefault) + ")");
    }
};

using Texts = std::vector<std::string>;

} // namespace wicker::test
