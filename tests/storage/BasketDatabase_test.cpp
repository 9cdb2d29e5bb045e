#include "common/RuntimeError.h"
#include "storage/BasketDatabase.h"
#include "storage/JetSql.h"
#include "support/RecordingMessageBoxes.h"
#include "support/Subprocess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace wicker {
namespace {

using test::ReadFile;
using test::WriteFile;
using Strings = std::vector<std::string>;

Strings Column(Database& db, const std::string& sql, const char* field) {
    Strings out;
    for (Recordset rs = db.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) {
        out.push_back(rs.Field(field).text());
    }
    return out;
}

std::string ColumnType(Database& db, const char* table, const char* column) {
    Recordset rs = db.OpenRecordset(std::string("SELECT type FROM pragma_table_info('") + table +
                                    "') WHERE name = '" + column + "'");
    return rs.IsEOF() ? "" : rs.Field("type").text();
}

class BasketDatabaseTest : public testing::Test {
protected:
    test::TempDir dir;
    test::RecordingMessageBoxes boxes;
    std::filesystem::path mdb() const { return dir / "baskets.mdb"; }

    DatabaseStartup Start() {
        auto r = OpenBasketDatabase(dir.path(), boxes);
        if (!r) {
            ADD_FAILURE() << r.error().message;
            throw std::runtime_error(r.error().message);
        }
        return std::move(r).value();
    }

    // A database as an older version of the program left it.
    void MakeOldDatabase(const std::string& version) {
        CreateBasketDatabase(mdb());
        auto db = Database::Open(mdb());
        CreateInitialData(*db);
        db->ExecuteSql("UPDATE tblConfig SET strDbVersion = '" + version + "'");
    }
};

TEST_F(BasketDatabaseTest, NewFileClimbsTheWholeLadder) {
    auto s = Start();
    EXPECT_TRUE(s.created);
    EXPECT_EQ(s.versionFound, "1.2.0");
    EXPECT_EQ(s.stepsRun,
              (Strings{"UpgradeTo121", "UpgradeTo4010", "UpgradeTo4013", "UpgradeTo5010"}));
    Database& db = *s.db;
    EXPECT_EQ(GetDbVersion(db, boxes), "5010");
    EXPECT_EQ(ColumnType(db, "tblBasketDetails", "intQty"), "Double");
    EXPECT_EQ(ColumnType(db, "tblBasketDetails", "nIndexShares"), "Long");
    EXPECT_EQ(Column(db, "SELECT strDest FROM tblDest", "strDest"),
              (Strings{"AMEX", "ARCA", "INCA", "INET", "NASDAQ", "NYSE", "NYSE+", "NY/AM"}));
    EXPECT_EQ(Column(db, "SELECT intEnabled FROM tblDest", "intEnabled"), Strings(8, "1"));
    EXPECT_TRUE(Column(db, "SELECT strAcct FROM tblAccount", "strAcct").empty());
    EXPECT_TRUE(IsDbVersion4013(db));
    // No legacy files: only the account file is missed, as it always was.
    EXPECT_EQ(boxes.texts(), Strings{"Account file does not exist."});
    // Fractional quantities fit after the upgrade; the journal insert works on a new file.
    db.ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) "
                  "VALUES(1,'IBM',1.5,'NYSE')");
    db.ExecuteSql("INSERT INTO tblOrders(dtDate,strClOrdId,strDest,strBasketName,chTif) "
                  "VALUES(#2026-11-22#,'A-1','NYSE','Tech','D')");
}

TEST_F(BasketDatabaseTest, SecondStartRunsNothing) {
    Start();
    boxes.clear();
    auto s = Start();
    EXPECT_FALSE(s.created);
    EXPECT_EQ(s.versionFound, "5010");
    EXPECT_TRUE(s.stepsRun.empty());
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(BasketDatabaseTest, LadderByStoredVersion) {
    struct Row {
        const char* version;
        size_t steps;
        const char* after;
    };
    const Row rows[] = {{"1.2.1", 3, "5010"}, {"4010", 2, "5010"}, {"4013", 1, "5010"},
                        {"5010", 0, "5010"},  {"5.0", 0, "5.0"},   {"", 0, ""}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.version);
        std::filesystem::remove(mdb());
        MakeOldDatabase(r.version);
        auto s = Start();
        EXPECT_FALSE(s.created);
        EXPECT_EQ(s.stepsRun.size(), r.steps);
        EXPECT_EQ(GetDbVersion(*s.db, boxes), r.after);
    }
}

TEST_F(BasketDatabaseTest, At4010OnlyStampAndIndexSharesColumn) {
    MakeOldDatabase("4010");
    auto s = Start();
    EXPECT_EQ(s.stepsRun, (Strings{"UpgradeTo4013", "UpgradeTo5010"}));
    // The 4010 step did not run again: intQty stays as the old file had it.
    EXPECT_EQ(ColumnType(*s.db, "tblBasketDetails", "intQty"), "Long");
    EXPECT_EQ(ColumnType(*s.db, "tblBasketDetails", "nIndexShares"), "Long");
}

TEST_F(BasketDatabaseTest, RepeatedUpgradeStillStamps) {
    auto s = Start();
    s.db->ExecuteSql("UPDATE tblConfig SET strDbVersion = '4013'");
    UpgradeTo5010(*s.db); // ADD COLUMN fails: the column is there
    EXPECT_EQ(GetDbVersion(*s.db, boxes), "5010");
    UpgradeTo4010(*s.db); // ALTER of an already-Double column: harmless
    EXPECT_EQ(GetDbVersion(*s.db, boxes), "4010");
}

TEST_F(BasketDatabaseTest, VersionReadFailureShowsItsMessage) {
    auto db = Database::OpenInMemory();
    EXPECT_EQ(GetDbVersion(*db, boxes), "");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Could not get database version.");
    EXPECT_EQ(boxes.shown()[0].title, "Database Error.");
    EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
    EXPECT_TRUE(RunVersionLadder(*db, "").empty());
}

TEST_F(BasketDatabaseTest, ZeroLengthFileIsRecreatedAndLegacyImportedAgain) {
    WriteFile(dir / "account.txt", "ACC1\r\n");
    WriteFile(dir / "baskets.mdb", "");
    auto s = Start();
    EXPECT_TRUE(s.created);
    EXPECT_EQ(Column(*s.db, "SELECT strAcct FROM tblAccount", "strAcct"), Strings{"ACC1"});
    s.db.reset();
    std::filesystem::resize_file(mdb(), 0);
    auto again = Start();
    EXPECT_TRUE(again.created);
    EXPECT_EQ(Column(*again.db, "SELECT strAcct FROM tblAccount", "strAcct"), Strings{"ACC1"});
}

TEST_F(BasketDatabaseTest, GarbageFileIsRefusedAndLeftUnchanged) {
    std::string garbage(5000, '\0');
    for (size_t i = 0; i < garbage.size(); ++i) {
        garbage[i] = static_cast<char>((i * 7919) % 251);
    }
    WriteFile(mdb(), garbage);
    auto r = OpenBasketDatabase(dir.path(), boxes);
    ASSERT_FALSE(r);
    EXPECT_NE(r.error().message.find(mdb().string()), std::string::npos);
    EXPECT_EQ(ReadFile(mdb()), garbage);
    EXPECT_FALSE(std::filesystem::exists(dir / "baskets.mdb.creating"));
    EXPECT_FALSE(std::filesystem::exists(dir / "baskets.mdb-journal"));
}

TEST_F(BasketDatabaseTest, DatabaseLockedByAnotherProgramIsInUseNotForeign) {
    MakeOldDatabase("5010");
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(mdb().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    auto r = OpenBasketDatabase(dir.path(), boxes);
    sqlite3_close(other);
    ASSERT_FALSE(r);
    EXPECT_NE(r.error().message.find("in use by another program"), std::string::npos)
        << r.error().message;
    EXPECT_EQ(r.error().message.find("not a basket database"), std::string::npos);
}

TEST_F(BasketDatabaseTest, FirstStartKilledDuringTheLegacyImportLeavesNoDatabase) {
    std::string index;
    for (int b = 0; b < 20; ++b) {
        index += "B" + std::to_string(b) + ",C" + std::to_string(b) + ",b" + std::to_string(b) +
                 ".txt,0\r\n";
        WriteFile(dir / ("Baskets/b" + std::to_string(b) + ".txt"),
                  "IBM,1,NYSE\r\nMSFT,2,INET\r\nT,3,NYSE\r\n");
    }
    WriteFile(dir / "Baskets/basket.txt", index);
    WriteFile(dir / "account.txt", "ACC1\r\n");
    {
        test::Subprocess first({test::FolderTool(), "firststart", dir.path().string(), "10"});
        ASSERT_TRUE(first.waitFor("paused"));
        first.killHard();
    }
    EXPECT_FALSE(std::filesystem::exists(mdb()));
    test::Subprocess again({test::FolderTool(), "firststart", dir.path().string()});
    EXPECT_EQ(again.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(dir / "baskets.mdb.creating"));
    auto s = Start();
    EXPECT_FALSE(s.created);
    EXPECT_EQ(Column(*s.db, "SELECT count(*) AS n FROM tblBaskets", "n"), Strings{"20"});
    EXPECT_EQ(Column(*s.db, "SELECT count(*) AS n FROM tblBasketDetails", "n"), Strings{"60"});
    EXPECT_EQ(Column(*s.db, "SELECT strAcct FROM tblAccount", "strAcct"), Strings{"ACC1"});
    EXPECT_EQ(s.versionFound, "5010");
}

TEST_F(BasketDatabaseTest, LegacyImportSkipsWrongFieldCountsAndKeepsBlanks) {
    WriteFile(dir / "account.txt", "ACC1\r\n\r\nacc1\r\nLAST");
    WriteFile(dir / "Baskets/basket.txt", "Tech,TECH,tech.txt,1\r\n"
                                          "Three,fields,only\r\n"
                                          "Five,a,b.txt,1,x\r\n"
                                          "Banks,BNK,banks.txt,0\r\n");
    WriteFile(dir / "Baskets/tech.txt",
              "IBM,100,NYSE\r\nMSFT,200, INET\r\nBAD,1\r\nTOO,1,2,3\r\nORCL,50.5,ARCA");
    WriteFile(dir / "Baskets/banks.txt", "JPM,10,NYSE\n");
    auto s = Start();
    Database& db = *s.db;
    // Lines are taken whole: an empty line is an empty account, case makes two accounts.
    EXPECT_EQ(Column(db, "SELECT strAcct FROM tblAccount", "strAcct"),
              (Strings{"ACC1", "", "acc1", "LAST"}));
    EXPECT_EQ(Column(db, "SELECT strBasketName FROM tblBaskets", "strBasketName"),
              (Strings{"Tech", "Banks"}));
    EXPECT_EQ(Column(db, "SELECT intOnButton FROM tblBaskets", "intOnButton"), (Strings{"1", "0"}));
    EXPECT_EQ(Column(db, "SELECT chType FROM tblBaskets", "chType"), (Strings{"B", "B"}));
    EXPECT_EQ(Column(db, "SELECT strDest FROM tblBasketDetails", "strDest"),
              (Strings{"NYSE", " INET", "ARCA", "NYSE"}));
    EXPECT_EQ(Column(db, "SELECT intQty FROM tblBasketDetails", "intQty"),
              (Strings{"100", "200", "50.5", "10"}));
    EXPECT_EQ(Column(db, "SELECT intBasketNum FROM tblBasketDetails", "intBasketNum"),
              (Strings{"1", "1", "1", "2"}));
    EXPECT_TRUE(Column(db, "SELECT sngDivisor FROM tblBaskets", "sngDivisor")[0].empty());
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(BasketDatabaseTest, ApostropheFailsOnlyItsStatement) {
    WriteFile(dir / "account.txt", "GOOD\r\nO'BRIEN\r\nNEVER");
    auto s = Start();
    // The import stops at the failing line with the number and text; earlier rows stay.
    EXPECT_EQ(Column(*s.db, "SELECT strAcct FROM tblAccount", "strAcct"), Strings{"GOOD"});
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Error loading file.");
    EXPECT_EQ(boxes.shown()[0].text.rfind(std::to_string(dberr::SyntaxError) + " ", 0), 0u);
}

TEST_F(BasketDatabaseTest, BadLegacyBasketStopsTheImportWithAMessage) {
    WriteFile(dir / "Baskets/basket.txt", "Good,G,g.txt,1\r\nBad,B,b.txt,yes\r\nLater,L,l.txt,0");
    WriteFile(dir / "Baskets/g.txt", "IBM,1,NYSE");
    auto s = Start();
    EXPECT_EQ(Column(*s.db, "SELECT strBasketName FROM tblBaskets", "strBasketName"),
              Strings{"Good"});
    EXPECT_EQ(GetDbVersion(*s.db, boxes), "5010"); // start-up went on
    ASSERT_EQ(boxes.shown().size(), 2u);
    EXPECT_EQ(boxes.shown()[1].title, "Error loading file.");
}

TEST_F(BasketDatabaseTest, LegacyBasketFilesMustBeRegularFilesInsideTheDataFolder) {
    const test::TempDir outside;
    WriteFile(outside / "secret.txt", "IBM,1,NYSE");
    struct Row {
        const char* name;
        std::string named;
    };
    const Row rows[] = {
        {"a device", "/dev/zero"},
        {"a file outside", (outside / "secret.txt").string()},
        {"a way out", "../../" + outside.path().filename().string() + "/secret.txt"},
        {"a folder", "."}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const test::TempDir data;
        WriteFile(data / "Baskets/basket.txt", "Bad,B," + r.named + ",1\r\n");
        boxes.clear();
        auto opened = OpenBasketDatabase(data.path(), boxes);
        ASSERT_TRUE(opened);
        EXPECT_EQ(Column(*opened.value().db, "SELECT strSym FROM tblBasketDetails", "strSym"),
                  Strings{});
        ASSERT_EQ(boxes.shown().size(), 2u); // the missing account file, then this
        EXPECT_NE(boxes.shown()[1].text.find("imported only in part"), std::string::npos);
    }
}

TEST_F(BasketDatabaseTest, SaveBasketDetailsReplacesRowsAndSkipsRefusedOnes) {
    auto s = Start();
    Database& db = *s.db;
    db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,intOnButton) VALUES('Tech',0)");
    db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,intOnButton) VALUES('Other',0)");
    db.ExecuteSql("INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) "
                  "VALUES(2,'KEEP',1,'NYSE')");
    SaveBasketDetails(db, 1, "Tech", {{"IBM", "100", "NYSE"}, {"MSFT", "200", "INET"}});
    const int32_t num = SaveBasketDetails(db, 1, "Tech",
                                          {{"AAPL", "10", "NYSE"},
                                           {"BAD'SYM", "1", "NYSE"},
                                           {"X", "abc", "NYSE"},
                                           {"T", "5", "ARCA"}});
    EXPECT_EQ(num, 1);
    EXPECT_EQ(Column(db, "SELECT strSym FROM tblBasketDetails WHERE intBasketNum = 1", "strSym"),
              (Strings{"AAPL", "T"}));
    EXPECT_EQ(Column(db, "SELECT strSym FROM tblBasketDetails WHERE intBasketNum = 2", "strSym"),
              Strings{"KEEP"});
}

TEST_F(BasketDatabaseTest, SetDefaultAccountAddsOrSwitches) {
    auto s = Start();
    Database& db = *s.db;
    SetDefaultAccount(db, "ACC1");
    SetDefaultAccount(db, "ACC2");
    EXPECT_EQ(Column(db, "SELECT strAcct FROM tblAccount WHERE lngDefault = 1", "strAcct"),
              Strings{"ACC2"});
    SetDefaultAccount(db, "ACC1");
    EXPECT_EQ(Column(db, "SELECT strAcct FROM tblAccount WHERE lngDefault = 1", "strAcct"),
              Strings{"ACC1"});
    EXPECT_EQ(Column(db, "SELECT strAcct FROM tblAccount", "strAcct").size(), 2u);
    EXPECT_THROW(SetDefaultAccount(db, "x' OR '1'='1"), DbError);
    EXPECT_THROW(SetDefaultAccount(db, std::string(51, 'A')), DbError); // too long: rolled back
    EXPECT_EQ(Column(db, "SELECT strAcct FROM tblAccount WHERE lngDefault = 1", "strAcct"),
              Strings{"ACC1"});
}

TEST_F(BasketDatabaseTest, IsDbVersion4013ProbesTheColumn) {
    auto db = Database::OpenInMemory();
    db->ExecuteSql("CREATE TABLE tblOrders (" + JetColumnDef("TradeID", "Counter") + ")");
    EXPECT_FALSE(IsDbVersion4013(*db));
    db->ExecuteSql("ALTER TABLE tblOrders ADD COLUMN chTif Text(1)");
    EXPECT_TRUE(IsDbVersion4013(*db));
}

TEST(DatabaseFileUsable, NeedsAtLeastOneByte) {
    test::TempDir d;
    EXPECT_FALSE(DatabaseFileUsable(d / "none"));
    WriteFile(d / "empty", "");
    EXPECT_FALSE(DatabaseFileUsable(d / "empty"));
    WriteFile(d / "one", "x");
    EXPECT_TRUE(DatabaseFileUsable(d / "one"));
}

} // namespace
} // namespace wicker
