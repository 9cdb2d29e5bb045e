#include "platform/fix/FixTestOrders.h"
#include "platform/fix/NewOrderSingle.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using std::chrono::milliseconds;
using test::TagsOf;

TEST(FixTimestampText, UtcWithMilliseconds) {
    const std::pair<int64_t, const char*> rows[] = {
        {0, "19700101-00:00:00.000"},
        {1710513000123, "20240315-14:30:00.123"},
        {1709251199999, "20240229-23:59:59.999"},
        {1735689600000, "20250101-00:00:00.000"},
        {-1, "19691231-23:59:59.999"},
        {7258118399000, "21991231-23:59:59.000"},
    };
    for (const auto& [ms, text] : rows) {
        EXPECT_EQ(FixTimestamp(Clock::TimePoint{milliseconds(ms)}), text) << ms;
    }
}

OrderTicket Ticket() {
    return test::Ticket({.side = "S"});
}

TEST(NewOrderSingleFields, OptionalTagsOnlyWhenSetAndTheMemoOnlyWhereTheProfileSays) {
    const ManualClock clock{Clock::TimePoint{milliseconds(1710513000000)}};
    FixOrderProfile profile;
    NewOrderSingleOrRefusal plain = BuildNewOrderSingle(Ticket(), profile, clock);
    ASSERT_EQ(plain.refusal, 0);
    EXPECT_EQ(plain.message.msgType, "D");
    EXPECT_EQ(TagsOf(plain.message), "1=ACCT01 11=ACCT01-20240315-57-1 21=1 38=300 54=2 55=IBM "
                                     "60=20240315-14:30:00.000 40=1 59=0");

    OrderTicket t = Ticket();
    t.destination = "ARCA";
    t.maxFloor = 100;
    profile.handlInst = "2";
    profile.memoTag = 58;
    NewOrderSingleOrRefusal full = BuildNewOrderSingle(t, profile, clock);
    ASSERT_EQ(full.refusal, 0);
    EXPECT_EQ(TagsOf(full.message),
              "1=ACCT01 11=ACCT01-20240315-57-1 21=2 38=300 54=2 55=IBM "
              "60=20240315-14:30:00.000 40=1 59=0 100=ARCA 111=100 58=Tech10-57-/bskt");
}

TEST(NewOrderSingleFields, CancelRequestNamesTheOrder) {
    const ManualClock clock{Clock::TimePoint{milliseconds(1710513000000)}};
    const std::optional<FixMessage> f =
        BuildCancelRequest("A-1-C1", "A-1", "O7", "T", "IBM", 300, clock);
    ASSERT_TRUE(f);
    EXPECT_EQ(f->msgType, "F");
    EXPECT_EQ(TagsOf(*f), "11=A-1-C1 37=O7 38=300 41=A-1 54=5 55=IBM 60=20240315-14:30:00.000");
    EXPECT_EQ(TagsOf(*BuildCancelRequest("A-1-C2", "A-1", "", "M", "IBM", 1, clock)),
              "11=A-1-C2 38=1 41=A-1 54=3 55=IBM 60=20240315-14:30:00.000");
    EXPECT_FALSE(BuildCancelRequest("A-1-C3", "A-1", "", "", "IBM", 1, clock)) << "no side";
    EXPECT_FALSE(BuildCancelRequest("A-1-C4", "", "O7", "B", "IBM", 1, clock)) << "no id";
}

} // namespace
} // namespace wicker
