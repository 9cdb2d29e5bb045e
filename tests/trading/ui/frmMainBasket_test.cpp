// Loading a basket onto the main window: its lines, live quotes, check boxes, the fields
// and their spinners.

#include "trading/basket/StockList.h"
#include "trading/ui/MainScreenFixture.h"
#include "trading/ui/ModelSignals.h"
#include "trading/ui/StockTableModel.h"
#include "trading/ui/UpDown.h"

#include <QToolButton>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

TEST_F(MainScreen, QuickLoadButtonShowsTheBasketsLinesChecked) {
    Open();
    Click("cmdLoad_1");
    ASSERT_EQ(Rows(Stocks()), 10);
    EXPECT_EQ(Find<QLabel>("labelName").text().toStdString(), "Tech10");
    EXPECT_EQ(Cell(Stocks(), 0, stkSymbol), "AAPL");
    EXPECT_EQ(Cell(Stocks(), 2, stkSymbol), "NVDA");
    EXPECT_EQ(Cell(Stocks(), 2, stkBasketQty), "200");
    EXPECT_EQ(Cell(Stocks(), 2, stkOrderQty), "200");
    EXPECT_EQ(Cell(Stocks(), 2, stkDest), "NASDAQ");
    EXPECT_EQ(Cell(Stocks(), 2, stkTif), "DAY");
    for (int r = 0; r < 10; ++r) {
        EXPECT_EQ(Stocks().model()->index(r, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    }
}

TEST_F(MainScreen, ChoosingANameInTheListLoadsThatBasket) {
    Open();
    auto& list = Find<QListWidget>("lstBaskets");
    list.setCurrentRow(0); // Dow3
    ASSERT_EQ(Rows(Stocks()), 3);
    EXPECT_EQ(Cell(Stocks(), 1, stkSymbol), "KO");
    EXPECT_EQ(Find<QLabel>("labelName").text().toStdString(), "Dow3");

    // Cleared, then the same name clicked again: it loads again.
    Click("cmdClear");
    EXPECT_EQ(Rows(Stocks()), 0);
    emit list.itemClicked(list.item(0));
    EXPECT_EQ(Rows(Stocks()), 3);
}

TEST_F(MainScreen, QuoteTickRepaintsOnlyTheCellsThatChanged) {
    Open();
    Click("cmdLoad_1");
    Run(1s);
    ModelSignals log(window->stockModel());
    window->Timer200ms(); // nothing new arrived
    EXPECT_TRUE(log.changed.empty());

    QVXQuoteStruct q;
    q.Symbol = "MSFT";
    q.Fields = QVXQuoteField::Last;
    q.LastPrice = 123.25;
    sim->Events().push(PlatformEventQueue::QuoteUpdate{q});
    Pump();
    window->Timer200ms();
    ASSERT_FALSE(log.changed.empty());
    for (const ModelSignals::Range& r : log.changed) {
        EXPECT_EQ(r.from.row(), 1);
        EXPECT_EQ(r.to.row(), 1);
    }
    EXPECT_EQ(Cell(Stocks(), 1, stkLast), "123.25");
}

TEST_F(MainScreen, CheckBoxesSelectAllAndDeselectAll) {
    Open();
    Click("cmdLoad_1");
    Run(1s);
    QAbstractItemModel& model = *Stocks().model();
    const std::string allTicked = Find<QLabel>("sbMainPanel2").text().toStdString();
    ASSERT_TRUE(model.setData(model.index(3, 0), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_NE(Find<QLabel>("sbMainPanel2").text().toStdString(), allTicked);
    EXPECT_EQ(model.index(3, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_FALSE(desk->Stocks().Checked(3));
    EXPECT_TRUE(model.flags(model.index(3, 0)) & Qt::ItemIsUserCheckable);
    EXPECT_FALSE(model.flags(model.index(3, 1)) & Qt::ItemIsUserCheckable);

    Click("cmdCA");
    for (int r = 0; r < Rows(Stocks()); ++r) {
        EXPECT_EQ(model.index(r, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    }
    EXPECT_EQ(Find<QLabel>("sbMainPanel2").text().toStdString(), "0.00");
    Click("cmdSA");
    for (int r = 0; r < Rows(Stocks()); ++r) {
        EXPECT_EQ(model.index(r, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    }
    EXPECT_NE(Find<QLabel>("sbMainPanel2").text().toStdString(), "0.00");
}

TEST_F(MainScreen, FieldsAndSpinnersRecalculateTheLines) {
    Open();
    Click("cmdLoad_1");
    auto& percent = Find<QLineEdit>("txtPercent");
    auto& delta = Find<QLineEdit>("txtDelta");
    auto& mod = Find<QLineEdit>("txtMod");

    Find<QToolButton>("UpDown2_Up").click();
    EXPECT_EQ(percent.text().toStdString(), "2");
    EXPECT_EQ(Cell(Stocks(), 2, stkOrderQty), "400"); // NVDA 200 x 2

    Find<QToolButton>("UpDown3_Up").click(); // already 100: stays
    EXPECT_EQ(delta.text().toStdString(), "100");
    delta.setText(QStringLiteral("50")); // typed
    EXPECT_EQ(Cell(Stocks(), 2, stkOrderQty), "200");

    Find<QToolButton>("UpDown1_Up").click();
    EXPECT_EQ(mod.text().toStdString(), "0.01");
    EXPECT_EQ(Cell(Stocks(), 0, stkMod), "0.01");
    Find<QToolButton>("UpDown1_Down").click();
    EXPECT_EQ(mod.text().toStdString(), "0");

    percent.setText(QStringLiteral("x")); // not a number: counts as 0
    EXPECT_EQ(Cell(Stocks(), 2, stkOrderQty), "0");
    Find<QToolButton>("UpDown2_Down").click();
    EXPECT_EQ(percent.text().toStdString(), "1"); // the spinner puts back "1"

    Find<QComboBox>("cbTif").setCurrentText(QStringLiteral("IOC"));
    EXPECT_EQ(Cell(Stocks(), 5, stkTif), "IOC");
}

TEST_F(MainScreen, FiveThousandLinesStayOneModelResetAndRangedUpdates) {
    Open();
    std::vector<StockLine> lines(5000);
    for (size_t i = 0; i < lines.size(); ++i) {
        lines[i].cells[stkSymbol] = "S" + std::to_string(i);
        lines[i].cells[stkBasketQty] = "100";
    }
    ModelSignals log(window->stockModel());
    desk->Stocks().Assign(std::move(lines));
    EXPECT_EQ(log.resets, 1);
    EXPECT_EQ(Rows(Stocks()), 5000);
    // One column written on every line: one range, not 5,000 signals.
    for (int r = 0; r < 5000; ++r) {
        desk->Stocks().SetCell(r, stkLast, "10.00");
    }
    desk->Stocks().FlushChanges();
    ASSERT_EQ(log.changed.size(), 1u);
    EXPECT_EQ(log.changed[0].from.row(), 0);
    EXPECT_EQ(log.changed[0].to.row(), 4999);
    EXPECT_EQ(Cell(Stocks(), 4999, stkLast), "10.00");
}

} // namespace
} // namespace wicker::test
