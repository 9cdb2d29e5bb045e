#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/ModifyClOrderIds.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(ModifyClOrderIds, BaseAndNumberOfAnId) {
    struct Row {
        const char* name;
        const char* id;
        const char* base;
        int32_t number;
    };
    const Row rows[] = {
        {"basket id", "DEMO01-20240315-57-3", "DEMO01-20240315-57-3", 0},
        {"first change", "DEMO01-20240315-57-3-M1", "DEMO01-20240315-57-3", 1},
        {"twelfth change", "DEMO01-20240315-57-3-M12", "DEMO01-20240315-57-3", 12},
        {"platform's replace", "DEMO01-20240315-57-3-R1", "DEMO01-20240315-57-3-R1", 0},
        {"M without digits", "DEMO01-20240315-57-3-M", "DEMO01-20240315-57-3-M", 0},
        {"M without dash", "ACCTM1", "ACCTM1", 0},
        {"only the suffix", "-M4", "", 4},
        {"digits beyond 32 bits", "X-M99999999999", "X", 2147483647},
        {"empty", "", "", 0},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(ModifyBaseId(r.id), r.base);
        EXPECT_EQ(ModifyNumber(r.id), r.number);
    }
}

TEST(ModifyIdIssuer, CountsUpPerOrderAndNeverRepeats) {
    ModifyIdIssuer ids;
    const std::string basket = BasketClOrderID("DEMO01", "20240315", 57, 3);
    EXPECT_EQ(ids.Next({basket}), basket + "-M1");
    // The broker refused M1 and the order still carries its basket id: M1 is not reused.
    EXPECT_EQ(ids.Next({basket, basket}), basket + "-M2");
    // Another order has numbers of its own.
    EXPECT_EQ(ids.Next({BasketClOrderID("DEMO01", "20240315", 57, 4)}), "DEMO01-20240315-57-4-M1");
    // The order came back (a restart) carrying a higher number than this run knows.
    EXPECT_EQ(ids.Next({basket + "-M7"}), basket + "-M8");
}

TEST(ModifyIdIssuer, JournalledIdsAreNeverHandedOutAgain) {
    ModifyIdIssuer ids;
    ids.Used("DEMO01-20240315-57-3-M4");
    ids.Used("DEMO01-20240315-57-9-M9"); // another order: no effect on this one
    EXPECT_EQ(ids.Next({"DEMO01-20240315-57-3"}), "DEMO01-20240315-57-3-M5");
}

TEST(ModifyIdIssuer, ChangeIdsAreNeverBasketIdsNorMemos) {
    ModifyIdIssuer ids;
    // Accounts may hold dashes and digits: the id still ends in "-M<n>", which a basket id,
    // ending in its order number, never does.
    for (const char* account : {"DEMO01", "A-1", "7"}) {
        const std::string id = ids.Next({BasketClOrderID(account, "20240315", 1, 1)});
        EXPECT_EQ(id.substr(id.size() - 3), "-M1") << id;
        EXPECT_FALSE(ParseBasketMemo(id).has_value()) << id;
    }
}

TEST(ModifyIdIssuer, GivesNothingWhenNoNumberIsLeft) {
    ModifyIdIssuer ids;
    EXPECT_EQ(ids.Next({"X-M99999999999"}), "");
    EXPECT_EQ(ids.Next({}), "");
}

} // namespace
} // namespace wicker
