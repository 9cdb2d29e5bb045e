#include "BasketTestDb.h"
#include "baskets/SpreadsheetImport.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

const SpreadsheetDefaults kDefaults{"NYSE", "ARCA", {"ARCA", "NYSE"}};

struct SpreadsheetImportTest : testing::Test {
    test::BasketTestDb t;

    std::vector<std::string> baskets() {
        return t.rows("SELECT strBasketName, strButtonName, intOnButton FROM tblBaskets");
    }
    std::vector<std::string> details() {
        return t.rows("SELECT strSym, intQty, strDest, nIndexShares FROM tblBasketDetails "
                      "ORDER BY intRecordNum");
    }
};

TEST_F(SpreadsheetImportTest, StoresEveryLineWithIndexShares) {
    const auto basket = ParseSpreadsheetBasket(
        "Symbol,Qty,Index Shares\nIBM,100,5000\nMSFT,\"1,200\",\n", kDefaults);
    const auto result = StoreSpreadsheetBasket(*t.db, basket, "Tech", "T");
    EXPECT_EQ(result.refusal, "");
    EXPECT_GT(result.basketNum, 0);
    EXPECT_EQ(result.indexShares, (std::map<std::string, int32_t>{{"IBM", 5000}}));
    EXPECT_EQ(baskets(), std::vector<std::string>{"Tech|T|0"});
    EXPECT_EQ(details(), (std::vector<std::string>{"IBM|100|NYSE|5000", "MSFT|1200|ARCA|<null>"}));
}

TEST_F(SpreadsheetImportTest, RefusalsStoreNothing) {
    const auto good = ParseSpreadsheetBasket("Symbol,Qty\nIBM,100\n", kDefaults);
    const auto bad = ParseSpreadsheetBasket("Symbol,Qty\nIBM,100\nKO,many\n", kDefaults);
    struct Row {
        const char* name;
        const SpreadsheetBasket& basket;
        std::string basketName, buttonName;
        ImportFocus focus;
    };
    const std::vector<Row> rows = {
        {"NoName", good, "", "T", ImportFocus::BasketName},
        {"NoButton", good, "Tech", "", ImportFocus::ButtonName},
        {"BadLine", bad, "Tech", "T", ImportFocus::FileName},
    };
    for (const auto& row : rows) {
        const auto result =
            StoreSpreadsheetBasket(*t.db, row.basket, row.basketName, row.buttonName);
        EXPECT_NE(result.refusal, "") << row.name;
        EXPECT_EQ(result.focus, row.focus) << row.name;
        EXPECT_EQ(result.basketNum, 0) << row.name;
    }
    EXPECT_TRUE(baskets().empty());
    EXPECT_TRUE(details().empty());
    // Nothing left behind blocks the corrected file under the same name; a second one is refused.
    EXPECT_GT(StoreSpreadsheetBasket(*t.db, good, "Tech", "T").basketNum, 0);
    EXPECT_EQ(StoreSpreadsheetBasket(*t.db, good, "Tech", "T2").focus, ImportFocus::BasketName);
    EXPECT_EQ(details().size(), 1u);
}

TEST_F(SpreadsheetImportTest, DatabaseFailureHalfwayLeavesNoBasket) {
    // A line the database refuses after the basket row is written rolls the basket back.
    t.db->ExecuteSql("DROP TABLE tblBasketDetails");
    const auto result = StoreSpreadsheetBasket(
        *t.db, ParseSpreadsheetBasket("Symbol,Qty\nIBM,100\n", kDefaults), "Tech", "T");
    EXPECT_NE(result.refusal.find("Nothing was imported."), std::string::npos);
    EXPECT_TRUE(baskets().empty());
}

TEST_F(SpreadsheetImportTest, TenThousandLinesFromAFile) {
    test::TempDir dir;
    std::string text = "\xEF\xBB\xBF\"Symbol\",\"Quantity\",\"Route\"\r\n";
    for (int i = 0; i < 10000; ++i) {
        text += "S" + std::to_string(i) + "," + std::to_string(i + 1) + ",NYSE\r\n";
    }
    test::WriteFile(dir / "big.csv", text + "\r\n\r\n");
    const auto basket = LoadSpreadsheetBasket(dir / "big.csv", kDefaults);
    ASSERT_TRUE(basket.storable()) << SpreadsheetProblemsText(basket, 5);
    EXPECT_GT(StoreSpreadsheetBasket(*t.db, basket, "Big", "B").basketNum, 0);
    EXPECT_EQ(t.rows("SELECT COUNT(*), SUM(intQty) FROM tblBasketDetails"),
              std::vector<std::string>{"10000|50005000"});
}

TEST_F(SpreadsheetImportTest, MissingFileIsAFileError) {
    const auto basket = LoadSpreadsheetBasket(t.dir / "none.csv", kDefaults);
    ASSERT_EQ(basket.fileErrors.size(), 1u);
    EXPECT_NE(basket.fileErrors[0].find("was not found"), std::string::npos);
}

} // namespace
} // namespace wicker
