// The whole trading screen without its widgets on the simulated market: a stored basket
// loaded, priced by live quotes, sent with several buttons, filled in part by the
// simulator and its rejects reported, with lvBaskets checked against what the simulator
// itself reported for every order; then the program restarted on the same day's orders.

#include "common/Conversions.h"
#include "platform/TicketOrder.h"
#include "platform/sim/SimPlatform.h"
#include "storage/BasketDatabase.h"
#include "storage/clsIniFile.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "trading/TradingDesk.h"
#include "trading/orders/OrderLedger.h"
#include "trading/orders/OrderRow.h"
#include "trading/orders/OrderSummary.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

// Hands every simulator event to the desk, and keeps the last state of each order.
class Tee : public QVXEvents, public QVXQuoteEvents {
public:
    explicit Tee(TradingDesk& desk) : m_desk(desk) {}
    std::map<int32_t, QVXOrderStruct> last; // by record id
    int rejects = 0;

    void OnQVXOrderUpdate(const QVXOrderStruct& u) override {
        last[u.OrderRecordId] = u;
        m_desk.OnQVXOrderUpdate(u);
    }
    void OnQVXOrderReject(const QVXRejectStruct& r) override {
        ++rejects;
        m_desk.OnQVXOrderReject(r);
    }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override { m_desk.OnQVXOrderWarning(w); }
    void OnQVXShutdown() override { m_desk.OnQVXShutdown(); }
    void OnPlatformStatus(bool online, const std::string& text) override {
        m_desk.OnPlatformStatus(online, text);
    }
    void OnQVXQuoteSnap(const QVXQuoteStruct& q) override { m_desk.OnQVXQuoteSnap(q); }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override { m_desk.OnQVXQuoteUpdate(q); }

private:
    TradingDesk& m_desk;
};

double Number(std::string text) {
    std::erase(text, ',');
    return text.empty() ? 0 : std::stod(text);
}

// What lvBaskets must show for one send, computed from the simulator's own reports.
struct Expected {
    int orders = 0, open = 0;
    int64_t total = 0, openQty = 0, filled = 0;
    double bought = 0, sold = 0;
    std::string side;
};

class SimTradingDesk : public ::testing::Test {
protected:
    SimTradingDesk()
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})),
          sim(Settings(), clock, SimDriver::Manual), desk(sim, boxes, clock, dir.path()),
          tee(desk) {}

    static SimSettings Settings() {
        SimSettings s;
        s.seed = 11;
        s.updatesPerSecond = 5;
        s.clipSize = 200;
        s.fillDelayMs = 1000;
        s.halted = {"HALTD"};
        return s;
    }

    void SetUp() override {
        ASSERT_TRUE(sim.Start().ok());
        ASSERT_TRUE(desk.FormLoad().ok());
        Database& db = desk.db();
        db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                      "VALUES('Megacaps','Mega',0,'B')");
        const int32_t num = db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE "
                                             "strBasketName = 'Megacaps'")
                                .Field("intBasketNum")
                                .toInt();
        SaveBasketDetails(db, num, "Megacaps",
                          {{"AAPL", "500", "NYSE"},
                           {"MSFT", "300", "NYSE"},
                           {"JNJ", "1000", "ARCA"},
                           {"HALTD", "100", "NYSE"},
                           {"XOM", "250", "ARCA"}});
        desk.LoadBasketList();
        ASSERT_TRUE(desk.LoadBasketByName("Megacaps"));
        Run(1s); // snapshots and a few quotes reach the lines
        // A new database without legacy files says so once; the test is about trading.
        ASSERT_LE(boxes.shown().size(), 1u);
        boxes.clear();
    }

    /// Moves the market on and lets the screen's timers run, 200 ms at a time.
    void Run(std::chrono::milliseconds span) {
        for (auto t = 0ms; t < span; t += 200ms) {
            sim.advance(200ms);
            clock.advance(200ms);
            sim.Events().drain(tee, tee);
            desk.Timer200ms();
        }
        desk.Timer1sec();
        desk.Timer2sec();
    }

    std::map<int, Expected> FromSimulator() const {
        std::map<int, Expected> out;
        for (const auto& [id, u] : tee.last) {
            // memo "name-send-/bskt"
            const size_t a = u.Memo.find('-');
            const int send = std::stoi(u.Memo.substr(a + 1, u.Memo.find('-', a + 1) - a - 1));
            Expected& e = out[send];
            ++e.orders;
            e.open += u.LvsQuantity > 0;
            e.total += u.Quantity;
            e.openQty += u.LvsQuantity;
            e.filled += u.CumExecQuantity;
            (u.Side == "B" ? e.bought : e.sold) += u.CumExecQuantity * u.AvgExecPrice;
            e.side = u.Side == "B" ? "Buy" : u.Side == "S" ? "Sell" : "Short";
        }
        return out;
    }

    void ExpectBasketListMatchesTheSimulator() {
        const std::map<int, Expected> expected = FromSimulator();
        ASSERT_EQ(desk.BasketListLines().size(), expected.size());
        for (const BasketListLine& line : desk.BasketListLines()) {
            SCOPED_TRACE("send " + line[colBasketNum]);
            const Expected& e = expected.at(std::stoi(line[colBasketNum]));
            EXPECT_EQ(line[colBasket], "Megacaps");
            EXPECT_EQ(Number(line[colTotalOrders]), e.orders);
            EXPECT_EQ(Number(line[colOpenOrders]), e.open);
            EXPECT_EQ(Number(line[colTotalQty]), e.total);
            EXPECT_EQ(Number(line[colOpenQty]), e.openQty);
            EXPECT_EQ(Number(line[colFilledQty]), e.filled);
            EXPECT_NEAR(Number(line[colDlrsBot]), e.bought, 0.01);
            EXPECT_NEAR(Number(line[colDlrsSld]), e.sold, 0.01);
            EXPECT_NEAR(Number(line[colPercentFilled]), 100.0 * e.filled / e.total, 0.005);
            EXPECT_EQ(line[colSide], e.side);
        }
    }

    test::TempDir dir;
    ManualClock clock;
    test::RecordingMessageBoxes boxes;
    SimPlatform sim;
    TradingDesk desk;
    Tee tee;
};

TEST_F(SimTradingDesk, SendFillAndRejectAddUpInTheBasketList) {
    for (int row = 0; row < desk.Stocks().Count(); ++row) {
        EXPECT_FALSE(desk.Stocks().Cell(row, 1).empty()) << "line " << row << " has a bid";
    }
    const ExecuteReport buy = desk.ExecuteBasket(3, "ACCT01"); // BUY MKT
    EXPECT_EQ(buy.ordersSubmitted, 5);
    EXPECT_TRUE(buy.submitErrors.empty());
    const ExecuteReport rest =
        desk.ExecuteBasket(9, "ACCT01"); // SHRT ASK: rests until bids reach it
    EXPECT_EQ(rest.ordersSubmitted, 5);
    EXPECT_EQ(rest.basketSeq, buy.basketSeq + 1);
    EXPECT_TRUE(boxes.shown().empty()) << boxes.shown()[0].text;

    Run(3s);
    // Both sends' orders for the halted symbol were rejected: one message for the two.
    ASSERT_EQ(tee.rejects, 2);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Rejection Notification");
    ExpectBasketListMatchesTheSimulator();
    const Expected first = FromSimulator().at(buy.basketSeq);
    EXPECT_EQ(first.open, 0) << "market orders fill completely";
    EXPECT_EQ(first.filled, 500 + 300 + 1000 + 250);
}

// What the screen shows of the day's orders: lvBaskets (but the quote-driven index) and
// every send's order summary.
std::vector<std::vector<std::string>> ScreenOfOrders(TradingDesk& desk) {
    std::vector<std::vector<std::string>> screen;
    for (BasketListLine line : desk.BasketListLines()) {
        line[colIndex].clear();
        screen.emplace_back(line.begin(), line.end());
        const auto send = BasketSendOf(line[colBasketNum], line[colBasket]);
        for (const OrderSummaryLine& order : OrderSummaryLines(desk.Tracker(), *send, 2)) {
            screen.emplace_back(order.texts.begin(), order.texts.end());
        }
    }
    return screen;
}

// The program stops and starts again while the broker keeps the orders: the restarted
// desk shows every order as it was, works on the open ones, and never reuses a send number.
TEST_F(SimTradingDesk, ARestartShowsTheDayAsItWasAndCarriesOn) {
    const ExecuteReport buy = desk.ExecuteBasket(3, "ACCT01");  // BUY MKT: fills
    const ExecuteReport rest = desk.ExecuteBasket(9, "ACCT01"); // SHRT ASK: rests
    Run(2s);
    // One resting order replaced at the broker, another cancelled from the screen.
    const OrderUpdate& resting = desk.Tracker().Orders()[6];
    ASSERT_GT(resting.m_nLvsQuantity, 0);
    QVXOrderChange change;
    change.quantity = resting.m_nQuantity + 100;
    change.priceType = OrderPriceType::Limit;
    change.lmtPrice = resting.m_fLmtPrice + 5;
    ASSERT_EQ(sim.ReplaceOrder(resting.m_strClOrderId, resting.m_nOrderRecordId, change), 0);
    sim.CancelOrder(desk.Tracker().Orders()[7].m_strClOrderId,
                    desk.Tracker().Orders()[7].m_nOrderRecordId, "", "");
    Run(1s);
    const auto before = ScreenOfOrders(desk);
    ASSERT_EQ(desk.BasketListLines().size(), 2u);
    const int open = desk.Tracker().Rows()[1].m_nOpenOrders;
    ASSERT_GT(open, 0);

    // basket.ini edited back: the journal still knows which send numbers are used.
    clsIniFile ini;
    ini.setPath(dir.path() / "basket.ini");
    ini.setSection("Sequence");
    ini.setKey("BasketNum");
    ini.setValue("1");
    ASSERT_TRUE(ini.Success());
    test::RecordingMessageBoxes restartBoxes;
    TradingDesk restarted(sim, restartBoxes, clock, dir.path());
    ASSERT_TRUE(restarted.FormLoad().ok());
    sim.Events().drain(restarted, restarted);
    restarted.Timer1sec();
    EXPECT_EQ(restarted.Restored().restored, 10u);
    EXPECT_EQ(restarted.Restored().adopted, static_cast<size_t>(open));
    EXPECT_EQ(ScreenOfOrders(restarted), before);

    // The open orders are the broker's again: a cancel from the restarted program reaches it.
    ASSERT_TRUE(restarted.LoadBasketByName("Megacaps"));
    restarted.settings().beforeCancel = false;
    EXPECT_EQ(restarted.CancelSelectedBasket(
                  BasketListSelection{std::to_string(rest.basketSeq), "Megacaps"}),
              open);
    sim.advance(200ms);
    sim.Events().drain(restarted, restarted);
    restarted.Timer1sec();
    EXPECT_EQ(restarted.Tracker().Rows()[1].m_nOpenOrders, 0);

    restarted.Timer200ms();
    const ExecuteReport next = restarted.ExecuteBasket(3, "ACCT01");
    EXPECT_EQ(next.basketSeq, rest.basketSeq + 1);
    EXPECT_NE(next.basketSeq, buy.basketSeq);
}

// Orders written before a send but never handed over (the program died in between) come
// back as not sent, and say so.
TEST_F(SimTradingDesk, OrdersTheProgramNeverHandedOverShowAsNotSent) {
    {
        OrderLedger ledger(dir.path() / "orders.db", clock);
        TicketOrder order([](const OrderTicket&) { return 0; });
        order.setMemo("Megacaps-40-/bskt");
        order.setAccount("ACCT01");
        order.setSymbol("IBM");
        order.setSide("B");
        order.setQuantity(300);
        order.setPriceType(OrderPriceType::Market);
        order.setTif("D");
        order.setDestination("NYSE");
        order.setClOrderID("ACCT01-20240315-40-1");
        const QVXOrder* orders[] = {&order};
        ledger.SendBegins(40, "Megacaps", orders);
    }
    test::RecordingMessageBoxes restartBoxes;
    TradingDesk restarted(sim, restartBoxes, clock, dir.path());
    ASSERT_TRUE(restarted.FormLoad().ok());
    EXPECT_EQ(restarted.Restored().notSent, 1u);
    ASSERT_EQ(restarted.Tracker().Orders().size(), 1u);
    EXPECT_EQ(restarted.Tracker().StatusText(0), "Not sent (program stopped)");
    EXPECT_EQ(restarted.Tracker().Orders()[0].m_nLvsQuantity, 0);
    EXPECT_NE(restarted.NoAnswerText().find("1 order was written but not sent"), std::string::npos);
}

} // namespace
} // namespace wicker
