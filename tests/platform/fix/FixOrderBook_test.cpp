#include "platform/fix/FixMessageText.h"
#include "platform/fix/FixOrderBook.h"
#include "platform/fix/FixTestOrders.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::Fix;
using test::RejectAt;
using test::Sent;
using test::UpdateAt;

class FixOrderBookTest : public ::testing::Test {
protected:
    FixOrderBook book;
};

TEST_F(FixOrderBookTest, AckThenPartialThenFullFill) {
    const int32_t id = book.addOrder(Sent("A-1"));
    EXPECT_EQ(id, 1);
    auto ack = book.apply(Fix("35=8|37=O1|11=A-1|17=E1|150=0|39=0|55=IBM|54=1|38=300|151=300|"
                              "14=0|6=0"));
    ASSERT_EQ(ack.events.size(), 1u);
    EXPECT_EQ(ack.answered, std::vector<std::string>{"A-1"});
    EXPECT_EQ(UpdateAt(ack, 0).status, "New");
    EXPECT_EQ(UpdateAt(ack, 0).leaves, 300);
    EXPECT_EQ(UpdateAt(ack, 0).memo, "Tech10-57-/bskt");

    auto part = book.apply(Fix("35=8|37=O1|11=A-1|17=E2|150=1|39=1|38=300|151=200|14=100|"
                               "6=10.4|31=10.4|32=100"));
    ASSERT_EQ(part.events.size(), 1u);
    EXPECT_TRUE(part.answered.empty()) << "only the first answer frees the window";
    const FixOrderState& p = UpdateAt(part, 0);
    EXPECT_EQ(p.recordId, id);
    EXPECT_EQ(p.status, "Partially Filled");
    EXPECT_EQ(p.cum, 100);
    EXPECT_EQ(p.leaves, 200);
    EXPECT_DOUBLE_EQ(p.lastPx, 10.4);
    EXPECT_EQ(p.lastShares, 100);

    auto full =
        book.apply(Fix("35=8|37=O1|11=A-1|17=E3|150=2|39=2|151=0|14=300|6=10.45|31=10.475|32=200"));
    const FixOrderState& f = UpdateAt(full, 0);
    EXPECT_EQ(f.status, "Filled");
    EXPECT_EQ(f.cum, 300);
    EXPECT_EQ(f.leaves, 0);
    EXPECT_DOUBLE_EQ(f.avgPx, 10.45);
    EXPECT_EQ(f.side, "B");
    EXPECT_EQ(f.account, "ACCT01");
    book.addOrder(Sent("A-2", 100, "BUY"));
    EXPECT_EQ(book.findByClOrdID("A-2")->side, "B") << "limit buys are sent as BUY";
    EXPECT_EQ(f.updates, 3);
}

TEST_F(FixOrderBookTest, RepeatedExecIDIsAppliedOnce) {
    book.addOrder(Sent("A-1"));
    const FixMessage fill =
        Fix("35=8|37=O1|11=A-1|17=E2|150=1|39=1|151=200|14=100|6=10|31=10|32=100");
    EXPECT_EQ(book.apply(fill).events.size(), 1u);
    FixMessage again = fill;
    again.possDup = true;
    EXPECT_TRUE(book.apply(again).events.empty());
    EXPECT_EQ(book.find(1)->cum, 100);
    EXPECT_EQ(book.find(1)->updates, 1);
    // Status reports may all say ExecID 0; each is applied.
    EXPECT_EQ(book.apply(Fix("35=8|11=A-1|17=0|150=3|39=1|151=200|14=100")).events.size(), 1u);
    EXPECT_EQ(book.apply(Fix("35=8|11=A-1|17=0|150=3|39=1|151=200|14=100")).events.size(), 1u);
}

// An order filled in many clips: every ExecID is remembered, the first few and the rest alike,
// and one stated again with another CumQty (a restarted counterparty) is a new report.
TEST_F(FixOrderBookTest, EveryClipOfAManyTimesFilledOrderCountsOnce) {
    book.addOrder(Sent("A-1", 3000));
    const auto clip = [](int n, int cum) {
        return Fix("35=8|11=A-1|17=F" + std::to_string(n) + "|150=1|39=1|38=3000|151=" +
                   std::to_string(3000 - cum) + "|14=" + std::to_string(cum) + "|32=10|31=1");
    };
    constexpr int kClips = 20;
    for (int n = 1; n <= kClips; ++n) {
        EXPECT_EQ(book.apply(clip(n, 10 * n)).events.size(), 1u) << n;
    }
    for (int n = 1; n <= kClips; ++n) {
        EXPECT_TRUE(book.apply(clip(n, 10 * n)).events.empty()) << n;
    }
    EXPECT_EQ(book.find(1)->cum, 10 * kClips);
    for (int n : {2, kClips - 1}) {
        EXPECT_EQ(book.apply(clip(n, 10 * kClips + n)).events.size(), 1u) << n;
        EXPECT_TRUE(book.apply(clip(n, 10 * kClips + n)).events.empty()) << n;
    }
    EXPECT_EQ(book.find(1)->updates, kClips + 2);
}

// Hostile or broken reports: each changes nothing, and the order's state afterwards is
// exactly what the good reports made it.
TEST_F(FixOrderBookTest, MalformedReportsChangeNothing) {
    book.addOrder(Sent("A-1"));
    book.apply(Fix("35=8|37=O1|11=A-1|17=E1|150=1|39=1|38=300|151=200|14=100|6=10|32=100"));
    const FixOrderState before = *book.find(1);
    struct Row {
        const char* name;
        const char* text;
    };
    const Row rows[] = {
        {"no ids at all", "35=8|17=X1|150=2|39=2|151=0|14=300"},
        {"leaves not a number", "35=8|11=A-1|17=X2|150=2|39=2|151=abc|14=300"},
        {"cum negative", "35=8|11=A-1|17=X3|150=1|39=1|151=200|14=-5"},
        {"cum with exponent", "35=8|11=A-1|17=X4|150=1|39=1|14=1e3"},
        {"fractional quantity", "35=8|11=A-1|17=X5|150=1|39=1|14=100.5"},
        {"quantity overflow", "35=8|11=A-1|17=X6|150=1|39=1|38=99999999999"},
        {"avg price nan", "35=8|11=A-1|17=X7|150=1|39=1|6=nan"},
        {"avg price inf", "35=8|11=A-1|17=X8|150=1|39=1|6=inf"},
        {"negative price", "35=8|11=A-1|17=X9|150=1|39=1|31=-1"},
        {"empty quantity", "35=8|11=A-1|17=X10|150=1|39=1|14="},
        {"blank in number", "35=8|11=A-1|17=X11|150=1|39=1|14= 100"},
        {"unknown message type", "35=Z|11=A-1|17=X12|39=2|14=300"},
        {"session reject about nothing we sent", "35=3|45=999|373=1"},
        {"business reject about nothing", "35=j|45=999|379=NOPE|380=0"},
        {"heartbeat", "35=0"},
    };
    for (const Row& r : rows) {
        const FixBookOutcome out = book.apply(Fix(r.text));
        // A report that cannot be read is a warning for the trader; anything else is quiet.
        const bool report = std::string_view(r.text).starts_with("35=8");
        ASSERT_EQ(out.events.size(), report ? 1u : 0u) << r.name;
        if (report) {
            EXPECT_EQ(std::get<FixOrderWarning>(out.events[0]).recordId,
                      std::string_view(r.text).find("11=A-1") != std::string_view::npos ? 1 : 0)
                << r.name;
        }
        const FixOrderState after = *book.find(1);
        EXPECT_EQ(after.cum, before.cum) << r.name;
        EXPECT_EQ(after.leaves, before.leaves) << r.name;
        EXPECT_EQ(after.status, before.status) << r.name;
        EXPECT_EQ(after.updates, before.updates) << r.name;
    }
    EXPECT_EQ(book.size(), 1u);
    // A malformed report does not use up its ExecID: the good copy still counts.
    EXPECT_EQ(book.apply(Fix("35=8|11=A-1|17=X3|150=1|39=1|151=100|14=200")).events.size(), 1u);
    EXPECT_EQ(book.find(1)->cum, 200);
}

TEST_F(FixOrderBookTest, ReportWithoutOptionalNumbersKeepsThePreviousOnes) {
    book.addOrder(Sent("A-1"));
    book.apply(Fix("35=8|11=A-1|17=E1|150=1|39=1|38=300|151=200|14=100|6=10"));
    const auto out = book.apply(Fix("35=8|11=A-1|17=E2|150=6|39=6"));
    const FixOrderState& o = UpdateAt(out, 0);
    EXPECT_EQ(o.status, "Pending Cancel");
    EXPECT_EQ(o.cum, 100);
    EXPECT_EQ(o.leaves, 200);
    EXPECT_EQ(o.quantity, 300);
    EXPECT_EQ(o.lastShares, 0) << "no fill in this report";
}

TEST_F(FixOrderBookTest, UnknownClOrdIDBecomesAnOrderRecognisedByItsJournalledMemo) {
    book.restoreMemo("ACCT01-20240315-56-7", "Tech10-56-/bskt");
    const auto out = book.apply(Fix("35=8|37=O9|11=ACCT01-20240315-56-7|17=E9|150=2|39=2|"
                                    "1=ACCT01|55=MSFT|54=5|38=50|151=0|14=50|6=20|100=ARCA"));
    ASSERT_EQ(out.events.size(), 1u);
    const FixOrderState& o = UpdateAt(out, 0);
    EXPECT_EQ(o.recordId, 1);
    EXPECT_EQ(o.memo, "Tech10-56-/bskt");
    EXPECT_EQ(o.symbol, "MSFT");
    EXPECT_EQ(o.side, "T");
    EXPECT_EQ(o.account, "ACCT01");
    EXPECT_EQ(o.destination, "ARCA");
    EXPECT_TRUE(out.answered.empty());
    // Its later reports find the same record, by ClOrdID or by OrderID.
    EXPECT_EQ(UpdateAt(book.apply(Fix("35=8|37=O9|17=E10|150=3|39=3")), 0).recordId, 1);
    EXPECT_EQ(book.size(), 1u);
}

TEST_F(FixOrderBookTest, MemoFromTheReportOnlyWhenTheProfileSaysSo) {
    FixOrderBook withTag(58);
    const auto a = withTag.apply(Fix("35=8|11=X-1|17=E1|150=0|39=0|58=B-3-/bskt"));
    EXPECT_EQ(UpdateAt(a, 0).memo, "B-3-/bskt");
    const auto b = book.apply(Fix("35=8|11=X-1|17=E1|150=0|39=0|58=B-3-/bskt"));
    EXPECT_EQ(std::get<FixOrderWarning>(b.events.at(0)).clOrdID, "X-1")
        << "not Wicker's order without a memo or a Wicker ClOrdID";
    EXPECT_EQ(book.size(), 0u);
    // The local memo wins over what the broker echoes.
    withTag.addOrder(Sent("A-1"));
    const auto c = withTag.apply(Fix("35=8|11=A-1|17=E2|150=0|39=0|58=something else"));
    EXPECT_EQ(UpdateAt(c, 0).memo, "Tech10-57-/bskt");
}

TEST_F(FixOrderBookTest, RejectedOrderIsClosedAndReportedWithOrdRejReason) {
    book.addOrder(Sent("A-1", 300, "T"));
    const auto out = book.apply(Fix("35=8|11=A-1|17=E1|150=8|39=8|151=300|14=0|103=2|58=halted"));
    ASSERT_EQ(out.events.size(), 2u);
    EXPECT_EQ(UpdateAt(out, 0).leaves, 0);
    EXPECT_EQ(UpdateAt(out, 0).status, "Rejected");
    const FixOrderReject& r = RejectAt(out, 1);
    EXPECT_EQ(r.clOrdID, "A-1");
    EXPECT_EQ(r.side, "T");
    EXPECT_EQ(r.symbol, "IBM");
    EXPECT_EQ(r.quantity, 300);
    EXPECT_EQ(r.reason, 2);
    EXPECT_EQ(r.text, "halted");
    EXPECT_EQ(out.answered, std::vector<std::string>{"A-1"});
}

TEST_F(FixOrderBookTest, CancelConfirmedThroughTheCancelsOwnClOrdID) {
    const int32_t id = book.addOrder(Sent("A-1"));
    book.apply(Fix("35=8|37=O1|11=A-1|17=E1|150=0|39=0|151=300|14=0"));
    ASSERT_TRUE(book.addCancel(id, "A-1-C1"));
    EXPECT_FALSE(book.addCancel(99, "A-1-C2"));
    const auto out = book.apply(Fix("35=8|37=O1|11=A-1-C1|41=A-1|17=E2|150=4|39=4|151=0|14=0"));
    EXPECT_EQ(out.answered, std::vector<std::string>{"A-1-C1"});
    const FixOrderState& o = UpdateAt(out, 0);
    EXPECT_EQ(o.recordId, id);
    EXPECT_EQ(o.clOrdID, "A-1");
    EXPECT_EQ(o.currentClOrdID, "A-1-C1");
    EXPECT_EQ(o.status, "Canceled");
    EXPECT_EQ(o.leaves, 0);
}

TEST_F(FixOrderBookTest, CancelRejectReportsReasonAndRestoresTheOrder) {
    const int32_t id = book.addOrder(Sent("A-1"));
    book.apply(Fix("35=8|37=O1|11=A-1|17=E1|150=1|39=1|151=200|14=100|6=10"));
    book.addCancel(id, "A-1-C1");
    const auto out = book.apply(Fix("35=9|37=O1|11=A-1-C1|41=A-1|39=1|434=1|102=0|58=late"));
    ASSERT_EQ(out.events.size(), 2u);
    const FixOrderReject& r = RejectAt(out, 0);
    EXPECT_EQ(r.clOrdID, "A-1");
    EXPECT_EQ(r.reason, 0);
    const FixOrderState& o = UpdateAt(out, 1);
    EXPECT_EQ(o.leaves, 200) << "still open: the screen must count it again";
    EXPECT_EQ(o.cum, 100);
    EXPECT_EQ(out.answered, std::vector<std::string>{"A-1-C1"});
    // For an order nobody knows, the reject still reaches the user.
    const auto unknown = book.apply(Fix("35=9|11=Z-C|41=Z|39=8|102=1"));
    ASSERT_EQ(unknown.events.size(), 1u);
    EXPECT_EQ(RejectAt(unknown, 0).clOrdID, "Z");
    EXPECT_EQ(RejectAt(unknown, 0).reason, 1);
}

TEST_F(FixOrderBookTest, SessionRejectFoundThroughTheSentSequenceNumber) {
    book.addOrder(Sent("A-1"));
    book.addOrder(Sent("A-2"));
    book.noteSent(7, "A-1");
    book.noteSent(8, "A-2");
    const auto out = book.apply(Fix("35=3|45=8|371=38|372=D|373=5|58=Value is incorrect"));
    ASSERT_EQ(out.events.size(), 2u);
    EXPECT_EQ(UpdateAt(out, 0).clOrdID, "A-2");
    EXPECT_EQ(UpdateAt(out, 0).leaves, 0);
    EXPECT_EQ(RejectAt(out, 1).reason, 5);
    EXPECT_EQ(RejectAt(out, 1).clOrdID, "A-2");
    EXPECT_EQ(out.answered, std::vector<std::string>{"A-2"});
    EXPECT_EQ(book.find(1)->leaves, 300) << "the other order is untouched";
}

TEST_F(FixOrderBookTest, BusinessRejectByRefIDOrSequence) {
    book.addOrder(Sent("A-1"));
    book.addOrder(Sent("A-2"));
    book.noteSent(9, "A-2");
    const auto byRef = book.apply(Fix("35=j|45=3|372=D|379=A-1|380=3"));
    ASSERT_EQ(byRef.events.size(), 2u);
    EXPECT_EQ(RejectAt(byRef, 1).clOrdID, "A-1");
    EXPECT_EQ(RejectAt(byRef, 1).reason, 3);
    const auto bySeq = book.apply(Fix("35=j|45=9|372=D|380=4"));
    ASSERT_EQ(bySeq.events.size(), 2u);
    EXPECT_EQ(RejectAt(bySeq, 1).clOrdID, "A-2");
    EXPECT_EQ(RejectAt(bySeq, 1).reason, 4);
}

TEST_F(FixOrderBookTest, RejectOfAnOrderAlreadyReportedOnDoesNotKillIt) {
    book.addOrder(Sent("A-1"));
    book.noteSent(7, "A-1");
    book.apply(Fix("35=8|11=A-1|17=E1|150=0|39=0|151=300|14=0"));
    const auto out = book.apply(Fix("35=3|45=7|373=1"));
    EXPECT_TRUE(out.events.empty());
    EXPECT_EQ(book.find(1)->leaves, 300);
}

TEST_F(FixOrderBookTest, OrderThatNeverLeftIsRejectedOffline) {
    const int32_t id = book.addOrder(Sent("A-1"));
    const auto out = book.notSent("A-1");
    ASSERT_EQ(out.events.size(), 2u);
    EXPECT_EQ(UpdateAt(out, 0).leaves, 0);
    EXPECT_EQ(RejectAt(out, 1).reason, OfflineRejectReason);
    EXPECT_EQ(out.answered, std::vector<std::string>{"A-1"});
    // A cancel that never left restores the order as it stands.
    const int32_t id2 = book.addOrder(Sent("A-2"));
    book.apply(Fix("35=8|11=A-2|17=E1|150=0|39=0|151=300|14=0"));
    book.addCancel(id2, "A-2-C");
    const auto cancel = book.notSent("A-2-C");
    ASSERT_EQ(cancel.events.size(), 2u);
    EXPECT_EQ(RejectAt(cancel, 0).reason, OfflineRejectReason);
    EXPECT_EQ(UpdateAt(cancel, 1).leaves, 300);
    EXPECT_EQ(book.find(id)->status, "Rejected");
}

// The words come from a table; the book tests read most of them. Here: its two ends and
// what it does not hold.
TEST(OrdStatusWords, TableEndsAndUnknownCodes) {
    const std::pair<const char*, const char*> rows[] = {
        {"0", "New"}, {"E", "Pending Replace"}, {"Z", "Unknown"}, {"", "Unknown"}};
    for (const auto& [code, text] : rows) {
        EXPECT_EQ(OrdStatusText(code), text) << code;
    }
}

} // namespace
} // namespace wicker
