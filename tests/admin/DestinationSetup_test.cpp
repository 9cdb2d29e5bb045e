#include "admin/AdminTestDb.h"
#include "admin/DestinationSetup.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class Destinations : public testing::Test {
protected:
    AdminTestDb t;
};

TEST_F(Destinations, LoadGivesEveryDestinationSortedByName) {
    t.db->ExecuteSql("INSERT INTO tblDest(strDest,intEnabled) VALUES('BATS',0)");
    EXPECT_EQ(LoadDestinationSetup(*t.db),
              (Texts{"AMEX", "ARCA", "BATS", "INCA", "INET", "NASDAQ", "NY/AM", "NYSE", "NYSE+"}));
}

TEST_F(Destinations, SaveRewritesInListOrderAllEnabled) {
    t.db->ExecuteSql("UPDATE tblDest SET intEnabled = 0 WHERE strDest = 'ARCA'");
    SaveDestinationSetup(*t.db, {"NYSE", "ARCA", "EDGX"});
    EXPECT_EQ(t.destinations(), (Texts{"NYSE|1", "ARCA|1", "EDGX|1"}));
}

TEST_F(Destinations, ComeBackSortedWhateverOrderTheyWereSavedIn) {
    SaveDestinationSetup(*t.db, {"ZZ", "MM", "AA", "mb"});
    EXPECT_EQ(LoadDestinationSetup(*t.db), (Texts{"AA", "mb", "MM", "ZZ"}));
}

TEST_F(Destinations, SavingNoneEmptiesTheTable) {
    SaveDestinationSetup(*t.db, {});
    EXPECT_TRUE(t.destinations().empty());
}

TEST_F(Destinations, FailedSaveKeepsTheOldTable) {
    const Texts before = t.destinations();
    EXPECT_THROW(SaveDestinationSetup(*t.db, {"EDGX", "B'AD"}), DbError);
    // A name longer than the column allows is refused too.
    EXPECT_THROW(SaveDestinationSetup(*t.db, {"EDGX", std::string(51, 'X')}), DbError);
    EXPECT_EQ(t.destinations(), before);
}

} // namespace
} // namespace wicker
