#include "admin/Utilities.h"

#include "storage/BasketDatabase.h"

#include <exception>
#include <string>

namespace wicker {

bool TestDbConnection(Database& db, MessageBoxes& boxes) {
    std::string version;
    try {
        // Past the last row (an empty tblConfig) is an error as well.
        version =
            db.OpenRecordset("SELECT strDbVersion FROM tblConfig").Field("strDbVersion").text();
    } catch (const std::exception& e) {
        boxes.show(e.what(), 0, "Database Error.");
        return false;
    }
    boxes.show("Successfully connected to database.\r\nDatabase version " + version, 0,
               "Database Test Successful!");
    return true;
}

void CreateInitialDataAgain(Database& db) {
    Database::Transaction transaction(db);
    CreateInitialData(db);
    transaction.commit();
}

void ClearTradingData(TradingDataReset& trading, MessageBoxes& boxes) {
    trading.ClearTradingData();
    boxes.show("Trading data cleared.", 0, "");
}

bool MarkAllOrdersClosed(TradingDataReset& trading, MessageBoxes& boxes) {
    // 292: Yes and No, question icon, No the default.
    if (boxes.show("Do you want to mark all orders closed?", 292, "Order Maint.") !=
        MsgAnswer::Yes) {
        return false;
    }
    trading.MarkAllOrdersClosed();
    return true;
}

} // namespace wicker
