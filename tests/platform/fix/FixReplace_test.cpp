// Cancel-replace over FIX: the OrderCancelReplaceRequest's tags in FIX 4.2 and 4.4, and
// what every possible answer does to the order book.

#include "platform/QVXOrderMaintenance.h"
#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixOrderBook.h"
#include "platform/fix/FixPlatformRecords.h"
#include "platform/fix/FixTestOrders.h"
#include "platform/fix/NewOrderSingle.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using std::chrono::milliseconds;
using test::Fix;
using test::RejectAt;
using test::Sent;
using test::TagsOf;
using test::UpdateAt;

OrderTicket Replacing(int32_t priceType, const std::string& tif, double price = 0) {
    return test::Ticket({.side = "BUY",
                         .quantity = 500,
                         .lmtPrice = price,
                         .priceType = priceType,
                         .clOrderID = "A-1-M1",
                         .tif = tif,
                         .destination = "NASDAQ"});
}

TEST(ReplaceRequestTags, EveryPriceTypeInBothVersions) {
    const ManualClock clock{Clock::TimePoint{milliseconds(1710513000000)}};
    constexpr const char* head = "1=ACCT01 11=A-1-M1 21=1 38=500 54=1 55=IBM "
                                 "60=20240315-14:30:00.000 ";
    struct Row {
        const char* name;
        FixVersion version;
        int32_t priceType;
        const char* tif;
        double price;
        const char* typeTags;
    };
    const Row rows[] = {
        {"limit 4.2", FixVersion::Fix42, 5, "D", 101.25, "40=2 44=101.25 59=0"},
        {"limit 4.4", FixVersion::Fix44, 5, "G", 101.25, "40=2 44=101.25 59=1"},
        {"market 4.2", FixVersion::Fix42, 1, "D", 0, "40=1 59=0"},
        {"market 4.4", FixVersion::Fix44, 1, "D", 0, "40=1 59=0"},
        {"market-on-open 4.2", FixVersion::Fix42, 1, "O", 0, "40=1 59=2"},
        {"market-on-close 4.2", FixVersion::Fix42, 2, "D", 0, "40=5 59=0"},
        {"market-on-close 4.4", FixVersion::Fix44, 2, "D", 0, "40=1 59=7"},
    };
    for (const Row& r : rows) {
        FixOrderProfile profile;
        profile.version = r.version;
        const NewOrderSingleOrRefusal g = BuildReplaceRequest(
            Replacing(r.priceType, r.tif, r.price), "A-1", "O7", profile, clock);
        ASSERT_EQ(g.refusal, 0) << r.name;
        EXPECT_EQ(g.message.msgType, "G") << r.name;
        EXPECT_EQ(TagsOf(g.message), std::string(head) + r.typeTags + " 100=NASDAQ 37=O7 41=A-1")
            << r.name;
    }
}

TEST(ReplaceRequestTags, SideOfAReportedOrderAndWhatIsLeftOut) {
    const ManualClock clock{Clock::TimePoint{milliseconds(1710513000000)}};
    FixOrderProfile profile;
    OrderTicket t = Replacing(1, "D");
    t.side = "M"; // buy minus, known only from the broker's reports
    t.destination = "";
    const NewOrderSingleOrRefusal g = BuildReplaceRequest(t, "A-1", "", profile, clock);
    ASSERT_EQ(g.refusal, 0);
    EXPECT_EQ(TagsOf(g.message), "1=ACCT01 11=A-1-M1 21=1 38=500 54=3 55=IBM "
                                 "60=20240315-14:30:00.000 40=1 59=0 41=A-1")
        << "no OrderID before the broker gave one";

    t.side = "T";
    t.maxFloor = 100;
    profile.memoTag = 58;
    EXPECT_EQ(TagsOf(BuildReplaceRequest(t, "A-1", "O7", profile, clock).message),
              "1=ACCT01 11=A-1-M1 21=1 38=500 54=5 55=IBM 60=20240315-14:30:00.000 40=1 59=0 "
              "111=100 58=Tech10-57-/bskt 37=O7 41=A-1");
}

TEST(ReplaceRequestTags, RefusedLikeANewOrderAndNeverWithoutTheReplacedId) {
    const ManualClock clock{Clock::TimePoint{milliseconds(1710513000000)}};
    const FixOrderProfile profile;
    struct Row {
        const char* name;
        void (*change)(OrderTicket&);
        std::string orig;
        int refusal;
    };
    const Row rows[] = {
        {"no replaced id", [](OrderTicket&) {}, "", kReplaceOrderNotOpen},
        {"no new id", [](OrderTicket& t) { t.clOrderID = ""; }, "A-1", kReplaceOrderNotOpen},
        {"zero quantity", [](OrderTicket& t) { t.quantity = 0; }, "A-1", -3},
        {"unknown price type", [](OrderTicket& t) { t.priceType = 4; }, "A-1", -5},
        {"limit without a price", [](OrderTicket& t) { t.priceType = 5; }, "A-1", -5},
        {"TIF without a mapping", [](OrderTicket& t) { t.tif = "N"; }, "A-1", -6},
    };
    for (const Row& r : rows) {
        OrderTicket t = Replacing(1, "D");
        r.change(t);
        EXPECT_EQ(BuildReplaceRequest(t, r.orig, "O7", profile, clock).refusal, r.refusal)
            << r.name;
    }
}

// An order acknowledged and 100 of 300 filled at 10.4.
struct PartlyFilled {
    PartlyFilled() {
        id = book.addOrder(Sent("A-1"));
        book.apply(Fix("35=8|37=O1|11=A-1|17=E1|150=0|39=0|38=300|151=300|14=0|6=0"));
        book.apply(Fix("35=8|37=O1|11=A-1|17=E2|150=1|39=1|38=300|151=200|14=100|6=10.4|"
                       "31=10.4|32=100"));
    }
    FixOrderBook book;
    int32_t id = 0;
};

class FixBookReplace : public ::testing::Test, public PartlyFilled {};

TEST_F(FixBookReplace, ConfirmedReplaceChangesTheOrderUnderItsRecordIdInBothVersions) {
    struct Row {
        const char* name;
        const char* report;
        const char* ordStatus;
    };
    const Row rows[] = {
        {"4.2",
         "35=8|37=O1|11=A-1-M1|41=A-1|17=E3|20=0|150=5|39=5|38=500|151=400|14=100|6=10.4|"
         "40=2|44=10.75",
         "5"},
        {"4.4",
         "35=8|37=O1|11=A-1-M1|41=A-1|17=E3|150=5|39=1|38=500|151=400|14=100|6=10.4|"
         "40=2|44=10.75",
         "1"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        PartlyFilled fresh;
        ASSERT_TRUE(fresh.book.addReplace(fresh.id, "A-1-M1", {500, 5, 10.75}));
        EXPECT_EQ(fresh.book.find(fresh.id)->pendingReplace, "A-1-M1");
        const FixBookOutcome out = fresh.book.apply(Fix(r.report));
        EXPECT_EQ(out.answered, std::vector<std::string>{"A-1-M1"});
        ASSERT_EQ(out.events.size(), 1u);
        const FixOrderState& o = UpdateAt(out, 0);
        EXPECT_EQ(o.recordId, fresh.id);
        EXPECT_EQ(o.clOrdID, "A-1-M1");
        EXPECT_EQ(o.currentClOrdID, "A-1-M1");
        EXPECT_EQ(o.quantity, 500);
        EXPECT_EQ(o.leaves, 400);
        EXPECT_EQ(o.cum, 100);
        EXPECT_DOUBLE_EQ(o.avgPx, 10.4);
        EXPECT_DOUBLE_EQ(o.lmtPrice, 10.75);
        EXPECT_EQ(o.ordStatus, r.ordStatus);
        EXPECT_TRUE(o.pendingReplace.empty());
        const QVXOrderStruct q = OrderStructOf(o);
        EXPECT_EQ(q.OrderStatus, QVXOrderStatus::PartiallyFilled) << "filled before the replace";
        EXPECT_EQ(q.ClOrderID, "A-1-M1");
        EXPECT_EQ(q.OrderRecordId, fresh.id);
        EXPECT_EQ(q.Memo, "Tech10-57-/bskt");
    }
}

TEST_F(FixBookReplace, ReportWithoutTheNewTermsTakesThemFromTheRequest) {
    ASSERT_TRUE(book.addReplace(id, "A-1-M1", {250, 1, 0}));
    const auto out = book.apply(Fix("35=8|37=O1|11=A-1-M1|41=A-1|17=E3|150=5|39=1|14=100"));
    const FixOrderState& o = UpdateAt(out, 0);
    EXPECT_EQ(o.quantity, 250);
    EXPECT_EQ(o.leaves, 150);
    EXPECT_EQ(o.priceType, 1);
    EXPECT_EQ(o.lmtPrice, 0) << "a market order has no limit";
    // Later fills name the order by its new id only.
    const auto fill = book.apply(Fix("35=8|37=O1|11=A-1-M1|17=E4|150=2|39=2|151=0|14=250|"
                                     "6=10.5|31=10.57|32=150"));
    EXPECT_EQ(UpdateAt(fill, 0).recordId, id);
    EXPECT_EQ(UpdateAt(fill, 0).leaves, 0);
}

TEST_F(FixBookReplace, PendingReplaceKeepsTheOldTermsAndAFillUnderThemStillCounts) {
    ASSERT_TRUE(book.addReplace(id, "A-1-M1", {500, 5, 10.75}));
    const auto pending =
        book.apply(Fix("35=8|37=O1|11=A-1-M1|41=A-1|17=E3|150=E|39=E|38=500|151=200|14=100"));
    const FixOrderState& p = UpdateAt(pending, 0);
    EXPECT_EQ(p.quantity, 300);
    EXPECT_EQ(p.leaves, 200);
    EXPECT_DOUBLE_EQ(p.lmtPrice, 10.5);
    EXPECT_EQ(p.clOrdID, "A-1");
    EXPECT_EQ(p.currentClOrdID, "A-1") << "a cancel must still name the live order";
    EXPECT_EQ(p.status, "Pending Replace");
    EXPECT_EQ(p.pendingReplace, "A-1-M1");
    EXPECT_FALSE(book.addReplace(id, "A-1-M2", {600, 5, 10.75})) << "one change at a time";

    book.apply(Fix("35=8|37=O1|11=A-1|17=E4|150=1|39=1|151=150|14=150|6=10.45|31=10.5|32=50"));
    const auto done =
        book.apply(Fix("35=8|37=O1|11=A-1-M1|41=A-1|17=E5|150=5|39=5|38=500|151=350|14=150"));
    EXPECT_EQ(UpdateAt(done, 0).leaves, 350);
    EXPECT_EQ(UpdateAt(done, 0).cum, 150);
    EXPECT_DOUBLE_EQ(UpdateAt(done, 0).lmtPrice, 10.75);
}

TEST_F(FixBookReplace, EveryKindOfRefusalLeavesTheOrderStanding) {
    struct Row {
        const char* name;
        const char* answer; // empty: the request never left
    };
    const Row rows[] = {
        {"cancel reject", "35=9|37=O1|11=A-1-M1|41=A-1|39=1|434=2|102=0|58=Too late"},
        {"execution report rejected", "35=8|37=O1|11=A-1-M1|41=A-1|17=E9|150=8|39=8|103=0|"
                                      "151=0|14=100|58=Too late"},
        {"session reject", "35=3|45=12|372=G|373=5"},
        {"business reject", "35=j|45=12|372=G|379=A-1-M1|380=3"},
        {"never sent", ""},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        PartlyFilled fresh;
        ASSERT_TRUE(fresh.book.addReplace(fresh.id, "A-1-M1", {500, 5, 10.75}));
        fresh.book.noteSent(12, "A-1-M1");
        const FixBookOutcome out =
            *r.answer == '\0' ? fresh.book.notSent("A-1-M1") : fresh.book.apply(Fix(r.answer));
        EXPECT_EQ(out.answered, std::vector<std::string>{"A-1-M1"});
        ASSERT_EQ(out.events.size(), 2u);
        EXPECT_EQ(RejectAt(out, 0).clOrdID, "A-1-M1") << "the refused request";
        EXPECT_EQ(RejectAt(out, 0).recordId, fresh.id);
        const FixOrderState& o = UpdateAt(out, 1);
        EXPECT_EQ(o.recordId, fresh.id);
        EXPECT_EQ(o.clOrdID, "A-1");
        EXPECT_EQ(o.quantity, 300);
        EXPECT_EQ(o.leaves, 200) << "still open";
        EXPECT_DOUBLE_EQ(o.lmtPrice, 10.5);
        EXPECT_TRUE(o.pendingReplace.empty());
        EXPECT_TRUE(fresh.book.addReplace(fresh.id, "A-1-M2", {400, 5, 10.6}))
            << "the trader may try again";
    }
}

TEST_F(FixBookReplace, ReplaceOfUnknownOrdersOrWithATakenIdIsRefused) {
    EXPECT_FALSE(book.addReplace(99, "A-1-M1", {500, 5, 10.75}));
    EXPECT_FALSE(book.addReplace(0, "A-1-M1", {500, 5, 10.75}));
    EXPECT_FALSE(book.addReplace(id, "A-1", {500, 5, 10.75})) << "its own id";
    const int32_t other = book.addOrder(Sent("B-1"));
    EXPECT_FALSE(book.addReplace(id, "B-1", {500, 5, 10.75}));
    EXPECT_FALSE(book.addReplace(id, "", {500, 5, 10.75}));
    EXPECT_EQ(book.find(other)->quantity, 300);
}

TEST(FixBookReplaceAfterRestart, ReportUnderTheNewIdFindsTheJournalledMemo) {
    FixOrderBook book;
    book.restoreMemo("A-1", "Tech10-57-/bskt");
    book.restoreMemo("A-1-M1", "Tech10-57-/bskt");
    const auto out = book.apply(Fix("35=8|37=O1|11=A-1-M1|17=E7|150=1|39=1|54=1|55=IBM|38=500|"
                                    "151=300|14=200|6=10"));
    ASSERT_EQ(out.events.size(), 1u);
    EXPECT_EQ(UpdateAt(out, 0).memo, "Tech10-57-/bskt");
}

} // namespace
} // namespace wicker
