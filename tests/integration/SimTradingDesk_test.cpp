// The whole trading screen without its widgets on the simulated market: a stored basket
// loaded, priced by live quotes, sent with several buttons, filled in part by the
// simulator, cancelled, and its rejects reported, with lvBaskets checked against what the
// simulator itself reported for every order.

#include "common/Conversions.h"
#include "platform/sim/SimPlatform.h"
#include "storage/BasketDatabase.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "trading/TradingDesk.h"
#include "trading/orders/OrderRow.h"

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

TEST_F(SimTradingDesk, SendFillCancelAndRejectAddUpInTheBasketList) {
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

    // Cancel what is left of the second send.
    desk.settings().beforeCancel = true;
    boxes.clear();
    boxes.answerNext(MsgAnswer::Yes);
    const auto lines = desk.BasketListLines();
    const auto second = std::find_if(lines.begin(), lines.end(), [&](const BasketListLine& l) {
        return l[colBasketNum] == std::to_string(rest.basketSeq);
    });
    ASSERT_NE(second, lines.end());
    const int openBefore = FromSimulator().at(rest.basketSeq).open;
    ASSERT_GT(openBefore, 0) << "an offer-priced short waits for buyers";
    EXPECT_EQ(desk.CancelSelectedBasket(
                  BasketListSelection{(*second)[colBasketNum], (*second)[colBasket]}),
              openBefore);
    Run(1s);
    const Expected after = FromSimulator().at(rest.basketSeq);
    EXPECT_EQ(after.open, 0);
    EXPECT_EQ(after.openQty, 0);
    ExpectBasketListMatchesTheSimulator();
}

} // namespace
} // namespace wicker
