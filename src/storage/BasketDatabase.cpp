#include "storage/BasketDatabase.h"

#include "common/Conversions.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "storage/JetSql.h"
#include "storage/TextFile.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace wicker {
namespace {

struct ColumnSpec {
    const char* name;
    const char* type;
};

struct TableSpec {
    const char* name;
    std::vector<ColumnSpec> columns;
};

// The six tables in creation order, columns in their order. "Counter" marks the
// auto-increment columns. The last three columns of tblOrders are the journal's own.
const std::vector<TableSpec>& Schema() {
    static const std::vector<TableSpec> tables = {
        {"tblAccount", {{"strAcct", "Text(50)"}, {"lngDefault", "Long"}}},
        {"tblBaskets",
         {{"intBasketNum", "Counter"},
          {"strBasketName", "Text(100)"},
          {"strButtonName", "Text(50)"},
          {"intOnButton", "Long"},
          {"chType", "Text(1)"},
          {"sngDivisor", "Single"}}},
        {"tblBasketDetails",
         {{"intRecordNum", "Counter"},
          {"intBasketNum", "Long"},
          {"strSym", "Text(10)"},
          {"intQty", "Long"},
          {"strDest", "Text(15)"},
          {"sngPrice", "Single"},
          {"strPriceType", "Text(10)"},
          {"sngPriceDiff", "Single"},
          {"sngSO", "Single"},
          {"sngDE", "Single"},
          {"sngWeight", "Single"}}},
        {"tblConfig", {{"strDbVersion", "Text(50)"}}},
        {"tblDest", {{"strDest", "Text(50)"}, {"intEnabled", "Long"}}},
        {"tblOrders",
         {{"TradeID", "Counter"},
          {"dtDate", "Date"},
          {"dtTime", "Date"},
          {"strClOrdId", "Text(100)"},
          {"intBasketSeq", "Long"},
          {"strAcct", "Text(50)"},
          {"strSym", "Text(10)"},
          {"strSide", "Text(1)"},
          {"sngOrdPrice", "Single"},
          {"lngOrdQty", "Long"},
          {"lngExecQty", "Long"},
          {"lngLvsQty", "Long"},
          {"strStatus", "Text(20)"},
          {"sngAvgExecPrice", "Single"},
          {"strDest", "Text(15)"},
          {"strBasketName", "Text(100)"},
          {"chTif", "Text(1)"}}},
    };
    return tables;
}

constexpr int kUnspecifiedFailure = dberr::Unspecified;

// Runs a statement, swallowing its failure; true when it failed (the pending error).
bool ExecuteIgnoringError(Database& db, const std::string& sql) {
    try {
        db.ExecuteSql(sql);
        return false;
    } catch (const std::exception&) {
        return true;
    }
}

// One upgrade step: schema change and stamp with errors resumed; on a pending error
// the stamp runs once more on a fresh command, so the version always moves on.
void UpgradeStep(Database& db, const char* schemaSql, const std::string& version) {
    const std::string stamp = "UPDATE tblConfig SET strDbVersion = '" + version + "'";
    bool failed = schemaSql != nullptr && ExecuteIgnoringError(db, schemaSql);
    failed = ExecuteIgnoringError(db, stamp) || failed;
    if (failed) {
        ExecuteIgnoringError(db, stamp);
    }
}

std::string Describe(const std::exception& e) {
    if (const auto* r = dynamic_cast<const RuntimeError*>(&e); r && r->number() != 0) {
        return std::to_string(r->number()) + " " + r->description();
    }
    if (const auto* d = dynamic_cast<const DbError*>(&e); d && d->number() != 0) {
        return std::to_string(d->number()) + " " + d->what();
    }
    return e.what();
}

// The finished file reaches the disk before it takes the real name.
void SyncToDisk(const std::filesystem::path& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 || ::fsync(fd) != 0) {
        const int why = errno;
        if (fd >= 0) {
            ::close(fd);
        }
        throw DbError("Database " + path.string() + " could not be written to the disk (" +
                          std::strerror(why) + ").",
                      kUnspecifiedFailure);
    }
    ::close(fd);
}

} // namespace

bool DatabaseFileUsable(const std::filesystem::path& path) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    return !ec && size >= 1;
}

void CreateBasketDatabase(const std::filesystem::path& path,
                          const std::function<void(Database&)>& fill) {
    const std::filesystem::path tmp = path.string() + ".creating";
    std::error_code ec;
    // Left by a start that was stopped half-way. Its journal must go too: SQLite would
    // otherwise play it back into the new file.
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
        std::filesystem::remove(tmp.string() + suffix, ec);
    }
    try {
        auto db = Database::Create(tmp);
        // Nothing reads the file before it is complete, and a crash leaves only the
        // temporary file: no disk journal, no syncs while it is built; one sync below.
        db->ExecuteSql("PRAGMA journal_mode = MEMORY");
        db->ExecuteSql("PRAGMA synchronous = OFF");
        Database::Transaction tx(*db);
        for (const auto& table : Schema()) {
            std::string sql = "CREATE TABLE \"" + std::string(table.name) + "\" (";
            for (size_t i = 0; i < table.columns.size(); ++i) {
                sql += (i ? ", " : "") + JetColumnDef(table.columns[i].name, table.columns[i].type);
            }
            db->ExecuteSql(sql + ")");
        }
        if (fill) {
            fill(*db);
        }
        tx.commit();
    } catch (...) {
        std::filesystem::remove(tmp, ec);
        throw;
    }
    SyncToDisk(tmp);
    // A zero-length file under the real name is what we replace; anything else stays.
    if (DatabaseFileUsable(path)) {
        std::filesystem::remove(tmp, ec);
        throw DbError("Database " + path.string() + " already exists.", kUnspecifiedFailure);
    }
    std::filesystem::rename(tmp, path);
}

std::string GetDbVersion(Database& db, MessageBoxes& boxes) {
    try {
        Recordset rs = db.OpenRecordset("SELECT strDbVersion FROM tblConfig");
        return Trim(rs.Field("strDbVersion").text());
    } catch (const std::exception&) {
        boxes.show("Could not get database version.", 0, "Database Error.");
        return {};
    }
}

void CreateInitialData(Database& db) {
    for (const char* dest : {"AMEX", "ARCA", "INCA", "INET", "NASDAQ", "NYSE", "NYSE+", "NY/AM"}) {
        db.ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('" + std::string(dest) +
                      "',1)");
    }
    db.ExecuteSql("INSERT INTO tblConfig(strDbVersion) VALUES('1.2.0')");
}

void ImportLegacyAccounts(Database& db, const std::filesystem::path& appFolder,
                          MessageBoxes& boxes) {
    try {
        for (const auto& line : ReadTextLines(appFolder / "account.txt")) {
            db.ExecuteSql("INSERT INTO tblAccount(strAcct) VALUES('" + SqlText(line) + "')");
        }
    } catch (const RuntimeError& e) {
        if (e.number() == err::FileNotFound) {
            boxes.show("Account file does not exist.", 0, "");
        } else {
            boxes.show(Describe(e), 0, "Error loading file.");
        }
    } catch (const DbError& e) {
        if (e.number() != kUnspecifiedFailure) {
            boxes.show(Describe(e), 0, "Error loading file.");
        }
    }
}

void ImportLegacyBaskets(Database& db, const std::filesystem::path& appFolder, Progress* progress) {
    const auto folder = appFolder / "Baskets";
    const std::vector<std::string> index = ReadTextLines(folder / "basket.txt");
    for (size_t n = 0; n < index.size(); ++n) {
        if (progress) {
            progress->advance("Importing the old baskets", n, index.size());
        }
        const std::string& line = index[n];
        const auto f = Split(line, ",");
        if (f.size() != 4) {
            continue;
        }
        const std::string flag = std::to_string(CInt(std::string_view(f[3])));
        db.ExecuteSql(
            "INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) VALUES('" +
            SqlText(f[0]) + "','" + SqlText(f[1]) + "'," + flag + ",'B')");
        Recordset rs = db.OpenRecordset(
            "SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" + SqlText(f[0]) + "'");
        const int16_t basketNum = rs.Field("intBasketNum").toInt();
        // The list is only a text file: it must not reach devices or other people's files.
        if (const auto named = folder / f[2];
            std::filesystem::exists(named) && !IsFileInside(named, appFolder)) {
            throw std::runtime_error("The basket file \"" + f[2] + "\" of basket " + f[0] +
                                     " is not a file inside " + appFolder.string() + ".");
        }
        for (const auto& row : ReadTextLines(folder / f[2])) {
            const auto r = Split(row, ",");
            if (r.size() != 3) {
                continue;
            }
            db.ExecuteSql(
                "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
                std::to_string(basketNum) + ",'" + SqlText(r[0]) + "'," + SqlNumber(r[1]) + ",'" +
                SqlText(r[2]) + "')");
        }
    }
    if (progress) {
        progress->advance("Importing the old baskets", index.size(), index.size());
    }
}

void UpgradeTo121(Database& db) {
    UpgradeStep(db, nullptr, "1.2.1");
}
void UpgradeTo4010(Database& db) {
    UpgradeStep(db, "ALTER TABLE tblBasketDetails ALTER COLUMN intQty Double", "4010");
}
void UpgradeTo4013(Database& db) {
    UpgradeStep(db, nullptr, "4013");
}
void UpgradeTo5010(Database& db) {
    UpgradeStep(db, "ALTER TABLE tblBasketDetails ADD COLUMN nIndexShares Long", "5010");
}

std::vector<std::string> RunVersionLadder(Database& db, const std::string& version) {
    struct Step {
        const char* name;
        void (*run)(Database&);
    };
    static const Step steps[] = {{"UpgradeTo121", UpgradeTo121},
                                 {"UpgradeTo4010", UpgradeTo4010},
                                 {"UpgradeTo4013", UpgradeTo4013},
                                 {"UpgradeTo5010", UpgradeTo5010}};
    size_t first = 4;
    if (version == "1.2.0") {
        first = 0;
    } else if (version == "1.2.1") {
        first = 1;
    } else if (version == "4010") {
        first = 2;
    } else if (version == "4013") {
        first = 3;
    }
    std::vector<std::string> ran;
    for (size_t i = first; i < 4; ++i) {
        steps[i].run(db);
        ran.emplace_back(steps[i].name);
    }
    return ran;
}

namespace {

// What a new file holds before it is put in place. Failures of the legacy baskets are
// told and the rest of the start goes on, as they always did; the rows before the
// failure stay.
void FillNewDatabase(Database& db, const std::filesystem::path& appFolder, MessageBoxes& boxes,
                     Progress* progress) {
    CreateInitialData(db);
    ImportLegacyAccounts(db, appFolder, boxes);
    try {
        ImportLegacyBaskets(db, appFolder, progress);
    } catch (const RuntimeError& e) {
        // A new user has no legacy baskets: that is not worth a message.
        if (e.number() != err::FileNotFound ||
            std::filesystem::exists(appFolder / "Baskets" / "basket.txt")) {
            boxes.show("The old basket files in " + (appFolder / "Baskets").string() +
                           " were imported only in part: " + Describe(e),
                       48, "Error loading file.");
        }
    } catch (const std::exception& e) {
        boxes.show("The old basket files in " + (appFolder / "Baskets").string() +
                       " were imported only in part: " + Describe(e),
                   48, "Error loading file.");
    }
}

} // namespace

Result<DatabaseStartup> OpenBasketDatabase(const std::filesystem::path& appFolder,
                                           MessageBoxes& boxes, Progress* progress) {
    const auto path = appFolder / "baskets.mdb";
    DatabaseStartup out;
    try {
        std::filesystem::create_directories(appFolder);
        if (!DatabaseFileUsable(path)) {
            out.created = true;
            bool filling = false;
            try {
                CreateBasketDatabase(path, [&](Database& db) {
                    filling = true;
                    FillNewDatabase(db, appFolder, boxes, progress);
                    filling = false;
                    // The new file climbs the whole ladder before it is put in place too.
                    out.versionFound = GetDbVersion(db, boxes);
                    out.stepsRun = RunVersionLadder(db, out.versionFound);
                });
            } catch (const std::exception& e) {
                if (!filling) {
                    throw;
                }
                return Error{"The new basket database " + path.string() +
                             " could not be filled with its initial data.\n\n" + e.what()};
            }
        }
        out.db = Database::Open(path);
    } catch (const std::exception& e) {
        return Error{"The basket database " + path.string() +
                     " cannot be opened, so Wicker cannot start. The file has been left as it "
                     "is.\n\n" +
                     e.what()};
    }
    if (!out.created) {
        out.versionFound = GetDbVersion(*out.db, boxes);
        out.stepsRun = RunVersionLadder(*out.db, out.versionFound);
    }
    return out;
}

int32_t SaveBasketDetails(Database& db, int32_t basketNum, const std::string& basketName,
                          const std::vector<BasketLine>& lines) {
    ExecuteIgnoringError(db, "DELETE FROM tblBasketDetails WHERE intBasketNum = " +
                                 std::to_string(basketNum));
    for (const auto& line : lines) {
        try {
            db.ExecuteSql(
                "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) VALUES(" +
                std::to_string(basketNum) + ",'" + SqlText(line.symbol) + "'," +
                SqlNumber(line.quantity) + ",'" + SqlText(line.destination) + "')");
        } catch (const std::exception&) {
            // A row the database refuses is skipped; the others are kept.
        }
    }
    try {
        Recordset rs =
            db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE strBasketName = '" +
                             SqlText(basketName) + "'");
        return rs.Field("intBasketNum").toLong();
    } catch (const std::exception&) {
        return basketNum;
    }
}

void SetDefaultAccount(Database& db, const std::string& account) {
    // Refuse a bad name before the old default is cleared.
    const std::string quoted = SqlText(account);
    bool known = false;
    Recordset rs = db.OpenRecordset("SELECT strAcct FROM tblAccount");
    for (; !rs.IsEOF(); rs.MoveNext()) {
        if (rs.Field("strAcct").text() == account) {
            known = true;
        }
    }
    Database::Transaction tx(db);
    db.ExecuteSql("UPDATE tblAccount SET lngDefault = 0");
    if (known) {
        db.ExecuteSql("UPDATE tblAccount SET lngDefault = 1 WHERE strAcct = '" + quoted + "'");
    } else {
        db.ExecuteSql("INSERT INTO tblAccount(strAcct,lngDefault) VALUES('" + quoted + "',1)");
    }
    tx.commit();
}

bool IsDbVersion4013(Database& db) {
    try {
        db.OpenRecordset("SELECT chTif FROM tblOrders");
        return true;
    } catch (const DbError&) {
        return false;
    }
}

} // namespace wicker
