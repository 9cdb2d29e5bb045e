#include "support/TestDatabase.h"

namespace wicker::test {

std::unique_ptr<Database> CreateTestDatabase(const std::filesystem::path& file, bool bare) {
    CreateBasketDatabase(file);
    auto db = Database::Open(file);
    if (!bare) {
        CreateInitialData(*db);
        RunVersionLadder(*db, "1.2.0");
    }
    return db;
}

std::vector<std::string> RowTexts(Database& db, const std::string& sql) {
    std::vector<std::string> out;
    for (auto rs = db.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) {
        std::string line;
        for (size_t i = 0; i < rs.Columns().size(); ++i) {
            const DbValue& v = rs.Field(i);
            line += (i ? "|" : "") + (v.isNull() ? std::string("<null>") : v.text());
        }
        out.push_back(line);
    }
    return out;
}

int TestDb::count(const std::string& table) const {
    return db->OpenRecordset("SELECT COUNT(*) AS n FROM " + table).Field("n").toLong();
}

int32_t TestDb::addBasket(const std::string& name, const std::string& button, int onButton) const {
    db->ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                   "VALUES('" +
                   name + "','" + button + "'," + std::to_string(onButton) + ",'B')");
    return db
        ->OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + name + "'")
        .Field("intBasketNum")
        .toLong();
}

void TestDb::addLine(int32_t basket, const std::string& sym, const std::string& qty,
                     const std::string& dest, const std::string& shares) const {
    db->ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest,nIndexShares) "
                   "VALUES(" +
                   std::to_string(basket) + ",'" + sym + "'," + qty + ",'" + dest + "'," +
                   (shares.empty() ? "NULL" : shares) + ")");
}

std::vector<std::string> TestDb::lines(int32_t basket) const {
    return rows("SELECT strSym, intQty, strDest, nIndexShares FROM tblBasketDetails WHERE "
                "intBasketNum = " +
                std::to_string(basket) + " ORDER BY intRecordNum");
}

void TestDb::addAccount(const std::string& name, int isDefault) const {
    db->ExecuteSql("INSERT INTO tblAccount(strAcct,lngDefault) VALUES('" + name + "'," +
                   std::to_string(isDefault) + ")");
}

} // namespace wicker::test
