#include "storage/Database.h"
#include "storage/JetSql.h"
#include "trading/OrderChangeFixture.h"
#include "trading/orders/OrderJournal.h"

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

JournalEntry Entry() {
    JournalEntry e;
    e.sent = LocalDateTime{2024, 3, 5, 9, 4, 7, 0};
    e.clOrderId = "DEMO01-20240305-57-3-M1";
    e.basketSeq = 57;
    e.account = "DEMO01";
    e.symbol = "IBM";
    e.side = "B";
    e.destination = "NASDAQ";
    e.price = 10.25;
    e.quantity = 300;
    e.leaves = 200;
    e.basketName = "Tech10";
    e.tif = "D";
    return e;
}

TEST(JournalInsertSql, NamesEveryColumnOnANewFileAndLeavesTheThreeOutOnAnOldOne) {
    EXPECT_EQ(JournalInsertSql(Entry(), true),
              "INSERT INTO tblOrders(dtDate,dtTime,strClOrdId,intBasketSeq,strAcct,strSym,strSide,"
              "strDest,sngOrdPrice,lngOrdQty,lngLvsQty,lngExecQty,strStatus,strBasketName,chTif) "
              "VALUES('2024-03-05','09:04:07','DEMO01-20240305-57-3-M1',57,'DEMO01','IBM','B',"
              "'NASDAQ',10.25,300,200,0,'Sending-N','Tech10','D')");
    EXPECT_EQ(JournalInsertSql(Entry(), false),
              "INSERT INTO tblOrders(dtDate,dtTime,strClOrdId,intBasketSeq,strAcct,strSym,strSide,"
              "sngOrdPrice,lngOrdQty,lngLvsQty,lngExecQty,strStatus) "
              "VALUES('2024-03-05','09:04:07','DEMO01-20240305-57-3-M1',57,'DEMO01','IBM','B',"
              "10.25,300,200,0,'Sending-N')");
}

TEST(JournalInsertSql, AValueTheStatementCannotHoldFailsBeforeTheDatabase) {
    JournalEntry quoted = Entry();
    quoted.basketName = "Bob's";
    EXPECT_THROW(JournalInsertSql(quoted, true), DbError);
    // Left out on an old file, the name cannot stop the row there.
    EXPECT_NO_THROW(JournalInsertSql(quoted, false));
    JournalEntry notANumber = Entry();
    notANumber.price = std::numeric_limits<double>::infinity();
    EXPECT_THROW(JournalInsertSql(notANumber, false), DbError);
}

TEST_F(OrderChange, TheJournalAsksForTheShapeOfItsTableAndReadsItsIdsBack) {
    OrderJournal journal(*db);
    ASSERT_TRUE(journal.WithTifColumns());
    journal.Execute(JournalInsertSql(Entry(), true));
    JournalEntry other = Entry();
    other.basketSeq = 58;
    other.clOrderId = "DEMO01-20240305-58-1-M1";
    journal.Execute(JournalInsertSql(other, true));
    EXPECT_EQ(journal.ClOrderIds(57), std::vector<std::string>{"DEMO01-20240305-57-3-M1"});

    Recordset rs = db->OpenRecordset(
        "SELECT strStatus, lngExecQty, chTif, strBasketName, dtDate FROM tblOrders WHERE "
        "intBasketSeq = 57");
    EXPECT_EQ(rs.Field("strStatus").text(), "Sending-N");
    EXPECT_EQ(rs.Field("lngExecQty").toLong(), 0);
    EXPECT_EQ(rs.Field("chTif").text(), "D");
    EXPECT_EQ(rs.Field("strBasketName").text(), "Tech10");
    EXPECT_EQ(rs.Field("dtDate").text(), "2024-03-05");
}

TEST_F(OrderChange, AnOldFileTakesTheShortStatement) {
    UseOldJournalTable();
    OrderJournal journal(*db);
    EXPECT_FALSE(journal.WithTifColumns());
    journal.Execute(JournalInsertSql(Entry(), false));
    EXPECT_EQ(JournalRows(), 1);
    EXPECT_THROW(journal.Execute(JournalInsertSql(Entry(), true)), DbError);
}

} // namespace
} // namespace wicker::test
