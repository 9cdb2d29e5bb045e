// The desk's editing of the loaded basket: paste, new basket, removal of lines and baskets,
// save-as, and the add-stock and edit-item changes, checked against the database rows.

#include "DeskFixture.h"
#include "baskets/SaveBasketAs.h"
#include "storage/BasketDatabase.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

class LoadedBasketEditing : public test::DeskFixture {
protected:
    /// Tech (1): IBM 100 NYSE, MSFT 50 NYSE, IBM 20 NYSE; Oil (2): XOM 10 NYSE.
    void SetUp() override {
        Prepare({Basket("Tech", 1, "T"), Basket("Oil", 0, "O"), Line(1, "IBM", "100"),
                 Line(1, "MSFT", "50"), Line(1, "IBM", "20"), Line(2, "XOM", "10")});
        Start();
        boxes.clear();
    }

    /// "symbol qty dest [index shares]" of every stored line, by record number.
    Strings StoredRows(int basketNum = -1) {
        std::string sql = "SELECT intRecordNum, strSym, intQty, strDest, nIndexShares FROM "
                          "tblBasketDetails";
        if (basketNum >= 0) {
            sql += " WHERE intBasketNum = " + std::to_string(basketNum);
        }
        Recordset rs = desk->db().OpenRecordset(sql + " ORDER BY intRecordNum");
        Strings out;
        for (; !rs.IsEOF(); rs.MoveNext()) {
            std::string row = rs.Field("strSym").text() + " " + rs.Field("intQty").text() + " " +
                              rs.Field("strDest").text();
            if (!rs.Field("nIndexShares").isNull()) {
                row += " " + rs.Field("nIndexShares").text();
            }
            out.push_back(row);
        }
        return out;
    }

    void Paste(const std::string& text) {
        const std::optional<PasteTable> table = TradingDesk::ParsePasteText(text);
        ASSERT_TRUE(table.has_value()) << text;
        desk->PasteLines(*table);
    }

    void Quote(const std::string& symbol, double last) {
        QVXQuoteStruct q;
        q.Symbol = symbol;
        q.Fields = QVXQuoteField::Last;
        q.LastPrice = last;
        desk->OnQVXQuoteUpdate(q);
        desk->Timer200ms();
    }
};

TEST_F(LoadedBasketEditing, PasteReplacesAStoredBasketByAnUnsavedOne) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    platform.calls.clear();
    Paste("ibm\t 100 \r\nGOOGL\t5\r\nKO\t7\tarca\r\n");
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
    EXPECT_EQ(desk->CurrentBasketName(), "Basket");
    EXPECT_EQ(Column(stkSymbol), (Strings{"ibm", "GOOGL", "KO"}));
    EXPECT_EQ(Column(stkBasketQty), (Strings{"100", "5", "7"}));
    EXPECT_EQ(Column(stkDest), (Strings{"NYSE", "ARCA", "ARCA"}));
    EXPECT_EQ(Column(stkOrderQty), (Strings{"100", "5", "7"}));
    EXPECT_EQ(Column(stkTif), (Strings{"DAY", "DAY", "DAY"}));
    for (int row = 0; row < 3; ++row) {
        EXPECT_TRUE(desk->Stocks().Checked(row));
        EXPECT_EQ(desk->Stocks().RecordNum(row), -1);
    }
    EXPECT_EQ(platform.Symbols(false), Strings{"MSFT"});
    EXPECT_EQ(StoredRows(1), (Strings{"IBM 100 NYSE", "MSFT 50 NYSE", "IBM 20 NYSE"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(LoadedBasketEditing, ASymbolPastedTwiceHasTwoLinesUnderOneEntry) {
    Paste("IBM\t100\r\nMSFT\t5\r\nIBM\t30\r\n");
    ASSERT_EQ(desk->Stocks().Count(), 3);
    EXPECT_EQ(desk->Quotes().QuotesOf("IBM").size(), 2u);
    EXPECT_EQ(desk->Registrations().Count(), 2u);
    Quote("IBM", 12.5);
    EXPECT_EQ(desk->Stocks().Cell(0, stkLast), "12.50");
    EXPECT_EQ(desk->Stocks().Cell(2, stkLast), "12.50");
    EXPECT_EQ(desk->Stocks().Cell(1, stkLast), "");
}

TEST_F(LoadedBasketEditing, AQuantityThatIsNoNumberShowsThePasteMessage) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    Paste("IBM\t100\r\nMSFT\tlots\r\nKO\t3\r\n");
    ASSERT_EQ(boxes.texts(), Strings{std::string(PasteFormatMessage)});
    EXPECT_EQ(boxes.shown().front().icon, MsgIcon::Exclamation);
    // The loaded lines stay on the screen, as an unsaved basket: never under Tech's name.
    EXPECT_EQ(Column(stkSymbol), (Strings{"IBM", "MSFT", "KO"}));
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
    EXPECT_EQ(desk->CurrentBasketName(), "Basket");
    EXPECT_EQ(StoredRows(1).size(), 3u);
    // Every line has the screen's modifier and TIF, so the good ones can be sent; the bad
    // one, put right through Edit, keeps them.
    EXPECT_EQ(Column(stkTif), (Strings{"DAY", "DAY", "DAY"}));
    EXPECT_EQ(Column(stkMod), (Strings{"0", "0", "0"}));
    MainLineEntry fixed{"MSFT", "50", "NYSE", "", ""};
    ASSERT_TRUE(desk->EditMainLine(1, fixed));
    EXPECT_EQ(desk->Stocks().Cell(1, stkTif), "DAY");
    EXPECT_EQ(desk->Stocks().Cell(1, stkOrderQty), "50");
}

TEST_F(LoadedBasketEditing, NewBasketEmptiesTheScreenIntoAnUnsavedBasket) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    desk->NewBasket();
    EXPECT_EQ(desk->Stocks().Count(), 0);
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
    EXPECT_EQ(desk->CurrentBasketName(), "Basket");
    EXPECT_EQ(desk->Registrations().Count(), 0u);
    EXPECT_EQ(StoredRows(1).size(), 3u);
}

TEST_F(LoadedBasketEditing, RemovingALineOfAStoredBasketDeletesItsRowAtOnce) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    desk->RemoveSelectedLine(0); // the first IBM
    EXPECT_EQ(Column(stkSymbol), (Strings{"MSFT", "IBM"}));
    EXPECT_EQ(StoredRows(), (Strings{"MSFT 50 NYSE", "IBM 20 NYSE", "XOM 10 NYSE"}));
    // The per-symbol entries follow the rows' new positions.
    Quote("IBM", 7);
    EXPECT_EQ(desk->Stocks().Cell(1, stkLast), "7.00");
    EXPECT_EQ(desk->Stocks().Cell(0, stkLast), "");

    desk->RemoveSelectedLine(5); // no such line
    desk->RemoveSelectedLine(-1);
    EXPECT_EQ(desk->Stocks().Count(), 2);
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(LoadedBasketEditing, RemovingALineOfAnUnsavedBasketChangesOnlyTheScreen) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    Paste("IBM\t100\r\nMSFT\t50\r\n");
    const Strings before = StoredRows();
    desk->RemoveSelectedLine(0);
    EXPECT_EQ(Column(stkSymbol), Strings{"MSFT"});
    EXPECT_EQ(StoredRows(), before);
    desk->RemoveAllLines();
    EXPECT_EQ(desk->Stocks().Count(), 0);
    EXPECT_EQ(StoredRows(), before);
}

TEST_F(LoadedBasketEditing, RemoveAllDeletesTheStoredBasketsRowsOnly) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    desk->RemoveAllLines();
    EXPECT_EQ(desk->Stocks().Count(), 0);
    EXPECT_EQ(StoredRows(), Strings{"XOM 10 NYSE"});
    EXPECT_EQ(desk->CurrentBasketNum(), 1); // the basket itself stays
    EXPECT_EQ(desk->StatusNotional(), "0.00");
}

TEST_F(LoadedBasketEditing, RemovingTheLoadedBasketStartsANewOne) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    ASSERT_TRUE(desk->RemoveBasket("Tech"));
    EXPECT_EQ(desk->BasketNames(), Strings{"Oil"});
    EXPECT_EQ(StoredRows(), Strings{"XOM 10 NYSE"});
    EXPECT_EQ(desk->db().OpenRecordset("SELECT * FROM tblBaskets").RowCount(), 1u);
    EXPECT_EQ(desk->QuickLoadButtons()[0].basketNum, 0); // Tech had the button
    EXPECT_EQ(desk->Stocks().Count(), 0);
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
    EXPECT_EQ(desk->CurrentBasketName(), "Basket");
}

TEST_F(LoadedBasketEditing, RemovingAnotherBasketKeepsTheLoadedLines) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    ASSERT_TRUE(desk->RemoveBasket("Oil"));
    EXPECT_EQ(desk->BasketNames(), Strings{"Tech"});
    EXPECT_EQ(StoredRows(), (Strings{"IBM 100 NYSE", "MSFT 50 NYSE", "IBM 20 NYSE"}));
    EXPECT_EQ(desk->Stocks().Count(), 3);
    EXPECT_EQ(desk->CurrentBasketName(), "Tech");
    EXPECT_FALSE(desk->RemoveBasket("Nothing"));
    // A name that cannot go into the statement is reported, and nothing is deleted.
    EXPECT_FALSE(desk->RemoveBasket("O'Neil"));
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(StoredRows().size(), 3u);
}

TEST_F(LoadedBasketEditing, SaveAsMakesThePastedLinesAStoredBasket) {
    Paste("AAPL\t10\r\nKO\t20\tnyse\r\n");
    const std::optional<int16_t> num =
        SaveBasketAs(desk->db(), boxes, "Pasted", "P", desk->LinesToSave());
    ASSERT_TRUE(num.has_value());
    desk->BasketSavedAs(*num);
    EXPECT_EQ(desk->CurrentBasketNum(), *num);
    EXPECT_EQ(desk->CurrentBasketName(), "Pasted");
    EXPECT_EQ(desk->BasketNames(), (Strings{"Oil", "Pasted", "Tech"}));
    EXPECT_EQ(StoredRows(*num), (Strings{"AAPL 10 ARCA", "KO 20 NYSE"}));
    // Each line knows its row now: removing one reaches the database.
    desk->RemoveSelectedLine(0);
    EXPECT_EQ(StoredRows(*num), Strings{"KO 20 NYSE"});
    EXPECT_NE(desk->Stocks().RecordNum(0), -1);
}

TEST_F(LoadedBasketEditing, AddingALineToAStoredBasketInsertsItsRow) {
    ASSERT_TRUE(desk->LoadBasketByName("Oil"));
    desk->SetModifier("0.05");
    MainLineEntry entry{"CVX", "", "nyse", "", ""};
    ASSERT_TRUE(desk->AddMainLine(entry));
    EXPECT_EQ(entry.quantity, "0");
    EXPECT_EQ(StoredRows(2), (Strings{"XOM 10 NYSE", "CVX 0 NYSE"})); // index shares null
    EXPECT_EQ(Column(stkSymbol), (Strings{"XOM", "CVX"}));
    EXPECT_EQ(desk->Stocks().Cell(1, stkMod), "0");
    EXPECT_EQ(desk->Stocks().Cell(1, stkTif), "DAY");
    EXPECT_EQ(platform.Symbols(true).back(), "CVX");
    // Its record number reaches the row: removing the line deletes it.
    desk->RemoveSelectedLine(1);
    EXPECT_EQ(StoredRows(2), Strings{"XOM 10 NYSE"});
}

TEST_F(LoadedBasketEditing, AddingToAnUnsavedBasketWritesNothingAndAnEmptySymbolIsRefused) {
    Paste("IBM\t1\r\n");
    const Strings before = StoredRows();
    MainLineEntry entry{"KO", "5", "ARCA", "0", "DAY"};
    ASSERT_TRUE(desk->AddMainLine(entry));
    EXPECT_EQ(Column(stkSymbol), (Strings{"IBM", "KO"}));
    EXPECT_EQ(StoredRows(), before);

    MainLineEntry empty{"", "5", "ARCA", "0", "DAY"};
    EXPECT_FALSE(desk->AddMainLine(empty));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "Please enter symbol.");
    EXPECT_EQ(boxes.shown()[0].title, "Symbol");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(desk->Stocks().Count(), 2);
}

TEST_F(LoadedBasketEditing, EditingALineOfAStoredBasketUpdatesItsRowOnly) {
    ASSERT_TRUE(desk->LoadBasketByName("Tech"));
    const MainLineEntry before = desk->LineEntry(2);
    EXPECT_EQ(before, (MainLineEntry{"IBM", "20", "NYSE", "0", "DAY"}));
    platform.calls.clear();
    MainLineEntry entry{"AAPL", "", "arca", "0.1", "IOC"};
    ASSERT_TRUE(desk->EditMainLine(2, entry));
    // Only the third line's row changed, though the first one is also IBM.
    EXPECT_EQ(StoredRows(1), (Strings{"IBM 100 NYSE", "MSFT 50 NYSE", "AAPL 0 ARCA"}));
    EXPECT_EQ(desk->LineEntry(2), (MainLineEntry{"AAPL", "0", "ARCA", "0.1", "IOC"}));
    EXPECT_EQ(desk->LineEntry(0).tif, "DAY");
    const Strings registered = platform.Symbols(true);
    EXPECT_NE(std::find(registered.begin(), registered.end(), "AAPL"), registered.end());
    EXPECT_TRUE(platform.Symbols(false).empty()); // IBM is still on the first line

    // A symbol the statement cannot carry: reported, nothing changed.
    MainLineEntry bad{"O'NEIL", "5", "NYSE", "0", "DAY"};
    EXPECT_FALSE(desk->EditMainLine(0, bad));
    EXPECT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(desk->LineEntry(0).symbol, "IBM");
    EXPECT_EQ(StoredRows(1)[0], "IBM 100 NYSE");
}

TEST_F(LoadedBasketEditing, EditingALineOfAnUnsavedBasketChangesOnlyTheScreen) {
    Paste("IBM\t1\r\n");
    const Strings before = StoredRows();
    MainLineEntry entry{"IBM", "9", "NYSE", "", "GTC"};
    ASSERT_TRUE(desk->EditMainLine(0, entry));
    EXPECT_EQ(desk->LineEntry(0), (MainLineEntry{"IBM", "9", "NYSE", "0", "GTC"}));
    EXPECT_EQ(desk->Stocks().Cell(0, stkOrderQty), "9");
    EXPECT_EQ(StoredRows(), before);
    EXPECT_FALSE(desk->EditMainLine(3, entry));
}

} // namespace
} // namespace wicker
