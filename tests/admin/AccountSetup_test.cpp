#include "admin/AccountSetup.h"
#include "admin/AdminTestDb.h"
#include "admin/NameList.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

struct NameCase {
    const char* name;
    const char* typed;
    std::vector<std::string> present;
    std::optional<std::string> added;
};

class NameToAddRows : public testing::TestWithParam<NameCase> {};

TEST_P(NameToAddRows, Gives) {
    EXPECT_EQ(NameToAdd(GetParam().typed, GetParam().present), GetParam().added);
}

INSTANTIATE_TEST_SUITE_P(
    Names, NameToAddRows,
    testing::Values(NameCase{"LowerCaseTurnsUpper", "acct1", {}, "ACCT1"},
                    NameCase{"MixedCase", "Ny/Am", {"AMEX"}, "NY/AM"},
                    NameCase{"EmptyAddsNothing", "", {}, std::nullopt},
                    NameCase{"BlankIsAName", " ", {}, " "},
                    NameCase{"AlreadyListedAddsNothing", "acct1", {"ACCT1"}, std::nullopt},
                    NameCase{"OtherCaseInListIsAnotherName", "acct1", {"acct1"}, "ACCT1"}),
    [](const auto& row) { return std::string(row.param.name); });

class Accounts : public testing::Test {
protected:
    AdminTestDb t;
};

TEST_F(Accounts, LoadGivesNameOrderAndTheDefault) {
    t.addAccount("ZED", 0);
    t.addAccount("ALPHA", 1);
    t.addAccount("MIKE", 0);
    const AccountSetup setup = LoadAccountSetup(*t.db);
    EXPECT_EQ(setup.accounts, (Texts{"ALPHA", "MIKE", "ZED"}));
    EXPECT_EQ(setup.defaultAccount, "ALPHA");
}

TEST_F(Accounts, LoadOfAnEmptyDefaultColumnChoosesNone) {
    t.db->ExecuteSql("INSERT INTO tblAccount(strAcct) VALUES('LEGACY')");
    const AccountSetup setup = LoadAccountSetup(*t.db);
    EXPECT_EQ(setup.accounts, (Texts{"LEGACY"}));
    EXPECT_EQ(setup.defaultAccount, "");
}

TEST_F(Accounts, SaveRewritesTheTableInListOrderWithOneDefault) {
    t.addAccount("OLD", 1);
    SaveAccountSetup(*t.db, {"B2", "A1", "C3"}, "A1");
    EXPECT_EQ(t.accounts(), (Texts{"B2|0", "A1|1", "C3|0"}));
}

TEST_F(Accounts, SaveWithNoDefaultLeavesEveryAccountAtZero) {
    t.addAccount("A1", 1);
    SaveAccountSetup(*t.db, {"A1", "B2"}, "");
    EXPECT_EQ(t.accounts(), (Texts{"A1|0", "B2|0"}));
}

TEST_F(Accounts, DefaultThatIsNoLongerListedMakesNoDefault) {
    t.addAccount("A1", 1);
    SaveAccountSetup(*t.db, {"B2"}, "A1");
    EXPECT_EQ(t.accounts(), (Texts{"B2|0"}));
}

TEST_F(Accounts, SavingAnEmptyListEmptiesTheTable) {
    t.addAccount("A1", 1);
    t.addAccount("B2", 0);
    SaveAccountSetup(*t.db, {}, "A1");
    EXPECT_TRUE(t.accounts().empty());
}

TEST_F(Accounts, ApostropheFailsTheSaveAndKeepsTheOldTable) {
    t.addAccount("A1", 1);
    t.addAccount("B2", 0);
    EXPECT_THROW(SaveAccountSetup(*t.db, {"C3", "O'NEIL", "D4"}, "C3"), DbError);
    EXPECT_EQ(t.accounts(), (Texts{"A1|1", "B2|0"}));
}

TEST_F(Accounts, SqlInADefaultNameIsNeverRun) {
    t.addAccount("A1", 1);
    EXPECT_THROW(SaveAccountSetup(*t.db, {"A1"}, "x' OR '1'='1"), DbError);
    EXPECT_EQ(t.accounts(), (Texts{"A1|1"}));
}

TEST_F(Accounts, SaveOnAMissingTableFailsAsAnError) {
    t.db->ExecuteSql("DROP TABLE tblAccount");
    EXPECT_THROW(SaveAccountSetup(*t.db, {"A1"}, ""), DbError);
    EXPECT_THROW(LoadAccountSetup(*t.db), DbError);
}

} // namespace
} // namespace wicker
