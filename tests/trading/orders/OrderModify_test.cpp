#include "trading/OrderChangeFixture.h"
#include "trading/orders/OrderCancel.h"
#include "trading/orders/OrderModify.h"

#include <gtest/gtest.h>

namespace wicker::test {
namespace {

using Outcome = ModifyResult::Outcome;
using Field = ModifyResult::Field;

class ModifyOrder : public OrderChange {
protected:
    ModifyOrder() {
        Track(OrderRecord(11, "Tech10", 57, 3, "IBM", 300, 100, 200, 10.25));
        Track(OrderRecord(12, "Tech10", 57, 4, "MSFT", 100, 100, 0, 20.0)); // filled
    }
    ModifyResult Modify(int32_t recordId, OrderChangeInput input, bool confirm = false) {
        OrderReplace replace = Replacer();
        OrderModify modify(replace, tracker, boxes);
        return modify.ModifyOrder(recordId, input, confirm);
    }
};

TEST_F(ModifyOrder, TheDialogsInputIsChecked) {
    struct Row {
        const char* name;
        OrderChangeInput input;
        bool ok;
        Field field;
        int32_t quantity;
        int32_t priceType;
        double price;
    };
    const Row rows[] = {
        {"limit", {"250", "10.1", ModifyPriceType::Limit}, true, Field::None, 250, 5, 10.1},
        {"blanks around",
         {" 250 ", " 10.1 ", ModifyPriceType::Limit},
         true,
         Field::None,
         250,
         5,
         10.1},
        {"market ignores the price",
         {"250", "x", ModifyPriceType::Market},
         true,
         Field::None,
         250,
         1,
         0},
        {"one above filled", {"101", "1", ModifyPriceType::Limit}, true, Field::None, 101, 5, 1},
        {"equal to filled", {"100", "1", ModifyPriceType::Limit}, false, Field::Quantity, 0, 0, 0},
        {"zero", {"0", "1", ModifyPriceType::Limit}, false, Field::Quantity, 0, 0, 0},
        {"fraction", {"150.5", "1", ModifyPriceType::Limit}, false, Field::Quantity, 0, 0, 0},
        {"text", {"abc", "1", ModifyPriceType::Limit}, false, Field::Quantity, 0, 0, 0},
        {"empty", {"", "1", ModifyPriceType::Limit}, false, Field::Quantity, 0, 0, 0},
        {"beyond 32 bits",
         {"3000000000", "1", ModifyPriceType::Limit},
         false,
         Field::Quantity,
         0,
         0,
         0},
        {"price zero", {"250", "0", ModifyPriceType::Limit}, false, Field::Price, 0, 0, 0},
        {"price negative", {"250", "-1", ModifyPriceType::Limit}, false, Field::Price, 0, 0, 0},
        {"price empty", {"250", "", ModifyPriceType::Limit}, false, Field::Price, 0, 0, 0},
    };
    const OrderUpdate& ibm = *tracker.FindOrder(11);
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const CheckedChange c = CheckOrderChange(ibm, r.input);
        EXPECT_EQ(c.ok, r.ok);
        EXPECT_EQ(c.field, r.field);
        if (r.ok) {
            EXPECT_EQ(c.terms.quantity, r.quantity);
            EXPECT_EQ(c.terms.priceType, r.priceType);
            EXPECT_DOUBLE_EQ(c.terms.price, r.price);
        } else {
            EXPECT_FALSE(c.message.empty());
        }
    }
}

TEST_F(ModifyOrder, AChangeIsOneReplaceUnderANewIdAndExactlyOneJournalRow) {
    const ModifyResult r = Modify(11, {"250", "10.1", ModifyPriceType::Limit});
    EXPECT_EQ(r.outcome, Outcome::Changed);
    EXPECT_TRUE(boxes.shown().empty());
    ASSERT_EQ(broker.replaces.size(), 1u);
    const auto& sent = broker.replaces[0];
    EXPECT_EQ(sent.orderRecordId, 11);
    EXPECT_EQ(sent.clOrderId, "DEMO01-20240315-57-3");
    EXPECT_EQ(sent.change.newClOrderID, "DEMO01-20240315-57-3-M1");
    EXPECT_EQ(sent.change.quantity, 250);
    EXPECT_EQ(sent.change.priceType, 5);
    EXPECT_DOUBLE_EQ(sent.change.lmtPrice, 10.1);

    ASSERT_EQ(JournalRows(), 1);
    Recordset rs = db->OpenRecordset(
        "SELECT dtDate,dtTime,strClOrdId,intBasketSeq,strAcct,strSym,strSide,strDest,sngOrdPrice,"
        "lngOrdQty,lngLvsQty,lngExecQty,strStatus,strBasketName,chTif FROM tblOrders");
    std::vector<std::string> row;
    for (size_t i = 0; i < rs.Columns().size(); ++i) {
        row.push_back(rs.Field(i).text());
    }
    EXPECT_EQ(row, (std::vector<std::string>{"2024-03-15", "14:05:09", "DEMO01-20240315-57-3-M1",
                                             "57", "DEMO01", "IBM", "B", "NASDAQ", "10.1", "250",
                                             "150", "0", "Sending-N", "Tech10", "D"}));
}

TEST_F(ModifyOrder, ASecondChangeTakesTheNextIdFromTheOrdersCurrentOne) {
    ASSERT_EQ(Modify(11, {"250", "10.1", ModifyPriceType::Limit}).outcome, Outcome::Changed);
    // The platform confirms: the order now carries the new id.
    QVXOrderStruct replaced = OrderRecord(11, "Tech10", 57, 3, "IBM", 250, 100, 150, 10.1);
    replaced.ClOrderID = "DEMO01-20240315-57-3-M1";
    Track(replaced);
    ASSERT_EQ(Modify(11, {"250", "", ModifyPriceType::Market}).outcome, Outcome::Changed);
    ASSERT_EQ(broker.replaces.size(), 2u);
    EXPECT_EQ(broker.replaces[1].clOrderId, "DEMO01-20240315-57-3-M1");
    EXPECT_EQ(broker.replaces[1].change.newClOrderID, "DEMO01-20240315-57-3-M2");
    EXPECT_EQ(broker.replaces[1].change.priceType, 1);
    EXPECT_EQ(broker.replaces[1].change.lmtPrice, 0);
    EXPECT_EQ(JournalRows(), 2);
}

TEST_F(ModifyOrder, IdsJournalledInAnEarlierRunAreNotUsedAgain) {
    db->ExecuteSql("INSERT INTO tblOrders(strClOrdId,intBasketSeq) "
                   "VALUES('DEMO01-20240315-57-3-M3',57)");
    ASSERT_EQ(Modify(11, {"250", "10.1", ModifyPriceType::Limit}).outcome, Outcome::Changed);
    EXPECT_EQ(broker.replaces.at(0).change.newClOrderID, "DEMO01-20240315-57-3-M4");
}

TEST_F(ModifyOrder, AnOldFileGetsItsRowWithoutTheThreeColumns) {
    UseOldJournalTable();
    ASSERT_EQ(Modify(11, {"250", "10.1", ModifyPriceType::Limit}).outcome, Outcome::Changed);
    ASSERT_EQ(JournalRows(), 1);
    Recordset rs = db->OpenRecordset("SELECT strClOrdId, lngOrdQty, strStatus FROM tblOrders");
    EXPECT_EQ(rs.Field("strClOrdId").text(), "DEMO01-20240315-57-3-M1");
    EXPECT_EQ(rs.Field("lngOrdQty").toLong(), 250);
    EXPECT_EQ(rs.Field("strStatus").text(), "Sending-N");
}

TEST_F(ModifyOrder, ARefusalIsShownWithTheSubmitTextsAndLeavesNoRow) {
    broker.answers[11] = -8;
    ModifyResult r = Modify(11, {"250", "10.1", ModifyPriceType::Limit});
    EXPECT_EQ(r.outcome, Outcome::Refused);
    EXPECT_EQ(boxes.texts(), std::vector<std::string>{"Order cannot be sent. This order would "
                                                      "violate your exposure limit.\r\nB 300 IBM"});
    EXPECT_EQ(JournalRows(), 0);

    boxes.clear();
    broker.answers[11] = kReplaceOrderNotOpen;
    r = Modify(11, {"250", "10.1", ModifyPriceType::Limit});
    EXPECT_EQ(boxes.texts(),
              std::vector<std::string>{"Order cannot be changed. Order is not open.\r\nB 300 IBM"});
    // Refused ids are spent all the same: the broker may have seen them.
    EXPECT_EQ(broker.replaces.at(1).change.newClOrderID, "DEMO01-20240315-57-3-M2");
}

TEST_F(ModifyOrder, NothingIsSentForBadInputNoAnswerOrTheSameTerms) {
    struct Row {
        const char* name;
        int32_t recordId;
        OrderChangeInput input;
        bool confirm;
        MsgAnswer answer;
        Outcome outcome;
    };
    const Row rows[] = {
        {"filled order",
         12,
         {"250", "10", ModifyPriceType::Limit},
         false,
         MsgAnswer::Ok,
         Outcome::NotOpen},
        {"unknown order",
         99,
         {"250", "10", ModifyPriceType::Limit},
         false,
         MsgAnswer::Ok,
         Outcome::NotOpen},
        {"bad quantity",
         11,
         {"100", "10", ModifyPriceType::Limit},
         false,
         MsgAnswer::Ok,
         Outcome::Invalid},
        {"same terms",
         11,
         {"300", "10.25", ModifyPriceType::Limit},
         false,
         MsgAnswer::Ok,
         Outcome::Unchanged},
        {"answered No",
         11,
         {"250", "10", ModifyPriceType::Limit},
         true,
         MsgAnswer::No,
         Outcome::NotConfirmed},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        boxes.clear();
        boxes.answerNext(r.answer);
        EXPECT_EQ(Modify(r.recordId, r.input, r.confirm).outcome, r.outcome);
        EXPECT_EQ(boxes.shown().size(), 1u);
    }
    EXPECT_TRUE(broker.replaces.empty());
    EXPECT_EQ(JournalRows(), 0);
}

TEST_F(ModifyOrder, TheConfirmationNamesTheOldAndNewTerms) {
    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_EQ(Modify(11, {"250", "10.1", ModifyPriceType::Limit}, true).outcome, Outcome::Changed);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "Do you want to change this order?\r\nBuy IBM: 300 @ 10.25 to 250 @ 10.1");
    EXPECT_EQ(boxes.shown()[0].title, "Change Order");
    EXPECT_EQ(boxes.shown()[0].defaultButton, MsgDefault::Second);
    EXPECT_EQ(broker.replaces.size(), 1u);
}

TEST_F(ModifyOrder, AJournalTheDatabaseRefusesStopsNothingButIsReported) {
    // A symbol longer than the column: the statement builds, the database refuses the row.
    Track(OrderRecord(13, "Tech10", 57, 5, "ABCDEFGHIJKL", 100, 0, 100));
    const ModifyResult r = Modify(13, {"50", "5", ModifyPriceType::Limit});
    EXPECT_EQ(r.outcome, Outcome::Changed);
    EXPECT_EQ(r.attempt.status, ReplaceAttempt::Status::JournalLost);
    EXPECT_EQ(broker.replaces.size(), 1u);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("DEMO01-20240315-57-5-M1"), std::string::npos);
}

TEST_F(ModifyOrder, AValueTheJournalCannotHoldStopsTheChangeBeforeItIsSent) {
    QVXOrderStruct quoted = OrderRecord(14, "Tech10", 57, 6, "IBM", 100, 0, 100);
    quoted.Account = "O'NEIL";
    Track(quoted);
    const ModifyResult r = Modify(14, {"50", "5", ModifyPriceType::Limit});
    EXPECT_EQ(r.outcome, Outcome::NotSent);
    EXPECT_TRUE(broker.replaces.empty());
    EXPECT_EQ(boxes.shown().size(), 1u);
}

TEST_F(ModifyOrder, CancelOfOneOrderAsksWhenSetAndZeroesItsLeaves) {
    boxes.answerNext(MsgAnswer::No);
    EXPECT_FALSE(CancelSummaryOrder(tracker, broker, boxes, 11, true));
    EXPECT_EQ(boxes.shown().at(0).text, "Do you want to cancel this order?\r\nBuy 300 IBM");
    EXPECT_EQ(boxes.shown().at(0).title, "Cancel Order");
    EXPECT_TRUE(broker.cancels.empty());

    EXPECT_TRUE(CancelSummaryOrder(tracker, broker, boxes, 11, false));
    EXPECT_EQ(broker.cancels,
              (std::vector<std::pair<std::string, int32_t>>{{"DEMO01-20240315-57-3", 11}}));
    EXPECT_EQ(tracker.FindOrder(11)->m_nLvsQuantity, 0);

    boxes.clear();
    EXPECT_FALSE(CancelSummaryOrder(tracker, broker, boxes, 11, false)); // already zeroed
    EXPECT_FALSE(CancelSummaryOrder(tracker, broker, boxes, 12, false)); // filled
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"That order is not open any more.",
                                                       "That order is not open any more."}));
    EXPECT_EQ(broker.cancels.size(), 1u);
}

} // namespace
} // namespace wicker::test
