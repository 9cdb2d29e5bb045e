#pragma once

#include "admin/TradingDataReset.h"
#include "common/MessageBox.h"
#include "storage/Database.h"

namespace wicker {

/// "Test DB Connection": reads the first schema version row and reports it, or the
/// error under "Database Error.". True when the read worked.
bool TestDbConnection(Database& db, MessageBoxes& boxes);

/// "Create Initial Data": the eight destinations and the version row "1.2.0" once more,
/// whatever is there already (a repair tool for an emptied database). All or nothing;
/// DbError when a statement fails.
void CreateInitialDataAgain(Database& db);

/// "Clear Trading Data": clears the main screen's trading data and says so.
void ClearTradingData(TradingDataReset& trading, MessageBoxes& boxes);

/// "Mark All Orders as Closed": asks first (No is the default); true when answered Yes
/// and the orders were marked.
bool MarkAllOrdersClosed(TradingDataReset& trading, MessageBoxes& boxes);

} // namespace wicker
