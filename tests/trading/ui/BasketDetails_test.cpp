// The order summary of a send, opened from lvBaskets, with cancel and modify of one order,
// and Modify Basket, on the simulated market driven by hand.

#include "trading/orders/OrderRow.h"
#include "trading/orders/OrderSummary.h"
#include "trading/ui/BasketOrderWindows.h"
#include "trading/ui/MainScreenFixture.h"
#include "trading/ui/OrderSummaryModel.h"
#include "trading/ui/frmBasketDetails.h"
#include "trading/ui/frmModifyBasket.h"
#include "trading/ui/frmModifyOrder.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QMenu>
#include <QRadioButton>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

class OrderSummaryScreen : public MainScreen {
protected:
    void SendRestingBasket() {
        SendRestingTech10("[Confirmation]\r\nBeforeChange=1\r\n");
        ASSERT_EQ(Rows(Baskets()), 1);
        ASSERT_EQ(Cell(Baskets(), 0, colOpenOrders), "10");
    }
    frmBasketDetails& OpenByDoubleClick() {
        emit Baskets().doubleClicked(Baskets().model()->index(0, colBasket));
        const auto open = window->orderWindows().OpenSummaries();
        if (open.size() != 1) {
            throw std::runtime_error("no summary open");
        }
        return *open.front();
    }
    static QTableView& Orders(frmBasketDetails& summary) {
        return *summary.findChild<QTableView*>(QStringLiteral("lvOrders"));
    }
    int JournalRows() {
        return desk->db().OpenRecordset("SELECT COUNT(*) FROM tblOrders").Field(0).toLong();
    }
};

TEST_F(OrderSummaryScreen, DoubleClickOpensTheSummaryOfThatSend) {
    SendRestingBasket();
    frmBasketDetails& summary = OpenByDoubleClick();
    EXPECT_EQ(summary.send(), (BasketSend{"Tech10", 1}));
    EXPECT_FALSE(summary.isModal());
    QTableView& orders = Orders(summary);
    ASSERT_EQ(Rows(orders), 10);
    EXPECT_EQ(Cell(orders, 0, ocSymbol), "AAPL");
    EXPECT_EQ(Cell(orders, 0, ocSide), "Buy");
    EXPECT_EQ(Cell(orders, 0, ocQuantity), "100");
    EXPECT_EQ(Cell(orders, 0, ocPrice), "MOC");
    EXPECT_EQ(Cell(orders, 0, ocLeaves), "100");
    EXPECT_EQ(Cell(orders, 0, ocStatus), "Open");
    EXPECT_EQ(Cell(orders, 0, ocDestination), "NASDAQ");
    EXPECT_EQ(Cell(orders, 0, ocClOrderId), "DEMO01-20240315-1-1");
    // A second double-click brings the same window forward.
    emit Baskets().doubleClicked(Baskets().model()->index(0, 0));
    EXPECT_EQ(window->orderWindows().OpenSummaries().size(), 1u);
    // Closed, it leaves the tracker's collection: a tick after it does not touch it.
    summary.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window->orderWindows().OpenSummaries().empty());
    Run(1s);
}

TEST_F(OrderSummaryScreen, CancelOfOneOrderReachesTheMarketAndShowsAfterTheTick) {
    SendRestingBasket();
    frmBasketDetails& summary = OpenByDoubleClick();
    QTableView& orders = Orders(summary);
    orders.selectRow(2); // NVDA
    summary.findChild<QPushButton*>(QStringLiteral("cmdCancelOrder"))->click();
    EXPECT_TRUE(boxes.shown().empty());
    Run(1s);
    EXPECT_EQ(Cell(orders, 2, ocStatus), "Cancelled");
    EXPECT_EQ(Cell(orders, 2, ocLeaves), "0");
    EXPECT_EQ(Cell(orders, 1, ocStatus), "Open");
    EXPECT_EQ(Cell(Baskets(), 0, colOpenOrders), "9");
}

TEST_F(OrderSummaryScreen, ModifyThroughTheDialogReplacesTheOrderAndJournalsIt) {
    SendRestingBasket();
    frmBasketDetails& summary = OpenByDoubleClick();
    QTableView& orders = Orders(summary);
    orders.selectRow(1); // MSFT 100
    QDialog* dialog = summary.cmdModifyOrder_Click();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->objectName(), QStringLiteral("frmModifyOrder"));
    dialog->findChild<QLineEdit*>(QStringLiteral("txtQuantity"))->setText(QStringLiteral("60"));
    dialog->findChild<QComboBox*>(QStringLiteral("cboPriceType"))->setCurrentIndex(0); // Limit
    auto* price = dialog->findChild<QLineEdit*>(QStringLiteral("txtPrice"));
    ASSERT_TRUE(price->isEnabled());
    price->setText(QStringLiteral("0"));
    dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    ASSERT_EQ(boxes.texts(), std::vector<std::string>{"Price must be a number greater than 0."});
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(JournalRows(), 0);

    boxes.clear();
    price->setText(QStringLiteral("1.5")); // far below the market: it rests
    boxes.answerNext(MsgAnswer::Yes);      // "BeforeChange" is set
    dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].title, "Change Order");
    EXPECT_EQ(JournalRows(), 1);
    Run(1s);
    EXPECT_EQ(Cell(orders, 1, ocQuantity), "60");
    EXPECT_EQ(Cell(orders, 1, ocPrice), "1.50");
    EXPECT_EQ(Cell(orders, 1, ocStatus), "Open");
    EXPECT_EQ(Cell(orders, 1, ocClOrderId), "DEMO01-20240315-1-2-M1");
    EXPECT_EQ(Cell(Baskets(), 0, colTotalQty), "1410");
}

TEST_F(OrderSummaryScreen, ModifyBasketChangesOnlyTheOpenOrders) {
    SendRestingBasket();
    frmBasketDetails& summary = OpenByDoubleClick();
    QTableView& orders = Orders(summary);
    orders.selectRow(0);
    ASSERT_TRUE(summary.cmdCancelOrder_Click());
    Run(1s);
    ASSERT_EQ(Cell(orders, 0, ocStatus), "Cancelled");

    Action("mnuModifyBasket").trigger();
    auto* dialog = window->findChild<frmModifyBasket*>(QStringLiteral("frmModifyBasket"));
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QRadioButton*>(QStringLiteral("optBid"))->setChecked(true);
    dialog->findChild<QLineEdit*>(QStringLiteral("txtModifier"))->setText(QStringLiteral("-0.01"));
    boxes.answerNext(MsgAnswer::Yes);
    const auto report = dialog->cmdOK_Click();
    ASSERT_TRUE(report.has_value());
    EXPECT_EQ(report->changed, 9);
    EXPECT_EQ(boxes.texts(),
              std::vector<std::string>{
                  "Do you want to change all open orders for basket #1 to Bid - 0.01?"});
    EXPECT_EQ(JournalRows(), 9);
    Run(1s);
    EXPECT_EQ(Cell(orders, 0, ocStatus), "Cancelled");
    EXPECT_EQ(Cell(orders, 0, ocPrice), "MOC");
    for (int r = 1; r < 10; ++r) {
        EXPECT_NE(Cell(orders, r, ocPrice), "MOC") << r;
        EXPECT_EQ(Cell(orders, r, ocClOrderId).substr(Cell(orders, r, ocClOrderId).size() - 3),
                  "-M1");
    }

    // Then straight to market: the nine fill, the cancelled one stays as it was.
    boxes.clear();
    boxes.answerNext(MsgAnswer::Yes);
    Action("mnuBasketToMkt").trigger();
    Run(2s);
    EXPECT_EQ(Cell(orders, 0, ocStatus), "Cancelled");
    for (int r = 1; r < 10; ++r) {
        EXPECT_EQ(Cell(orders, r, ocStatus), "Filled") << r;
    }
    EXPECT_EQ(Cell(Baskets(), 0, colOpenOrders), "0");
    EXPECT_EQ(JournalRows(), 18);
}

} // namespace
} // namespace wicker::test

namespace wicker::test {
namespace {

TEST_F(MainScreen, BasketOptionsOffersTheOrderWindowsAfterTheCancels) {
    Open();
    std::vector<std::string> names;
    for (QAction* a : window->basketOptionsMenu().actions()) {
        if (!a->isSeparator()) {
            names.push_back(a->objectName().toStdString());
        }
    }
    EXPECT_EQ(names, (std::vector<std::string>{"mnuCxlAll", "mnuCxlSel", "mnuOrderSummary",
                                               "mnuModifyBasket", "mnuBasketToMkt"}));
    EXPECT_EQ(Baskets().contextMenuPolicy(), Qt::CustomContextMenu);
    // No line in lvBaskets: none of them opens or asks anything.
    for (const char* name : {"mnuCxlSel", "mnuOrderSummary", "mnuModifyBasket", "mnuBasketToMkt"}) {
        Action(name).trigger();
    }
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_TRUE(window->orderWindows().OpenSummaries().empty());
    EXPECT_EQ(window->findChild<QDialog*>(QStringLiteral("frmModifyBasket")), nullptr);
}

} // namespace
} // namespace wicker::test
