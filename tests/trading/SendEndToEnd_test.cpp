// A basket's whole road through Wicker's trading logic: sent with several buttons into a
// small market behind the order interfaces, followed through the market's reports,
// partly filled, rejected and cancelled, with lvBaskets checked against the market's own
// fills.
#include "common/Formats.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/TradingEvents.h"
#include "trading/basket/DisplayNumbers.h"
#include "trading/orders/BasketCancel.h"
#include "trading/orders/BasketExecution.h"

#include <deque>
#include <map>
#include <variant>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::RecordingMessageBoxes;

/// The market side: accepts orders, fills them when told, answers cancels, rejects when
/// told. Its reports reach the screen's handlers only when pumped, as the platform's one
/// event queue delivers them between user actions.
class LoopbackMarket : public QVXOrderFactory, public QVXOrderMaintenance {
public:
    struct Fill {
        std::string memo;
        std::string side;
        int32_t quantity;
        double price;
    };

    std::unique_ptr<QVXOrder> CreateOrder() override;
    void CancelOrder(const std::string& clOrderId, int32_t recordId, const std::string& third,
                     const std::string& fourth) override {
        cancelRequests.push_back(clOrderId + "/" + std::to_string(recordId) + "/" + third + "/" +
                                 fourth);
        QVXOrderStruct& r = m_orders.at(recordId);
        r.LvsQuantity = 0;
        m_queue.emplace_back(r);
    }
    int32_t ReplaceOrder(const std::string& clOrderId, int32_t recordId,
                         const QVXOrderChange&) override {
        replaceRequests.push_back(clOrderId + "/" + std::to_string(recordId));
        return 0;
    }

    int32_t Accept(QVXOrderStruct r) {
        if (r.Account.empty()) {
            return -1;
        }
        if (r.Quantity <= 0) {
            return -3;
        }
        if (r.Destination == "BAD") {
            return -7;
        }
        r.OrderRecordId = m_nextId++;
        r.LvsQuantity = r.Quantity;
        m_orders[r.OrderRecordId] = r;
        m_queue.emplace_back(r);
        return 0;
    }

    void FillOrder(int32_t recordId, int32_t quantity, double price) {
        QVXOrderStruct& r = m_orders.at(recordId);
        const double dollars = r.AvgExecPrice * r.CumExecQuantity + price * quantity;
        r.CumExecQuantity += quantity;
        r.LvsQuantity -= quantity;
        r.AvgExecPrice = dollars / r.CumExecQuantity;
        fills.push_back(Fill{r.Memo, r.Side, quantity, price});
        m_queue.emplace_back(r);
    }

    void RejectOrder(int32_t recordId, int32_t reason) {
        const QVXOrderStruct& r = m_orders.at(recordId);
        m_queue.emplace_back(
            QVXRejectStruct{r.ClOrderID, r.Side, r.Quantity, r.Symbol, reason, ""});
    }

    void Pump(TradingEvents& events) {
        while (!m_queue.empty()) {
            auto event = std::move(m_queue.front());
            m_queue.pop_front();
            if (const auto* update = std::get_if<QVXOrderStruct>(&event)) {
                events.OnQVXOrderUpdate(*update);
            } else {
                events.OnQVXOrderReject(std::get<QVXRejectStruct>(event));
            }
        }
    }

    /// Record id of the order sent with this client order id.
    int32_t RecordId(const std::string& clOrderId) const {
        for (const auto& [id, r] : m_orders) {
            if (r.ClOrderID == clOrderId) {
                return id;
            }
        }
        return 0;
    }
    const std::map<int32_t, QVXOrderStruct>& Orders() const { return m_orders; }

    std::vector<Fill> fills;
    std::vector<std::string> cancelRequests;
    std::vector<std::string> replaceRequests;

private:
    std::map<int32_t, QVXOrderStruct> m_orders;
    std::deque<std::variant<QVXOrderStruct, QVXRejectStruct>> m_queue;
    int32_t m_nextId = 1001;
};

/// The order object of the market: keeps the properties and hands them over on submit.
class MarketTicket : public QVXOrder {
public:
    explicit MarketTicket(LoopbackMarket& market) : m_market(market) {}
    std::string Account() const override { return m_r.Account; }
    void setAccount(std::string v) override { m_r.Account = std::move(v); }
    std::string Side() const override { return m_r.Side; }
    void setSide(std::string v) override { m_r.Side = std::move(v); }
    std::string Symbol() const override { return m_r.Symbol; }
    void setSymbol(std::string v) override { m_r.Symbol = m_r.Instrument = std::move(v); }
    int32_t Quantity() const override { return m_r.Quantity; }
    void setQuantity(int32_t v) override { m_r.Quantity = v; }
    double LmtPrice() const override { return m_r.LmtPrice; }
    void setLmtPrice(double v) override { m_r.LmtPrice = v; }
    int32_t PriceType() const override { return m_r.PriceTypeCode; }
    void setPriceType(int32_t v) override { m_r.PriceTypeCode = v; }
    std::string ClOrderID() const override { return m_r.ClOrderID; }
    void setClOrderID(std::string v) override { m_r.ClOrderID = std::move(v); }
    std::string Tif() const override { return m_r.Tif; }
    void setTif(std::string v) override { m_r.Tif = std::move(v); }
    std::string Destination() const override { return m_r.Destination; }
    void setDestination(std::string v) override { m_r.Destination = std::move(v); }
    int32_t MaxFloor() const override { return m_r.Display; }
    void setMaxFloor(int32_t v) override { m_r.Display = v; }
    std::string Memo() const override { return m_r.Memo; }
    void setMemo(std::string v) override { m_r.Memo = std::move(v); }
    int32_t SubmitOrder() override {
        QVXOrderStruct r = m_r;
        // The platform reports side codes: the word "BUY" comes back as "B".
        if (r.Side == "BUY") {
            r.Side = "B";
        }
        return m_market.Accept(std::move(r));
    }

private:
    LoopbackMarket& m_market;
    QVXOrderStruct m_r;
};

std::unique_ptr<QVXOrder> LoopbackMarket::CreateOrder() {
    return std::make_unique<MarketTicket>(*this);
}

ExecutionLine Line(std::string symbol, std::string qty, std::string dest,
                   std::string ask = "10.10") {
    ExecutionLine l;
    l.checked = true;
    l.symbol = std::move(symbol);
    l.bid = "10.00";
    l.ask = std::move(ask);
    l.last = "10.05";
    l.quantity = std::move(qty);
    l.destination = std::move(dest);
    l.modifier = "0";
    l.tif = "DAY";
    return l;
}

class SendEndToEnd : public ::testing::Test {
protected:
    SendEndToEnd()
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 9, 30, 0, 0})), tracker(boxes, clock),
          events(tracker, [this] { ++closes; }), execution(market, sequence, store, boxes, clock),
          cancel(tracker, market, boxes) {}

    ExecuteReport Send(int button, const std::string& basket, std::vector<ExecutionLine> lines) {
        ExecutionInputs in{"acct01", "1", basket};
        return execution.cmdExecuteBasket_Click(button, lines, in, ExecutionSettings{});
    }
    void Tick() {
        market.Pump(events);
        tracker.Timer1sec();
    }
    const BasketListLine& LineOf(const std::string& basket, const std::string& num) const {
        for (const BasketListLine& l : tracker.BasketListLines()) {
            if (l[colBasket] == basket && l[colBasketNum] == num) {
                return l;
            }
        }
        throw std::runtime_error("no line " + basket + " " + num);
    }
    /// What the market itself says about the fills of one send.
    struct Expected {
        double bought = 0;
        double sold = 0;
        int64_t filled = 0;
    };
    Expected FromMarket(const std::string& memo) const {
        Expected e;
        for (const auto& f : market.fills) {
            if (f.memo == memo) {
                (f.side == "B" ? e.bought : e.sold) += f.quantity * f.price;
                e.filled += f.quantity;
            }
        }
        return e;
    }

    class NullStore : public SequenceStore {
    public:
        Result<void> SaveBasketNum(int16_t) override { return {}; }
    };

    RecordingMessageBoxes boxes;
    ManualClock clock;
    LoopbackMarket market;
    SendSequence sequence{57, 1};
    NullStore store;
    OrderTracker tracker;
    int closes = 0;
    TradingEvents events;
    BasketExecution execution;
    BasketCancel cancel;
};

TEST_F(SendEndToEnd, SendFillRejectAndCancelAreAccountedFor) {
    // Send 57: BUY MKT of Tech-10 (its dashes go), one line to a destination the market
    // refuses. Send 58: SELL BID of Tech-10, one line without an ask stays home.
    // Send 59: SHRT MOC of Energy.
    Send(3, "Tech-10",
         {Line("IBM", "300", "nasdaq"), Line("MSFT", "200", "ARCA"), Line("XXX", "10", "BAD")});
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "***** Submit Order Error *****\r\nXXX 10 BAD: Destination is not valid.\r\n");
    Send(4, "Tech-10", {Line("IBM", "300", "NASDAQ"), Line("AAPL", "150", "INET", "0")});
    ASSERT_EQ(boxes.shown().size(), 2u);
    EXPECT_EQ(boxes.shown()[1].text, "***** Orders Not Sent *****\r\nAAPL 150 INET\r\n\r\n");
    clock.advance(std::chrono::minutes(5));
    Send(14, "Energy", {Line("XOM", "400", "NYSE"), Line("CVX", "250", "NYSE")});
    EXPECT_EQ(market.Orders().size(), 5u);
    EXPECT_EQ(sequence.BasketSeq(), 60);

    Tick();
    ASSERT_EQ(tracker.BasketListLines().size(), 3u);
    EXPECT_EQ(LineOf("Tech10", "57"),
              (BasketListLine{"57", "Tech10", "09:35:00 AM", "2", "2", "500", "500", "0", "0.00",
                              "0.00", "0.00", "", "Buy"}));

    // Partial fills, as the market reports them.
    const int32_t ibm57 = market.RecordId("ACCT01-20240315-57-1");
    const int32_t msft57 = market.RecordId("ACCT01-20240315-57-2");
    const int32_t ibm58 = market.RecordId("ACCT01-20240315-58-1");
    const int32_t xom59 = market.RecordId("ACCT01-20240315-59-1");
    const int32_t cvx59 = market.RecordId("ACCT01-20240315-59-2");
    market.FillOrder(ibm57, 100, 10.07);
    market.FillOrder(ibm57, 200, 10.09);
    market.FillOrder(msft57, 50, 20.11);
    market.FillOrder(ibm58, 120, 9.99);
    market.FillOrder(xom59, 400, 60.25);
    Tick();

    for (const auto& [basket, num, memo] : {std::tuple{"Tech10", "57", "Tech-10-57-/bskt"},
                                            std::tuple{"Tech10", "58", "Tech-10-58-/bskt"},
                                            std::tuple{"Energy", "59", "Energy-59-/bskt"}}) {
        const Expected e = FromMarket(memo);
        const BasketListLine& l = LineOf(basket, num);
        EXPECT_EQ(l[colDlrsBot], DollarText(e.bought)) << memo;
        EXPECT_EQ(l[colDlrsSld], DollarText(e.sold)) << memo;
        EXPECT_EQ(l[colFilledQty], std::to_string(e.filled)) << memo;
        const int64_t total = std::stoll(l[colTotalQty]);
        EXPECT_EQ(std::stoll(l[colOpenQty]), total - e.filled) << memo;
        EXPECT_EQ(l[colPercentFilled], Format(100.0 * e.filled / total, "#0.00")) << memo;
    }
    EXPECT_EQ(LineOf("Tech10", "57")[colOpenOrders], "1");
    EXPECT_EQ(LineOf("Tech10", "57")[colDlrsBot],
              "4,030.50"); // 100 x 10.07 + 200 x 10.09 + 50 x 20.11
    EXPECT_EQ(LineOf("Tech10", "58")[colSide], "Sell");
    EXPECT_EQ(LineOf("Energy", "59")[colSide], "Short");
    EXPECT_EQ(LineOf("Energy", "59")[colTime], "09:35:00 AM");

    // The market rejects the rest of Energy: one notification for both rejects.
    market.RejectOrder(cvx59, 12);
    market.RejectOrder(ibm58, 3);
    Tick();
    ASSERT_EQ(boxes.shown().size(), 3u);
    EXPECT_EQ(boxes.shown()[2].title, "Rejection Notification");
    EXPECT_EQ(boxes.shown()[2].text, "Order: T 250 CVX was rejected. Code:  12\r\n"
                                     "Order: S 300 IBM was rejected. Code:  3\r\n");
    EXPECT_EQ(LineOf("Energy", "59")[colOpenOrders], "0");

    // Cancel the rest of send 57; a second cancel of everything finds nothing open.
    EXPECT_EQ(cancel.mnuCxlSel(BasketListSelection{"57", "Tech10"}, false), 1);
    EXPECT_EQ(market.cancelRequests,
              (std::vector<std::string>{"ACCT01-20240315-57-2/" + std::to_string(msft57) + "//"}));
    Tick();
    EXPECT_EQ(LineOf("Tech10", "57")[colOpenOrders], "0");
    EXPECT_EQ(LineOf("Tech10", "57")[colOpenQty], "0");
    EXPECT_EQ(LineOf("Tech10", "57")[colFilledQty], "350");
    EXPECT_EQ(cancel.mnuCxlAll(false), 0);
    EXPECT_EQ(boxes.shown().back().text, "There are no baskets with open orders.");
    EXPECT_EQ(boxes.shown().size(), 4u);

    // The platform goes away: the program closes once.
    events.OnQVXShutdown();
    events.OnQVXShutdown();
    EXPECT_TRUE(events.PlatformClosed());
    EXPECT_EQ(closes, 1);
}

} // namespace
} // namespace wicker
