#include "admin/AccountSetup.h"

#include "storage/JetSql.h"

namespace wicker {

AccountSetup LoadAccountSetup(Database& db) {
    AccountSetup setup;
    for (auto rs = db.OpenRecordset("SELECT * FROM tblAccount ORDER BY strAcct"); !rs.IsEOF();
         rs.MoveNext()) {
        std::string account = rs.Field("strAcct").text();
        if (rs.Field("lngDefault").toLong() == 1) {
            setup.defaultAccount = account;
        }
        setup.accounts.push_back(std::move(account));
    }
    return setup;
}

void SaveAccountSetup(Database& db, const std::vector<std::string>& accounts,
                      const std::string& defaultAccount) {
    // The table is rewritten whole; a failure half-way must not leave it half-written.
    Database::Transaction transaction(db);
    db.ExecuteSql("DELETE FROM tblAccount");
    for (const auto& account : accounts) {
        db.ExecuteSql("INSERT INTO tblAccount(strAcct) VALUES('" + SqlText(account) + "')");
    }
    db.ExecuteSql("UPDATE tblAccount SET lngDefault = 0");
    db.ExecuteSql("UPDATE tblAccount SET lngDefault = 1 WHERE strAcct = '" +
                  SqlText(defaultAccount) + "'");
    transaction.commit();
}

} // namespace wicker
