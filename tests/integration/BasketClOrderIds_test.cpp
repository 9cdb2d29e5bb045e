// A basket larger than the order number's four digits, sent through the desk's send path to
// the simulator: every order must reach it under its own client order id.

#include "platform/sim/SimPlatform.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/BasketOrderIds.h"

#include <set>

#include <gtest/gtest.h>

namespace wicker {
namespace {

class NullStore : public SequenceStore {
public:
    Result<void> SaveBasketNum(int16_t) override { return {}; }
};

TEST(BasketClOrderIds, TenThousandLinesGoOutUnderTenThousandDistinctIds) {
    ManualClock clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0}));
    SimSettings settings;
    settings.clipSize = 0;
    SimPlatform sim(settings, clock, SimDriver::Manual);
    ASSERT_TRUE(sim.Start().ok());
    test::RecordingMessageBoxes boxes;
    SendSequence sequence{57, 1};
    NullStore store;
    BasketExecution execution(sim, sequence, store, boxes, clock);

    constexpr int Lines = 10000;
    std::vector<ExecutionLine> lines(Lines);
    for (int i = 0; i < Lines; ++i) {
        lines[i].checked = true;
        lines[i].symbol = "S" + std::to_string(i % 500);
        lines[i].quantity = "100";
        lines[i].destination = "NASDAQ";
        lines[i].modifier = "0";
        lines[i].tif = "DAY";
    }
    const ExecuteReport r = execution.cmdExecuteBasket_Click(3, lines, {"acct01", "1", "Big"}, {});
    EXPECT_EQ(r.ordersSubmitted, Lines);
    EXPECT_TRUE(r.submitErrors.empty());

    // The ids as the simulator received them, accepted or refused.
    struct Ids : QVXEvents, QVXQuoteEvents {
        std::vector<std::string> first; // each order's id, in order of its first event
        std::set<int32_t> seen;
        void OnQVXOrderUpdate(const QVXOrderStruct& u) override {
            if (seen.insert(u.OrderRecordId).second) {
                first.push_back(u.ClOrderID);
            }
        }
        void OnQVXOrderReject(const QVXRejectStruct& x) override { first.push_back(x.ClOrderID); }
        void OnQVXOrderWarning(const QVXOrderWarning&) override {}
        void OnQVXShutdown() override {}
        void OnPlatformStatus(bool, const std::string&) override {}
        void OnQVXQuoteSnap(const QVXQuoteStruct&) override {}
        void OnQVXQuoteUpdate(const QVXQuoteStruct&) override {}
    } ids;
    sim.advance(std::chrono::milliseconds(100));
    sim.Events().drain(ids, ids);

    EXPECT_EQ(std::set<std::string>(ids.first.begin(), ids.first.end()).size(), size_t(Lines));
    ASSERT_GE(ids.first.size(), size_t(SendSequence::LastOrderSeq));
    for (int i = 0; i < SendSequence::LastOrderSeq; ++i) {
        ASSERT_EQ(ids.first[i], BasketClOrderID("ACCT01", "20240315", 57, int16_t(i + 1)))
            << "line " << i + 1 << " keeps the usual id";
    }
}

} // namespace
} // namespace wicker
