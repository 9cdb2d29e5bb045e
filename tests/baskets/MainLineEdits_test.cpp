#include "baskets/MainLineEdits.h"
#include "storage/Database.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct StepCase {
    const char* name;
    std::string text;
    bool up;
    std::string expected;
};

class StepModifierTest : public testing::TestWithParam<StepCase> {};

TEST_P(StepModifierTest, HundredthsWithoutResidue) {
    EXPECT_EQ(StepModifier(GetParam().text, GetParam().up), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Steps, StepModifierTest,
                         testing::Values(StepCase{"UpFromZero", "0", true, "0.01"},
                                         StepCase{"DownFromZero", "0", false, "-0.01"},
                                         StepCase{"DownToZero", "0.01", false, "0"},
                                         StepCase{"UpToZero", "-0.01", true, "0"},
                                         StepCase{"NearZeroSnaps", "-0.005", true, "0"},
                                         StepCase{"UpFromFraction", "0.1", true, "0.11"},
                                         StepCase{"DownFromOne", "1", false, "0.99"},
                                         StepCase{"NotANumberResets", "abc", true, "0"},
                                         StepCase{"EmptyResets", "", false, "0"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StepModifierTest, ManyStepsComeBackToExactlyZero) {
    std::string text = "0";
    for (int i = 0; i < 37; ++i) {
        text = StepModifier(text, true);
    }
    EXPECT_EQ(text, "0.37");
    for (int i = 0; i < 37; ++i) {
        text = StepModifier(text, false);
    }
    EXPECT_EQ(text, "0");
}

TEST(EditItemTifsTest, InDialogOrder) {
    EXPECT_EQ(EditItemTifs(), (std::vector<std::string>{"AEX", "CHXP", "DAY", "GTC", "GTX", "FOK",
                                                        "IOC", "OPG", "OS", "NOW", "ETX"}));
}

TEST(MainLineSqlTest, AddLeavesIndexSharesOut) {
    EXPECT_EQ(AddMainLineSql(4, "IBM", "100", "NYSE"),
              "INSERT INTO tblBasketDetails(intBasketNum,strSym,intQty,strDest) "
              "VALUES(4,'IBM',100,'NYSE')");
    EXPECT_THROW(AddMainLineSql(4, "IBM", "lots", "NYSE"), DbError);
}

TEST(MainLineSqlTest, EditNamesRecordAndOldValues) {
    MainLineEdit e{4, 17, "IBM", "100", "NYSE", "MSFT", "50", "ARCA", std::nullopt};
    EXPECT_EQ(EditItemSql(e), "UPDATE tblBasketDetails SET strSym = 'MSFT', intQty = 50, "
                              "strDest = 'ARCA' WHERE intBasketNum = 4 AND intRecordNum = 17 AND "
                              "strSym = 'IBM' AND intQty = 100 AND strDest = 'NYSE'");
    e.indexShares = "300";
    EXPECT_EQ(EditItemSql(e), "UPDATE tblBasketDetails SET strSym = 'MSFT', intQty = 50, "
                              "strDest = 'ARCA', nIndexShares = 300 WHERE intBasketNum = 4 AND "
                              "intRecordNum = 17 AND strSym = 'IBM' AND intQty = 100 AND "
                              "strDest = 'NYSE'");
}

} // namespace
} // namespace wicker
