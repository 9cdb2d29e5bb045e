#pragma once

#include "common/MessageBox.h"
#include "common/Progress.h"
#include "common/Result.h"
#include "storage/Database.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wicker {

/// What the start-up of the database did, for the screen and for tests.
struct DatabaseStartup {
    std::unique_ptr<Database> db;
    bool created = false;              ///< file was missing or empty and was made anew
    std::string versionFound;          ///< version read before the ladder ran
    std::vector<std::string> stepsRun; ///< e.g. {"UpgradeTo4013", "UpgradeTo5010"}
};

/// The whole start-up of baskets.mdb in the application folder: create when missing or
/// empty (initial data and legacy import then), open, walk the version ladder.
/// A file that exists, is not empty and is not a database is never written: the
/// result is an Error naming the file. A new file gets its initial data and the legacy
/// import before it is put in place (see CreateBasketDatabase); `progress` hears how the
/// legacy import advances.
Result<DatabaseStartup> OpenBasketDatabase(const std::filesystem::path& appFolder,
                                           MessageBoxes& boxes, Progress* progress = nullptr);

/// True when the file exists and holds at least one byte.
bool DatabaseFileUsable(const std::filesystem::path& path);

/// Creates the file with the six tables, then lets `fill` write its first rows, all in one
/// transaction in a temporary file that is renamed to `path` only when complete: a start
/// stopped half-way leaves no database, so the next start builds it again.
void CreateBasketDatabase(const std::filesystem::path& path,
                          const std::function<void(Database&)>& fill = {});

/// Steps of the start-up, each on the open connection.
std::string GetDbVersion(Database& db, MessageBoxes& boxes);
void CreateInitialData(Database& db);
void ImportLegacyAccounts(Database& db, const std::filesystem::path& appFolder,
                          MessageBoxes& boxes);
/// Throws (RuntimeError, DbError, std::runtime_error) on the first failure; rows
/// already inserted stay.
void ImportLegacyBaskets(Database& db, const std::filesystem::path& appFolder,
                         Progress* progress = nullptr);
void UpgradeTo121(Database& db);
void UpgradeTo4010(Database& db);
void UpgradeTo4013(Database& db);
void UpgradeTo5010(Database& db);
/// Runs the steps the version needs; returns their names.
std::vector<std::string> RunVersionLadder(Database& db, const std::string& version);

/// One line of a basket as stored: symbol, quantity text (spliced as it stands), destination.
struct BasketLine {
    std::string symbol;
    std::string quantity;
    std::string destination;
};

/// Replaces the rows of basket `basketNum` with `lines` (failures of single rows are
/// skipped, as they always were) and returns the number read back by the basket's name.
int32_t SaveBasketDetails(Database& db, int32_t basketNum, const std::string& basketName,
                          const std::vector<BasketLine>& lines);

/// Makes `account` the only default account, adding it when it is new (exact case).
void SetDefaultAccount(Database& db, const std::string& account);

/// True when tblOrders has the chTif column.
bool IsDbVersion4013(Database& db);

} // namespace wicker
