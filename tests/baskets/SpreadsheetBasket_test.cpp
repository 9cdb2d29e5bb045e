#include "baskets/SpreadsheetBasket.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

const SpreadsheetDefaults kDefaults{"NYSE", "ARCA", {"ARCA", "NASDAQ", "NYSE"}};

// "SYMBOL|qty|DEST|shares" per line, shares "-" when none.
std::vector<std::string> Lines(const SpreadsheetBasket& b) {
    std::vector<std::string> out;
    for (const auto& l : b.lines) {
        out.push_back(l.symbol + "|" + std::to_string(l.quantity) + "|" + l.destination + "|" +
                      (l.indexShares ? std::to_string(*l.indexShares) : "-"));
    }
    return out;
}

std::string Utf16Le(std::string_view ascii) {
    std::string out = "\xFF\xFE";
    for (const char c : ascii) {
        out += c;
        out += '\0';
    }
    return out;
}

struct ReadCase {
    const char* name;
    std::string bytes;
    std::vector<std::string> lines;
};

class SpreadsheetReads : public testing::TestWithParam<ReadCase> {};

TEST_P(SpreadsheetReads, ReadsTheLinesAsTheSpreadsheetWroteThem) {
    const auto basket = ParseSpreadsheetBasket(GetParam().bytes, kDefaults);
    EXPECT_EQ(SpreadsheetProblemsText(basket, 10), "");
    EXPECT_TRUE(basket.storable());
    EXPECT_EQ(Lines(basket), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(
    Files, SpreadsheetReads,
    testing::Values(
        ReadCase{"CsvUtf8WithBomAndCrLf",
                 "\xEF\xBB\xBFSymbol,Quantity,Destination\r\nIBM,100,NYSE\r\nMSFT,200,\r\n",
                 {"IBM|100|NYSE|-", "MSFT|200|ARCA|-"}},
        ReadCase{"HeaderInAnyOrderAndCase",
                 "QTY,route,TICKER,index shares\n100,arca,ibm,5000\n",
                 {"IBM|100|ARCA|5000"}},
        ReadCase{"QuotedCellsWithCommasAndQuotes",
                 "Symbol,Shares,Description\n\"BRK.B\",\"1,500\",\"Berkshire, \"\"B\"\"\"\n",
                 {"BRK.B|1500|ARCA|-"}},
        ReadCase{"QuotedLineBreakInAnIgnoredCell",
                 "Symbol,Notes,Qty\nIBM,\"two\nlines\",100\nKO,x,5\n",
                 {"IBM|100|NYSE|-", "KO|5|NYSE|-"}},
        ReadCase{"Semicolons", "Ticker;Qty;Exchange\r\nIBM;100;NYSE\r\n", {"IBM|100|NYSE|-"}},
        ReadCase{"Tabs", "Symbol\tQty\nIBM\t100.00\n", {"IBM|100|NYSE|-"}},
        ReadCase{
            "Utf16TabsFromUnicodeText", Utf16Le("Symbol\tQty\r\nIBM\t100\r\n"), {"IBM|100|NYSE|-"}},
        ReadCase{"BlankTrailingLinesAndEmptyRows",
                 "Symbol,Qty\nIBM,100\n\n,,\r\n \n",
                 {"IBM|100|NYSE|-"}},
        ReadCase{"NoHeaderIsBasketFileOrder",
                 "IBM,100,NASDAQ,5000\nAAPL,\" 50 \"\n",
                 {"IBM|100|NASDAQ|5000", "AAPL|50|ARCA|-"}},
        ReadCase{"BrokerExportWithSideAndPrice",
                 "Action,Symbol,Order Qty,Price,Route\nBUY,ibm,100,125.5,NYSE\nb,KO,10,60,\n",
                 {"IBM|100|NYSE|-", "KO|10|NYSE|-"}}),
    [](const auto& row) { return std::string(row.param.name); });

struct RefusalCase {
    const char* name;
    std::string bytes;
    std::string problems;
};

class SpreadsheetRefusals : public testing::TestWithParam<RefusalCase> {};

TEST_P(SpreadsheetRefusals, NamesEveryLinesProblem) {
    const auto basket = ParseSpreadsheetBasket(GetParam().bytes, kDefaults);
    EXPECT_FALSE(basket.storable());
    EXPECT_EQ(SpreadsheetProblemsText(basket, 10), GetParam().problems);
}

INSTANTIATE_TEST_SUITE_P(
    Files, SpreadsheetRefusals,
    testing::Values(
        RefusalCase{"BadValues",
                    "Symbol,Qty,Index Shares\r\nIBM,abc,\r\n,100,\r\nKO,-5,\r\nGE,10.5,\r\n"
                    "ABCDEFGHIJK,1,x\r\nF,0,\r\nT,\"1,50\",\r\nBP,99999999999,\r\n",
                    "Line 2: quantity \"abc\" is not a whole number of shares.\n"
                    "Line 3: no symbol.\n"
                    "Line 4: quantity \"-5\" is negative: give the number of shares; the order "
                    "button chooses buy or sell.\n"
                    "Line 5: quantity \"10.5\" is not a whole number of shares.\n"
                    "Line 6: symbol \"ABCDEFGHIJK\" is longer than 10 characters; index shares "
                    "\"x\" is not a whole number of shares.\n"
                    "Line 7: quantity is 0.\n"
                    "Line 8: quantity \"1,50\" is not a whole number of shares.\n"
                    "Line 9: quantity 99999999999 is too large.\n"},
        RefusalCase{"MixedSides", "Symbol,Side,Qty\nIBM,Buy,1\nKO,Sell,2\nGE,Hold,3\n",
                    "Line 3: side Sell differs from Buy on line 2: a basket is sent with one "
                    "side; put Sell lines into a basket of their own.\n"
                    "Line 4: side \"Hold\" is not Buy, Sell, Sell Short or Buy to Cover.\n"},
        RefusalCase{"UnclosedQuote", "Symbol,Qty\nIBM,100\n\"KO,5\n",
                    "Line 3: a quoted cell is not closed before the end of the file.\n"},
        RefusalCase{"NoQuantityColumn", "Symbol,Price\nIBM,10\n",
                    "The header row has no quantity column (for example \"Quantity\").\n"},
        RefusalCase{"QuantityTwice", "Qty,Symbol,Shares\n1,IBM,1\n",
                    "The header row names the quantity twice: \"Qty\" and \"Shares\".\n"},
        RefusalCase{"HeaderOnly", "Symbol,Qty\r\n\r\n",
                    "The file holds a header row but no "
                    "stock lines.\n"},
        RefusalCase{"Empty", "\xEF\xBB\xBF\r\n", "The file holds no lines.\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(SpreadsheetBasketTest, UnknownDestinationWarnsButStores) {
    const auto basket =
        ParseSpreadsheetBasket("Symbol,Qty,Route\nIBM,1,XYZ\nKO,1,\n", {"", "", {"NYSE"}});
    EXPECT_TRUE(basket.fileErrors.empty());
    ASSERT_EQ(basket.lines.size(), 2u);
    EXPECT_EQ(basket.lines[0].warnings,
              std::vector<std::string>{"destination XYZ is not an enabled destination"});
    // With the "<none>" default a line without a destination cannot be sent.
    EXPECT_EQ(basket.lines[1].errors,
              std::vector<std::string>{"no destination, and no default destination is chosen"});
}

} // namespace
} // namespace wicker
