#pragma once

#include "storage/BasketDatabase.h"
#include "storage/Database.h"
#include "support/TempDir.h"

#include <memory>
#include <string>
#include <vector>

namespace wicker::test {

/// A fresh baskets.mdb at the current schema (eight enabled destinations) in a temp folder.
struct BasketTestDb {
    TempDir dir;
    std::unique_ptr<Database> db;

    BasketTestDb() {
        const auto path = dir / "baskets.mdb";
        CreateBasketDatabase(path);
        db = Database::Open(path);
        CreateInitialData(*db);
        RunVersionLadder(*db, "1.2.0");
    }

    /// Adds a basket row and returns its number.
    int32_t addBasket(const std::string& name, const std::string& button = "B1", int onButton = 0) {
        db->ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                       "VALUES('" +
                       name + "','" + button + "'," + std::to_string(onButton) + ",'B')");
        return db
            ->OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + name +
                            "'")
            .Field("intBasketNum")
            .toLong();
    }

    /// Adds a line; `shares` empty leaves nIndexShares null.
    void addLine(int32_t basket, const std::string& sym, const std::string& qty,
                 const std::string& dest, const std::string& shares = "") {
        db->ExecuteSql(
            "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest,nIndexShares) "
            "VALUES(" +
            std::to_string(basket) + ",'" + sym + "'," + qty + ",'" + dest + "'," +
            (shares.empty() ? "NULL" : shares) + ")");
    }

    /// Rows of a query as "a|b|c" texts (NULL shown as "<null>").
    std::vector<std::string> rows(const std::string& sql) {
        std::vector<std::string> out;
        auto rs = db->OpenRecordset(sql);
        for (; !rs.IsEOF(); rs.MoveNext()) {
            std::string line;
            for (size_t i = 0; i < rs.Columns().size(); ++i) {
                const DbValue& v = rs.Field(i);
                line += (i ? "|" : "") + (v.isNull() ? std::string("<null>") : v.text());
            }
            out.push_back(line);
        }
        return out;
    }

    /// Lines of a basket as "sym|qty|dest|shares" in record order.
    std::vector<std::string> lines(int32_t basket) {
        return rows("SELECT strSym, intQty, strDest, nIndexShares FROM tblBasketDetails WHERE "
                    "intBasketNum = " +
                    std::to_string(basket) + " ORDER BY intRecordNum");
    }

    int count(const std::string& table) {
        return db->OpenRecordset("SELECT COUNT(*) AS n FROM " + table).Field("n").toLong();
    }
};

} // namespace wicker::test
