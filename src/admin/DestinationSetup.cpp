#include "admin/DestinationSetup.h"

#include "storage/JetSql.h"

namespace wicker {

std::vector<std::string> LoadDestinationSetup(Database& db) {
    std::vector<std::string> destinations;
    for (auto rs = db.OpenRecordset("SELECT * FROM tblDest ORDER BY strDest"); !rs.IsEOF();
         rs.MoveNext()) {
        destinations.push_back(rs.Field("strDest").text());
    }
    return destinations;
}

void SaveDestinationSetup(Database& db, const std::vector<std::string>& destinations) {
    Database::Transaction transaction(db);
    db.ExecuteSql("DELETE FROM tblDest");
    for (const auto& destination : destinations) {
        db.ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('" + SqlText(destination) +
                      "',1)");
    }
    transaction.commit();
}

} // namespace wicker
