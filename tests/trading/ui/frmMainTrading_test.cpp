// Sending, following and cancelling baskets from the main window on the simulated market,
// and the road of platform events to the window's thread.

#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/BasketTableModel.h"
#include "trading/ui/MainScreenFixture.h"
#include "trading/ui/ModelSignals.h"

#include <thread>

#include <QApplication>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

TEST_F(MainScreen, SendButtonSendsTheBasketAndTheSendShowsInTheBasketList) {
    Open();
    ChooseAccount();
    Click("cmdLoad_1");
    Run(1s);
    Click("cmdExecuteBasket_3"); // BUY MKT
    EXPECT_TRUE(boxes.shown().empty()) << boxes.texts().front();
    Run(2s);

    ASSERT_EQ(Rows(Baskets()), 1);
    EXPECT_EQ(Cell(Baskets(), 0, colBasketNum), "1");
    EXPECT_EQ(Cell(Baskets(), 0, colBasket), "Tech10");
    EXPECT_EQ(Cell(Baskets(), 0, colTotalOrders), "10");
    EXPECT_EQ(Cell(Baskets(), 0, colOpenOrders), "0");
    EXPECT_EQ(Cell(Baskets(), 0, colTotalQty), "1450");
    EXPECT_EQ(Cell(Baskets(), 0, colFilledQty), "1450");
    EXPECT_EQ(Cell(Baskets(), 0, colPercentFilled), "100.00");
    EXPECT_EQ(Cell(Baskets(), 0, colSide), "Buy");
    EXPECT_NE(Cell(Baskets(), 0, colDlrsBot), "0.00");

    // Only checked lines go: a second send without NVDA.
    Stocks().model()->setData(Stocks().model()->index(2, 0), Qt::Unchecked, Qt::CheckStateRole);
    Click("cmdExecuteBasket_7"); // SELL MKT
    Run(2s);
    ASSERT_EQ(Rows(Baskets()), 2);
    EXPECT_EQ(Cell(Baskets(), 1, colBasketNum), "2");
    EXPECT_EQ(Cell(Baskets(), 1, colTotalOrders), "9");
    EXPECT_EQ(Cell(Baskets(), 1, colSide), "Sell");
}

TEST_F(MainScreen, SendWithoutAccountIsRefusedAndSendsNothing) {
    Open();
    Click("cmdLoad_1");
    Run(1s);
    Click("cmdExecuteBasket_3");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Please choose an account to use.");
    EXPECT_EQ(boxes.shown()[0].title, "Missing Account");
    Run(1s);
    EXPECT_EQ(Rows(Baskets()), 0);
}

TEST_F(MainScreen, CancelSelectedAsksThenCancelsTheOpenOrders) {
    SendRestingTech10("[Confirmation]\r\nBeforeCancel=1\r\n");
    EXPECT_TRUE(boxes.shown().empty());
    ASSERT_EQ(Rows(Baskets()), 1);
    ASSERT_EQ(Cell(Baskets(), 0, colOpenOrders), "10");

    // The question and the answers are the cancel logic's; here the selected line reaches it.
    boxes.answerNext(MsgAnswer::Yes);
    Action("mnuCxlSel").trigger();
    ASSERT_EQ(boxes.texts(),
              std::vector<std::string>{"Do you want to cancel all orders for basket #1"});
    Run(2s);
    EXPECT_EQ(Cell(Baskets(), 0, colOpenOrders), "0");
    EXPECT_EQ(Cell(Baskets(), 0, colFilledQty), "0");

    boxes.clear();
    Action("mnuCxlAll").trigger();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "There are no baskets with open orders.");
}

TEST_F(MainScreen, EventsPushedOnAnotherThreadReachTheWindowThroughItsEventLoop) {
    Open();
    Click("cmdLoad_1");
    Pump(); // the snapshots of the new lines
    QVXQuoteStruct q;
    q.Symbol = "AAPL";
    q.Fields = QVXQuoteField::Bid | QVXQuoteField::Ask | QVXQuoteField::Last;
    q.BidPrice = 99.5;
    q.AskPrice = 100.5;
    q.LastPrice = 100.25;
    std::thread platformThread([&] { sim->Events().push(PlatformEventQueue::QuoteUpdate{q}); });
    platformThread.join();
    EXPECT_EQ(sim->Events().size(), 1u);
    QApplication::processEvents(); // the queued drain the wake-up posted
    EXPECT_EQ(sim->Events().size(), 0u);
    window->Timer200ms();
    EXPECT_EQ(Cell(Stocks(), 0, stkLast), "100.25");
    EXPECT_EQ(Cell(Stocks(), 0, stkBid), "99.50");
}

TEST_F(MainScreen, AQuoteStormIsDeliveredInBoundedBatches) {
    Open();
    Click("cmdLoad_1");
    Pump();
    const size_t batch = window->eventPump().batch();
    QVXQuoteStruct q;
    q.Fields = QVXQuoteField::Last;
    q.LastPrice = 1;
    for (size_t i = 0; i < batch * 2 + 10; ++i) {
        q.Symbol = "Z" + std::to_string(i); // symbols of their own: one event each
        sim->Events().push(PlatformEventQueue::QuoteUpdate{q});
    }
    // A symbol's updates that wait together reach the screen as one, with the latest value.
    q.Symbol = "MSFT";
    for (int i = 0; i < 100; ++i) {
        q.LastPrice = 100 + i / 100.0;
        sim->Events().push(PlatformEventQueue::QuoteUpdate{q});
    }
    EXPECT_EQ(window->eventPump().drainBatch(), batch);
    EXPECT_EQ(sim->Events().size(), batch + 11);
    Pump();
    EXPECT_EQ(sim->Events().size(), 0u);
    window->Timer200ms();
    EXPECT_EQ(Cell(Stocks(), 1, stkLast), "100.99");
}

TEST_F(MainScreen, ExitWithOpenOrdersAsksButThePlatformShutdownClosesAtOnce) {
    SendRestingTech10();
    window->show();
    boxes.clear();

    boxes.answerNext(MsgAnswer::Cancel);
    Action("mnuExit").trigger();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text.rfind("10 orders are still open.", 0), 0u);
    EXPECT_TRUE(window->isVisible()); // stayed

    boxes.clear();
    sim->TriggerShutdown();
    Pump();
    QApplication::processEvents(); // the close is queued behind the event
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(desk->PlatformClosed());
    EXPECT_TRUE(boxes.shown().empty());
}

TEST(BasketTableModelUpdates, OnlyChangedCellsAndNewRowsAreAnnounced) {
    BasketTableModel model;
    ModelSignals log(model);
    BasketListLine a;
    a.fill("0");
    a[colBasketNum] = "1";
    BasketListLine b = a;
    b[colBasketNum] = "2";

    EXPECT_EQ(model.setLines({a}), BasketListColumnCount);
    EXPECT_EQ(log.inserted, 1);
    EXPECT_EQ(model.setLines({a}), 0);
    EXPECT_TRUE(log.changed.empty());

    BasketListLine a2 = a;
    a2[colOpenOrders] = "3";
    a2[colFilledQty] = "500";
    EXPECT_EQ(model.setLines({a2, b}), 2 + BasketListColumnCount);
    ASSERT_EQ(log.changed.size(), 1u);
    EXPECT_EQ(log.changed[0].from.column(), colOpenOrders);
    EXPECT_EQ(log.changed[0].to.column(), colFilledQty);
    EXPECT_EQ(log.inserted, 2);
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.index(1, colBasketNum).data().toString().toStdString(), "2");
    EXPECT_EQ(model.index(0, colOpenOrders).data().toString().toStdString(), "3");

    model.setLines({});
    EXPECT_EQ(log.removed, 1);
    EXPECT_EQ(model.rowCount(), 0);
}

} // namespace
} // namespace wicker::test
