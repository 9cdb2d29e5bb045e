#include "storage/Database.h"
#include "storage/JetSql.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

int DbErrorOf(auto&& f) {
    try {
        f();
    } catch (const DbError& e) {
        return e.number();
    }
    return 0;
}

TEST(SqlGuards, ApostropheAndNumberSlots) {
    EXPECT_EQ(SqlText("IBM"), "IBM");
    EXPECT_EQ(DbErrorOf([] { SqlText("O'Brien"); }), dberr::SyntaxError);
    EXPECT_EQ(DbErrorOf([] { SqlText("x' OR '1'='1"); }), dberr::SyntaxError);
    EXPECT_EQ(SqlNumber("100"), "100");
    EXPECT_EQ(SqlNumber(" 100"), " 100");
    EXPECT_EQ(SqlNumber("-1.5e3"), "-1.5e3");
    for (const char* bad : {"", "abc", "1;DROP TABLE tblAccount", "1 OR 1=1", "0x10", "1e", "."}) {
        EXPECT_EQ(DbErrorOf([&] { SqlNumber(bad); }), dberr::SyntaxError) << bad;
    }
}

TEST(TranslateJet, Rewrites) {
    struct Row {
        const char* jet;
        const char* sqlite;
    };
    const Row rows[] = {
        {"UPDATE t SET a = 1 WHERE ISNULL(b)", "UPDATE t SET a = 1 WHERE ((b) IS NULL)"},
        {"SELECT * FROM t WHERE IsNull(f(x, y)) AND c = 'ISNULL(z)'",
         "SELECT * FROM t WHERE ((f (x, y)) IS NULL) AND c = 'ISNULL(z)'"},
        {"SELECT a FROM t;", "SELECT a FROM t"},
        {"INSERT INTO t(d) VALUES(#11/22/2026#)", "INSERT INTO t (d) VALUES ('11/22/2026')"},
        {"SELECT a FROM t WHERE b = 'O''Neil;'", "SELECT a FROM t WHERE b = 'O''Neil;'"},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(TranslateJet(r.jet).sql, r.sqlite) << r.jet;
    }
}

TEST(TranslateJet, OneStatementPerCall) {
    EXPECT_EQ(DbErrorOf([] { TranslateJet("DELETE FROM a; DELETE FROM b"); }), dberr::SyntaxError);
    EXPECT_EQ(DbErrorOf([] { TranslateJet("SELECT 'unterminated"); }), dberr::SyntaxError);
    EXPECT_EQ(DbErrorOf([] { TranslateJet("   "); }), dberr::SyntaxError);
    EXPECT_NO_THROW(TranslateJet("SELECT 'a;b' FROM t"));
}

TEST(TranslateJet, MalformedTextSizesAreDatabaseErrors) {
    for (const char* size : {".5", "99999999999", "0", "256", "-1", "1e2", "", " "}) {
        const std::string sql = std::string("ALTER TABLE t ADD COLUMN d Text(") + size + ")";
        EXPECT_EQ(DbErrorOf([&] { TranslateJet(sql); }), dberr::SyntaxError) << sql;
    }
    EXPECT_NO_THROW(TranslateJet("ALTER TABLE t ADD COLUMN d Text(255)"));
}

TEST(TranslateJet, AlterColumnBecomesARebuildRequest) {
    const auto st = TranslateJet("ALTER TABLE [tblBasketDetails] ALTER COLUMN [intQty] Double");
    ASSERT_TRUE(st.alterColumn.has_value());
    EXPECT_EQ(st.alterColumn->table, "tblBasketDetails");
    EXPECT_EQ(st.alterColumn->column, "intQty");
    EXPECT_EQ(st.alterColumn->type, "Double");
}

class DatabaseTest : public testing::Test {
protected:
    std::unique_ptr<Database> db = Database::OpenInMemory();
    void SetUp() override {
        db->ExecuteSql("CREATE TABLE t (" + JetColumnDef("name", "Text(5)") + ", " +
                       JetColumnDef("qty", "Long") + ", " + JetColumnDef("id", "Counter") + ")");
    }
    int64_t Count() { return db->OpenRecordset("SELECT COUNT(*) AS n FROM t").Field("n").toLong(); }
};

TEST_F(DatabaseTest, TextComparesWithoutCaseAndRefusesLongValues) {
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('abc',1)");
    EXPECT_EQ(db->OpenRecordset("SELECT qty FROM t WHERE name = 'ABC'").RowCount(), 1u);
    EXPECT_EQ(DbErrorOf([&] { db->ExecuteSql("INSERT INTO t(name,qty) VALUES('abcdef',1)"); }),
              dberr::Unspecified);
    EXPECT_EQ(Count(), 1);
}

TEST_F(DatabaseTest, NumericColumnsRefuseText) {
    EXPECT_NE(DbErrorOf([&] { db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a','x')"); }), 0);
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a','12')"); // numeric text converts
    EXPECT_EQ(db->OpenRecordset("SELECT qty FROM t").Field("qty").toLong(), 12);
    EXPECT_NE(DbErrorOf([&] { db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a',3000000000)"); }),
              0);
}

TEST_F(DatabaseTest, AutoIncrementAndFieldLookup) {
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a',1)");
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('b',NULL)");
    Recordset rs = db->OpenRecordset("SELECT id, NAME, qty FROM t ORDER BY id");
    EXPECT_EQ(rs.Field("ID").toLong(), 1);
    rs.MoveNext();
    EXPECT_EQ(rs.Field("id").toLong(), 2);
    EXPECT_TRUE(rs.Field("qty").isNull());
    EXPECT_EQ(rs.Field("qty").text(), "");
    EXPECT_THROW(rs.Field("nope"), DbError);
    rs.MoveNext();
    EXPECT_TRUE(rs.IsEOF());
    EXPECT_THROW(rs.Field("id"), DbError);
}

TEST_F(DatabaseTest, AlterColumnRebuildsKeepingRowsAndChecks) {
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a',7)");
    db->ExecuteSql("ALTER TABLE t ALTER COLUMN qty Double");
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('b',1.5)");
    Recordset rs = db->OpenRecordset("SELECT name, qty, id FROM t ORDER BY id");
    EXPECT_EQ(rs.Field("qty").toDouble(), 7.0);
    rs.MoveNext();
    EXPECT_EQ(rs.Field("qty").toDouble(), 1.5);
    EXPECT_EQ(rs.Field("id").toLong(), 2);
    // Checks of the other columns survived the rebuild.
    EXPECT_NE(DbErrorOf([&] { db->ExecuteSql("INSERT INTO t(name,qty) VALUES('toolong',1)"); }), 0);
    EXPECT_NE(DbErrorOf([&] { db->ExecuteSql("ALTER TABLE nope ALTER COLUMN qty Double"); }), 0);
    EXPECT_NE(DbErrorOf([&] { db->ExecuteSql("ALTER TABLE t ALTER COLUMN nope Double"); }), 0);
}

TEST_F(DatabaseTest, InjectionThroughGuardsChangesNothing) {
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('a',1)");
    db->ExecuteSql("INSERT INTO t(name,qty) VALUES('b',2)");
    const std::string evil = "x' OR '1'='1";
    EXPECT_THROW(db->ExecuteSql("DELETE FROM t WHERE name = '" + SqlText(evil) + "'"), DbError);
    EXPECT_THROW(db->ExecuteSql("DELETE FROM t WHERE qty = " + SqlNumber("1 OR 1=1")), DbError);
    // Even unguarded, a second statement never runs.
    EXPECT_THROW(db->ExecuteSql("DELETE FROM t WHERE qty = 1; DELETE FROM t"), DbError);
    EXPECT_EQ(Count(), 2);
}

} // namespace
} // namespace wicker
