// The same trading scenarios through the platform API against the simulator and against the
// FIX platform talking to wicker-exchange on loopback. A trader must not be able to tell the
// two apart by outcome: final quantities, statuses, fills counted once, refusals and reject
// reasons. Timing is not compared: the simulator runs on a virtual clock, the FIX side in
// real time.

#include "exchange/ExchangeProcess.h"
#include "platform/SimDesk.h"
#include "platform/fix/FixPlatform.h"
#include "support/TempDir.h"

#include <algorithm>
#include <cctype>
#include <thread>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;
using test::OrderFields;
using test::SimRecorder;

constexpr int32_t Clip = 100;
const char* const Halted = "HALT";

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// The simulator on a virtual clock: a wait moves the market on until the events satisfy it.
class SimSide {
public:
    SimSide() : m_desk(Settings()) {}
    Platform& platform() { return m_desk.platform; }
    SimRecorder& events() { return m_desk.events; }
    template <class Pred> bool waitFor(Pred pred) {
        for (int step = 0; step < 600; ++step) {
            m_desk.run(100ms);
            if (pred()) {
                return true;
            }
        }
        return false;
    }
    void dropLink() { m_desk.platform.Stop(); }
    void restoreLink() { ASSERT_TRUE(m_desk.platform.Start().ok()); }
    void restartCounterparty() {
        dropLink();
        restoreLink();
    }

private:
    static SimSettings Settings() {
        SimSettings s;
        s.seed = 1;
        s.clipSize = Clip;
        s.halted = {Halted};
        return s;
    }
    test::SimDesk m_desk;
};

/// Wicker's FIX platform against wicker-exchange as a separate process with fixed prices;
/// the exchange keeps its FIX store, so a restart resumes the session.
class FixSide {
public:
    FixSide() : m_exchange(WICKER_EXCHANGE_PROGRAM, m_dir / "exchange") {
        startExchange(0);
        FixPlatformSettings s;
        s.port = m_exchange.port();
        s.reconnectInterval = 1;
        m_fix = std::make_unique<FixPlatform>(s, PreTradeLimits{}, m_dir / "wicker", m_clock);
        EXPECT_TRUE(m_fix->Start().ok());
        EXPECT_TRUE(waitFor([&] { return m_fix->isLoggedOn(); }));
    }
    ~FixSide() { m_fix.reset(); }
    Platform& platform() { return *m_fix; }
    SimRecorder& events() { return m_events; }
    template <class Pred> bool waitFor(Pred pred) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (std::chrono::steady_clock::now() < deadline) {
            m_fix->Events().drain(m_events, m_events);
            if (pred()) {
                return true;
            }
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }
    void dropLink() {
        m_exchange.kill();
        ASSERT_TRUE(waitFor([&] { return !m_fix->isLoggedOn(); }));
    }
    void restoreLink() {
        startExchange(m_exchange.port());
        ASSERT_TRUE(waitFor([&] { return m_fix->isLoggedOn(); }));
    }
    void restartCounterparty() {
        EXPECT_EQ(m_exchange.terminate(), 0);
        restoreLink();
    }

private:
    void startExchange(int port) {
        const Result<void> r =
            m_exchange.start({"--market", "steady", "--clip", std::to_string(Clip), "--halt",
                              Halted, "--data-dir", (m_dir / "exchange-data").string()},
                             port);
        ASSERT_TRUE(r.ok()) << r.error().message;
    }

    test::TempDir m_dir;
    ManualClock m_clock{FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})};
    ExchangeProcess m_exchange;
    std::unique_ptr<FixPlatform> m_fix;
    SimRecorder m_events;
};

template <class Side> class PlatformContract : public ::testing::Test {
protected:
    int32_t send(const OrderFields& fields) { return test::Submit(side.platform(), fields); }
    static OrderFields Market(std::string id, int32_t quantity, std::string symbol = "IBM") {
        OrderFields s;
        s.clOrderId = std::move(id);
        s.quantity = quantity;
        s.symbol = std::move(symbol);
        return s;
    }
    /// A buy limit far below any price: it rests until cancelled.
    static OrderFields Resting(std::string id, int32_t quantity) {
        OrderFields s = Market(std::move(id), quantity);
        s.priceType = 5;
        s.price = 1.00;
        return s;
    }

    /// The record id of the order first sent as `clOrderId`; 0 while none is known.
    int32_t recordOf(const std::string& clOrderId) {
        for (const QVXOrderStruct& u : side.events().updates) {
            if (u.ClOrderID == clOrderId) {
                return u.OrderRecordId;
            }
        }
        return 0;
    }
    /// The order's latest state; a default record while it has none.
    QVXOrderStruct last(const std::string& clOrderId) {
        const std::vector<QVXOrderStruct> all = side.events().of(recordOf(clOrderId));
        return all.empty() ? QVXOrderStruct{} : all.back();
    }
    bool hasStatus(const std::string& clOrderId, int32_t status) {
        return recordOf(clOrderId) != 0 && last(clOrderId).OrderStatus == status;
    }
    bool isFinal(const std::string& clOrderId) {
        const int32_t s = last(clOrderId).OrderStatus;
        return recordOf(clOrderId) != 0 &&
               (s == QVXOrderStatus::Filled || s == QVXOrderStatus::Cancelled ||
                s == QVXOrderStatus::Rejected || s == QVXOrderStatus::DoneForDay);
    }
    /// Every update of the order: quantities that add up, filled never above ordered and
    /// never going back (a fill counted twice or lost shows here).
    void expectConsistent(const std::string& clOrderId) {
        SCOPED_TRACE(clOrderId);
        int32_t cum = 0;
        for (const QVXOrderStruct& u : side.events().of(recordOf(clOrderId))) {
            EXPECT_GE(u.CumExecQuantity, cum);
            EXPECT_LE(u.CumExecQuantity, u.Quantity);
            if (u.OrderStatus != QVXOrderStatus::Cancelled &&
                u.OrderStatus != QVXOrderStatus::Rejected) {
                EXPECT_EQ(u.CumExecQuantity + u.LvsQuantity, u.Quantity);
            }
            cum = u.CumExecQuantity;
        }
    }

    Side side;
};

using Platforms = ::testing::Types<SimSide, FixSide>;
class PlatformName {
public:
    template <class T> static std::string GetName(int) {
        return std::is_same_v<T, SimSide> ? "Simulator" : "FixExchange";
    }
};
TYPED_TEST_SUITE(PlatformContract, Platforms, PlatformName);

TYPED_TEST(PlatformContract, MarketOrderFillsInClipsEachCountedOnce) {
    ASSERT_GE(this->send(this->Market("C-1", 5 * Clip)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("C-1", QVXOrderStatus::Filled); }));
    const QVXOrderStruct done = this->last("C-1");
    EXPECT_EQ(done.Quantity, 5 * Clip);
    EXPECT_EQ(done.CumExecQuantity, 5 * Clip);
    EXPECT_EQ(done.LvsQuantity, 0);
    EXPECT_GT(done.AvgExecPrice, 0);
    EXPECT_EQ(done.Side, "B");
    EXPECT_EQ(done.Symbol, "IBM");
    EXPECT_EQ(done.Memo, "Tech10-57-/bskt");
    this->expectConsistent("C-1");
    // Partial fills were reported on the way, one clip at a time.
    std::vector<int32_t> partials;
    for (const QVXOrderStruct& u : this->side.events().of(this->recordOf("C-1"))) {
        if (u.OrderStatus == QVXOrderStatus::PartiallyFilled) {
            partials.push_back(u.CumExecQuantity);
        }
    }
    EXPECT_EQ(partials, (std::vector<int32_t>{Clip, 2 * Clip, 3 * Clip, 4 * Clip}));
}

TYPED_TEST(PlatformContract, RestingOrderCancelledLeavesNothingOpen) {
    ASSERT_GE(this->send(this->Resting("R-1", 300)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("R-1", QVXOrderStatus::Open); }));
    this->side.platform().CancelOrder("R-1", this->recordOf("R-1"), "", "");
    ASSERT_TRUE(
        this->side.waitFor([&] { return this->hasStatus("R-1", QVXOrderStatus::Cancelled); }));
    const QVXOrderStruct done = this->last("R-1");
    EXPECT_EQ(done.Quantity, 300);
    EXPECT_EQ(done.CumExecQuantity, 0);
    EXPECT_EQ(done.LvsQuantity, 0);
    this->expectConsistent("R-1");
    EXPECT_TRUE(this->side.events().rejects.empty());
}

TYPED_TEST(PlatformContract, ReplaceChangesQuantityPriceAndIdOfTheSameOrder) {
    ASSERT_GE(this->send(this->Resting("P-1", 500)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("P-1", QVXOrderStatus::Open); }));
    const int32_t record = this->recordOf("P-1");
    ASSERT_EQ(this->side.platform().ReplaceOrder("P-1", record, {"P-1-R1", 300, 5, 1.50}), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->last("P-1").ClOrderID == "P-1-R1"; }));
    const QVXOrderStruct changed = this->last("P-1");
    EXPECT_EQ(changed.OrderRecordId, record);
    EXPECT_EQ(changed.OrderStatus, QVXOrderStatus::Open);
    EXPECT_EQ(changed.Quantity, 300);
    EXPECT_EQ(changed.LvsQuantity, 300);
    EXPECT_DOUBLE_EQ(changed.LmtPrice, 1.50);
    // The replaced order is cancelled under its new id.
    this->side.platform().CancelOrder("P-1-R1", record, "", "");
    ASSERT_TRUE(
        this->side.waitFor([&] { return this->hasStatus("P-1", QVXOrderStatus::Cancelled); }));
    this->expectConsistent("P-1");
}

TYPED_TEST(PlatformContract, HaltedSymbolIsRejectedOnceWithItsReason) {
    ASSERT_GE(this->send(this->Market("H-1", 200, Halted)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return !this->side.events().rejects.empty(); }));
    ASSERT_TRUE(this->side.waitFor([&] { return this->isFinal("H-1"); }));
    ASSERT_EQ(this->side.events().rejects.size(), 1u);
    const QVXRejectStruct& r = this->side.events().rejects[0];
    EXPECT_EQ(r.ClOrderID, "H-1");
    EXPECT_EQ(r.Symbol, Halted);
    EXPECT_EQ(r.Side, "B");
    EXPECT_EQ(r.Quantity, 200);
    EXPECT_NE(Lower(r.ReasonText).find("halted"), std::string::npos) << r.ReasonText;
    EXPECT_EQ(this->last("H-1").OrderStatus, QVXOrderStatus::Rejected);
    EXPECT_EQ(this->last("H-1").CumExecQuantity, 0);
    // Refused before it leaves: the same codes on both.
    EXPECT_EQ(this->send(this->Market("H-2", 0)), -3);
    OrderFields noSymbol = this->Market("H-3", 100, "");
    EXPECT_EQ(this->send(noSymbol), -4);
}

TYPED_TEST(PlatformContract, LinkLostMidBasketRefusesTheRestAndLosesNoFill) {
    const std::vector<std::string> ids = {"D-1", "D-2", "D-3", "D-4", "D-5", "D-6"};
    for (size_t i = 0; i < 3; ++i) {
        ASSERT_GE(this->send(this->Market(ids[i], 2 * Clip)), 0);
    }
    ASSERT_TRUE(this->side.waitFor([&] {
        return std::all_of(ids.begin(), ids.begin() + 3,
                           [&](const std::string& id) { return this->recordOf(id) != 0; });
    }));
    this->side.dropLink();
    for (size_t i = 3; i < ids.size(); ++i) {
        EXPECT_EQ(this->send(this->Market(ids[i], 2 * Clip)), -16) << ids[i];
    }
    this->side.restoreLink();
    ASSERT_TRUE(this->side.waitFor([&] {
        return std::all_of(ids.begin(), ids.begin() + 3,
                           [&](const std::string& id) { return this->isFinal(id); });
    }));
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(this->last(ids[i]).OrderStatus, QVXOrderStatus::Filled) << ids[i];
        EXPECT_EQ(this->last(ids[i]).CumExecQuantity, 2 * Clip) << ids[i];
        this->expectConsistent(ids[i]);
    }
    for (size_t i = 3; i < ids.size(); ++i) {
        EXPECT_EQ(this->recordOf(ids[i]), 0) << ids[i] << " was refused, never sent";
    }
    // Back online, orders go out again.
    ASSERT_GE(this->send(this->Market("D-7", Clip)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("D-7", QVXOrderStatus::Filled); }));
}

TYPED_TEST(PlatformContract, CounterpartyRestartKeepsEarlierFillsAndCountsNewOnesOnce) {
    ASSERT_GE(this->send(this->Market("X-1", 3 * Clip)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("X-1", QVXOrderStatus::Filled); }));
    ASSERT_GE(this->send(this->Resting("X-2", 400)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("X-2", QVXOrderStatus::Open); }));
    this->side.restartCounterparty();
    // After the restart a new order fills, and the resting order can still be cancelled.
    ASSERT_GE(this->send(this->Market("X-3", 3 * Clip)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("X-3", QVXOrderStatus::Filled); }))
        << "fills after the counterparty's restart reach the platform";
    this->side.platform().CancelOrder("X-2", this->recordOf("X-2"), "", "");
    ASSERT_TRUE(this->side.waitFor([&] { return this->isFinal("X-2"); }));
    for (const char* id : {"X-1", "X-3"}) {
        EXPECT_EQ(this->last(id).CumExecQuantity, 3 * Clip) << id;
        this->expectConsistent(id);
    }
    EXPECT_EQ(this->last("X-2").OrderStatus, QVXOrderStatus::Cancelled);
    EXPECT_EQ(this->last("X-2").CumExecQuantity, 0);
}

TYPED_TEST(PlatformContract, CancelOrReplaceTooLateLeavesTheFillsAlone) {
    ASSERT_GE(this->send(this->Market("L-1", 2 * Clip)), 0);
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("L-1", QVXOrderStatus::Filled); }));
    const int32_t record = this->recordOf("L-1");
    EXPECT_EQ(this->side.platform().ReplaceOrder("L-1", record, {"L-1-R1", 500, 5, 1.5}),
              kReplaceOrderNotOpen);
    this->side.platform().CancelOrder("L-1", record, "", "");
    ASSERT_GE(this->send(this->Market("L-2", Clip)), 0); // a marker: later events follow it
    ASSERT_TRUE(this->side.waitFor([&] { return this->hasStatus("L-2", QVXOrderStatus::Filled); }));
    EXPECT_EQ(this->last("L-1").OrderStatus, QVXOrderStatus::Filled);
    EXPECT_EQ(this->last("L-1").CumExecQuantity, 2 * Clip);
    this->expectConsistent("L-1");
    // The trader is told the cancel came too late, once, the same way on both.
    ASSERT_EQ(this->side.events().rejects.size(), 1u);
    const QVXRejectStruct& r = this->side.events().rejects[0];
    EXPECT_EQ(r.ClOrderID, "L-1");
    EXPECT_EQ(r.RejectReason, 0);
    EXPECT_NE(Lower(r.ReasonText).find("too late"), std::string::npos) << r.ReasonText;
    EXPECT_EQ(this->side.events().of(record).back().OrderStatus, QVXOrderStatus::Filled);
}

} // namespace
} // namespace wicker
