#include "DeskFixture.h"
#include "storage/BasketDatabase.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::FakePlatform;
using test::ReadFile;
using Strings = std::vector<std::string>;

Strings Sorted(Strings v) {
    std::sort(v.begin(), v.end());
    return v;
}

using TradingDeskTest = test::DeskFixture;

TEST_F(TradingDeskTest, StartUpOnAnEmptyFolderRunsEveryStepInOrder) {
    TradingDesk& d = Start();
    EXPECT_EQ(d.StartupSteps(),
              (Strings{"OpenDatabase", "LoadSettings", "CurrentBasketName", "FillTifList",
                       "ReadAccounts", "LoadButtonValues", "EnableButtons", "LoadBasketList",
                       "OpenOrderJournal", "FillOrderList", "RegisterOrderSymbols"}));
    EXPECT_TRUE(d.CreatingDatabase());
    EXPECT_TRUE(std::filesystem::exists(dir / "baskets.mdb"));
    EXPECT_FALSE(d.LoadingSettings());
    EXPECT_EQ(d.CurrentBasketName(), "Basket");
    EXPECT_EQ(d.TifList(),
              (Strings{"DAY", "OPG", "FOK", "IOC", "GTC", "GTX", "EXT", "OS", "AEX", "NOW"}));
    EXPECT_EQ(d.TifText(), "DAY");
    for (int i = 0; i < OrderButtonCount; ++i) {
        EXPECT_EQ(d.OrderButtonsEnabled()[static_cast<size_t>(i)], i <= 17) << i;
    }
    EXPECT_TRUE(d.BasketNames().empty());
    EXPECT_TRUE(d.Accounts().accounts.empty());
    EXPECT_TRUE(d.BasketListLines().empty());
    EXPECT_TRUE(platform.calls.empty());
    EXPECT_EQ(d.StatusNotional(), "0.00");
    // A fresh day: the basket sequence starts at 1.
    EXPECT_EQ(d.Sequence().BasketSeq(), 1);
}

TEST_F(TradingDeskTest, StartUpClimbsTheLadderFromTheStoredVersion) {
    struct Row {
        const char* version;
        size_t steps;
    };
    for (const Row& r : {Row{"4010", 2}, Row{"4013", 1}, Row{"5010", 0}, Row{"9.9", 0}}) {
        SCOPED_TRACE(r.version);
        std::filesystem::remove(dir / "baskets.mdb");
        Prepare({}, r.version);
        TradingDesk& d = Start();
        EXPECT_FALSE(d.CreatingDatabase());
        EXPECT_EQ(d.DbVersionFound(), r.version);
        EXPECT_EQ(d.LadderSteps().size(), r.steps);
        desk.reset();
    }
}

TEST_F(TradingDeskTest, AFileThatIsNoDatabaseStopsTheStart) {
    test::WriteFile(dir / "baskets.mdb", "not a database at all");
    TradingDesk d(platform, boxes, clock, dir.path());
    EXPECT_FALSE(d.FormLoad().ok());
    EXPECT_FALSE(d.Loaded());
    EXPECT_EQ(ReadFile(dir / "baskets.mdb"), "not a database at all");
}

TEST_F(TradingDeskTest, OnlyTheFirstFourButtonBasketsGetAButton) {
    Prepare({Basket("A", 1, "bA"), Basket("B", 0), Basket("C", 1, "bC"), Basket("D", 1, "bD"),
             Basket("E", 1, "bE"), Basket("F", 1, "bF"), Line(1, "IBM", "10")});
    TradingDesk& d = Start();
    Strings captions;
    for (const auto& b : d.QuickLoadButtons()) {
        captions.push_back(b.caption);
    }
    EXPECT_EQ(captions, (Strings{"bA", "bC", "bD", "bE"}));
    EXPECT_EQ(d.QuickLoadButtons()[0].basketNum, 1);
    EXPECT_EQ(d.BasketNames(), (Strings{"A", "B", "C", "D", "E", "F"}));

    d.cmdLoad_Click(1);
    EXPECT_EQ(d.CurrentBasketName(), "A");
    EXPECT_EQ(Column(stkSymbol), Strings{"IBM"});
    d.cmdLoad_Click(5); // no such button
    d.cmdLoad_Click(0);
    EXPECT_EQ(d.CurrentBasketName(), "A");
}

TEST_F(TradingDeskTest, AccountsAndTheTypedDefault) {
    Prepare({"INSERT INTO tblAccount(strAcct,lngDefault) VALUES('ZED',0)",
             "INSERT INTO tblAccount(strAcct,lngDefault) VALUES('ACC1',0)"});
    TradingDesk& d = Start();
    EXPECT_EQ(d.Accounts().accounts, (Strings{"ACC1", "ZED"}));
    EXPECT_EQ(d.Accounts().text, ""); // no default: empty selection

    changed = 0;
    d.ConfirmAccount("new9");
    EXPECT_EQ(d.Accounts().text, "NEW9");
    EXPECT_EQ(d.Accounts().accounts, (Strings{"ACC1", "NEW9", "ZED"}));
    EXPECT_TRUE(changed & ScreenPart::Accounts);
    d.ConfirmAccount("zed");
    EXPECT_EQ(d.Accounts().text, "ZED");

    d.ConfirmAccount("   "); // nothing typed: nothing stored
    EXPECT_EQ(d.Accounts().accounts.size(), 3u);
    d.ConfirmAccount("o'neil"); // cannot be stored: a message, no crash
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(d.Accounts().text, "ZED");
}

TEST_F(TradingDeskTest, LoadBasketFillsLinesRegistersAndCalculates) {
    Prepare({Basket("Tech"), Basket("Oil"), Line(1, "IBM", "150", "nasdaq"), Line(1, "MSFT", "80"),
             Line(2, "XOM", "10"), Line(2, "IBM", "20")});
    TradingDesk& d = Start();
    d.settings().shareRounding = 100;
    ASSERT_TRUE(d.LoadBasketByName("Tech"));
    EXPECT_EQ(d.CurrentBasketName(), "Tech");
    EXPECT_EQ(d.CurrentBasketNum(), 1);
    EXPECT_EQ(Column(stkSymbol), (Strings{"IBM", "MSFT"}));
    EXPECT_EQ(Column(stkBasketQty), (Strings{"150", "80"}));
    EXPECT_EQ(Column(stkDest), (Strings{"nasdaq", "NYSE"}));
    EXPECT_EQ(Column(stkOrderQty), (Strings{"200", "80"}));
    EXPECT_EQ(Column(stkMod), (Strings{"0", "0"}));
    EXPECT_EQ(Column(stkTif), (Strings{"DAY", "DAY"}));
    EXPECT_TRUE(d.Stocks().Checked(0) && d.Stocks().Checked(1));
    EXPECT_EQ(d.Stocks().RecordNum(1), 2);
    EXPECT_EQ(platform.calls,
              (std::vector<FakePlatform::Registration>{{true, "IBM", "*"}, {true, "MSFT", "*"}}));
    EXPECT_EQ(d.StatusNotional(), "0.00"); // no prices yet

    platform.calls.clear();
    ASSERT_TRUE(d.LoadBasketByName("oil"));
    // MSFT is needed no more; IBM stays and is asked for afresh.
    EXPECT_EQ(platform.Symbols(false), Strings{"MSFT"});
    EXPECT_EQ(Sorted(platform.Symbols(true)), (Strings{"IBM", "XOM"}));
    EXPECT_EQ(d.Registrations().Count(), 2u);
    EXPECT_FALSE(d.LoadBasketByName("Nothing"));
    EXPECT_EQ(d.CurrentBasketName(), "oil");
}

TEST_F(TradingDeskTest, QuotesFlowFromThePlatformIntoTheLinesAtTheTick) {
    Prepare({Basket("Tech"), Line(1, "IBM", "100")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    QVXQuoteStruct q;
    q.Symbol = "IBM";
    q.Fields = QVXQuoteField::Last | QVXQuoteField::Bid;
    q.LastPrice = 12.5;
    q.BidPrice = 12.25;
    platform.Events().push(PlatformEventQueue::QuoteSnap{q});
    EXPECT_EQ(d.DrainPlatformEvents(), 1u);
    EXPECT_EQ(d.Stocks().Cell(0, stkLast), "");
    d.Timer200ms();
    EXPECT_EQ(d.Stocks().Cell(0, stkLast), "12.50");
    EXPECT_EQ(d.Stocks().Cell(0, stkBid), "12.25");
    // The notional counts the checked lines at the quote's own last, follows the quotes
    // at the next second, and leaves out an unticked line.
    d.SetPercent("200");
    EXPECT_EQ(d.StatusNotional(), "250,000.00");
    q.LastPrice = 12.3456;
    platform.Events().push(PlatformEventQueue::QuoteUpdate{q});
    d.DrainPlatformEvents();
    d.Timer1sec();
    EXPECT_EQ(d.StatusNotional(), "246,912.00");
    d.SetLineChecked(0, false);
    EXPECT_EQ(d.StatusNotional(), "0.00");
}

// The fields' and spinners' rules are the calculation's tests, their wiring the screen's.
TEST_F(TradingDeskTest, ALineThatCannotBeCalculatedIsReportedNotACrash) {
    Prepare({Basket("Tech"), Line(1, "IBM", "100"), Line(1, "MSFT", "50")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    d.SetDelta("50");
    d.Stocks().SetCell(1, stkBasketQty, "lots");
    d.SetPercent("1");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("Type mismatch"), std::string::npos);
    EXPECT_EQ(d.Stocks().Cell(0, stkOrderQty), "50"); // the line before it was done

    d.cmdClear_Click();
    EXPECT_TRUE(d.Stocks().Empty());
    EXPECT_EQ(d.StatusNotional(), "0.00");
}

TEST_F(TradingDeskTest, ReloadCurrentBasketReadsTheEditedLines) {
    Prepare({Basket("Tech"), Line(1, "IBM", "100")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    d.db().ExecuteSql(Line(1, "AAPL", "5"));
    platform.calls.clear();
    d.ReloadCurrentBasket();
    EXPECT_EQ(d.CurrentBasketName(), "Tech");
    EXPECT_EQ(Column(stkSymbol), (Strings{"IBM", "AAPL"}));
    EXPECT_EQ(platform.calls.front(), (FakePlatform::Registration{false, "IBM", "*"}));
    EXPECT_EQ(Sorted(platform.Symbols(true)), (Strings{"AAPL", "IBM"}));

    // Deleted elsewhere: the lines stay, unsaved.
    d.db().ExecuteSql("DELETE FROM tblBaskets");
    d.ReloadCurrentBasket();
    EXPECT_EQ(d.CurrentBasketName(), "Basket");
    EXPECT_EQ(d.CurrentBasketNum(), -1);
    EXPECT_EQ(d.Stocks().Count(), 2);
}

TEST_F(TradingDeskTest, EditedLinesAreQuotedAndCalculatedAfterARefresh) {
    Prepare({Basket("Tech"), Line(1, "IBM", "100"), Line(1, "MSFT", "50")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    d.SetPercent("2");
    StockLine pasted;
    pasted.cells[stkSymbol] = "AAPL";
    pasted.cells[stkBasketQty] = "30";
    d.Stocks().AddLine(pasted);
    d.Stocks().RemoveLines(1, 1);
    platform.calls.clear();
    d.RefreshLoadedLines();
    EXPECT_EQ(Column(stkOrderQty), (Strings{"200", "60"}));
    EXPECT_EQ(Column(stkTif), (Strings{"DAY", "DAY"}));
    EXPECT_EQ(platform.Symbols(false), Strings{"MSFT"});
    EXPECT_EQ(Sorted(platform.Symbols(true)), (Strings{"AAPL", "IBM"}));
    QVXQuoteStruct q;
    q.Symbol = "AAPL";
    q.Fields = QVXQuoteField::Last;
    q.LastPrice = 3;
    d.OnQVXQuoteUpdate(q);
    d.Timer200ms();
    EXPECT_EQ(d.Stocks().Cell(1, stkLast), "3.00");
}

TEST_F(TradingDeskTest, SendGoesThroughThePlatformAndAdvancesTheBasketNumber) {
    Prepare({Basket("Tech"), Line(1, "IBM", "100", "ARCA")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    const ExecuteReport report = d.ExecuteBasket(3, "acct1"); // BUY MKT
    EXPECT_EQ(report.outcome, ExecuteOutcome::Sent);
    ASSERT_EQ(platform.orders.submitted().size(), 1u);
    const test::RecordedOrder& o = *platform.orders.submitted()[0];
    EXPECT_EQ(o.value("Account"), "ACCT1");
    EXPECT_EQ(o.value("Symbol"), "IBM");
    EXPECT_EQ(o.value("Quantity"), "100");
    EXPECT_EQ(o.value("Memo"), "Tech-1-/bskt");
    EXPECT_EQ(d.Sequence().BasketSeq(), 2);
    EXPECT_NE(ReadFile(dir / "basket.ini").find("BasketNum=2"), std::string::npos);
}

TEST_F(TradingDeskTest, OrderSymbolsStayRegisteredAndFeedTheIndex) {
    Prepare({Basket("Tech"), Basket("Oil"), Line(1, "IBM", "100"), Line(2, "XOM", "10"),
             "UPDATE tblBasketDetails SET nIndexShares = 4 WHERE strSym = 'IBM'"});
    TradingDesk& d = Start();
    d.LoadBasketList();
    d.IndexStore().setDivisor("Tech", 2);
    d.LoadBasketByName("Tech");
    QVXOrderStruct update;
    update.OrderRecordId = 7;
    update.Memo = "Tech-1-/bskt";
    update.Symbol = "IBM";
    update.Side = "B";
    update.Quantity = 100;
    d.OnQVXOrderUpdate(update);
    EXPECT_TRUE(d.Timer1sec());
    ASSERT_EQ(d.BasketListLines().size(), 1u);

    platform.calls.clear();
    d.LoadBasketByName("Oil");
    EXPECT_TRUE(platform.Symbols(false).empty()); // IBM is still traded
    QVXQuoteStruct q;
    q.Symbol = "IBM";
    q.Fields = QVXQuoteField::Last;
    q.LastPrice = 10;
    d.OnQVXQuoteUpdate(q);
    d.Timer2sec();
    EXPECT_EQ(d.Tracker().BasketListLines()[0][colIndex], "20.0000"); // 4 x 10 / 2
    EXPECT_EQ(d.Tracker().BasketListLines()[0][colSide], "Buy");
}

TEST_F(TradingDeskTest, BasketTotalsShowTheLoadedBasketsSendsUnlessShowAllIsSet) {
    Prepare({Basket("Tech-10"), Basket("Oil"), Line(1, "IBM", "100"), Line(2, "XOM", "10")});
    TradingDesk& d = Start();
    const auto order = [&](int32_t id, const std::string& memo, int32_t leaves) {
        QVXOrderStruct u;
        u.OrderRecordId = id;
        u.Memo = memo;
        u.Symbol = "IBM";
        u.Side = "B";
        u.Quantity = 100;
        u.LvsQuantity = leaves;
        d.OnQVXOrderUpdate(u);
    };
    order(1, "Tech-10-1-/bskt", 0);
    order(2, "Oil-2-/bskt", 100);
    order(3, "Oil-3-/bskt", 0);
    order(4, "Tech-10-4-/bskt", 100);
    ASSERT_TRUE(d.Timer1sec());
    const auto sends = [&] {
        Strings out;
        for (const BasketListLine& line : d.BasketListLines()) {
            out.push_back(line[colBasketNum]);
        }
        return out;
    };
    // Nothing loaded yet: every send.
    EXPECT_EQ(sends(), (Strings{"1", "2", "3", "4"}));
    EXPECT_EQ(d.HiddenSendsText(), "");

    changed = 0;
    d.LoadBasketByName("Tech-10");
    EXPECT_TRUE(changed & ScreenPart::BasketTotals) << "the list follows the loaded basket";
    EXPECT_EQ(sends(), (Strings{"1", "4"}));
    EXPECT_EQ(d.HiddenSendsText(),
              "2 sends of other baskets are not shown, 1 of them with open orders "
              "(View > General Settings... > show all baskets).");
    EXPECT_TRUE(d.OpenSendsHidden());
    EXPECT_EQ(d.Tracker().BasketListLines().size(), 4u) << "the tracker keeps every send";

    d.LoadBasketByName("Oil");
    EXPECT_EQ(sends(), (Strings{"2", "3"}));
    // Cancelling the only open hidden send leaves nothing open out of sight.
    order(4, "Tech-10-4-/bskt", 0);
    d.Timer1sec();
    EXPECT_EQ(d.HiddenSendsText(),
              "2 sends of other baskets are not shown (View > General Settings... > show all "
              "baskets).");
    EXPECT_FALSE(d.OpenSendsHidden());

    changed = 0;
    d.settings().basketInfoShowAll = true;
    d.SettingsEdited();
    EXPECT_TRUE(changed & ScreenPart::BasketTotals);
    EXPECT_EQ(sends(), (Strings{"1", "2", "3", "4"}));
    EXPECT_EQ(d.HiddenSendsText(), "");

    d.settings().basketInfoShowAll = false;
    d.SettingsEdited();
    d.NewBasket();
    EXPECT_EQ(sends(), (Strings{"1", "2", "3", "4"})) << "an empty new basket hides nothing";
}

TEST_F(TradingDeskTest, PlatformShutdownClosesTheScreen) {
    TradingDesk& d = Start();
    int closed = 0;
    d.setCloseMainScreen([&] { ++closed; });
    platform.Events().push(PlatformEventQueue::Shutdown{});
    platform.Events().push(PlatformEventQueue::Status{false, "offline"});
    d.DrainPlatformEvents();
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(d.PlatformClosed());
    EXPECT_EQ(d.PlatformStatusText(), "offline");
    EXPECT_TRUE(changed & ScreenPart::StatusBar);
}

TEST_F(TradingDeskTest, UnloadWritesTheSettingsInOrderAndDropsRegistrations) {
    Prepare({Basket("Tech"), Basket("Oil"), Line(1, "IBM", "100")});
    TradingDesk& d = Start();
    d.LoadBasketByName("Tech");
    d.IndexStore().setDivisor("Tech", 2.5);
    d.IndexStore().setIndexType("Oil", "Eql Dlr Weighted");
    d.settings().buttons = "111111111111111111000";
    platform.calls.clear();
    d.FormUnload();

    const std::string ini = ReadFile(dir / "basket.ini");
    const Strings sections{"[ColumnPositions]", "[ButtonsDisplay]", "[ColumnDisplay]", "[Divisors]",
                           "[IndexTypes]"};
    size_t at = 0;
    for (const auto& s : sections) {
        const size_t found = ini.find(s);
        ASSERT_NE(found, std::string::npos) << s;
        EXPECT_GT(found, at) << s;
        at = found;
    }
    EXPECT_NE(ini.find("List=Tech_2.5,"), std::string::npos);
    EXPECT_NE(ini.find("List=Oil_Eql Dlr Weighted,"), std::string::npos);
    EXPECT_NE(ini.find("Buttons=111111111111111111000"), std::string::npos);
    EXPECT_TRUE(d.Stocks().Empty());
    EXPECT_EQ(platform.Symbols(false), Strings{"IBM"});
    EXPECT_EQ(d.Registrations().Count(), 0u);

    platform.calls.clear();
    d.FormUnload(); // the second call does nothing
    EXPECT_TRUE(platform.calls.empty());

    // The next start reads the lists back.
    desk.reset();
    TradingDesk& again = Start();
    EXPECT_EQ(again.IndexStore().divisor("Tech"), 2.5);
    EXPECT_EQ(again.IndexStore().indexType("Oil"), "Eql Dlr Weighted");
}

} // namespace
} // namespace wicker
