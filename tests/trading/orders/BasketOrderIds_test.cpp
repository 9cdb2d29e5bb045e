#include "common/RuntimeError.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/SendSequence.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(BasketOrderIds, MemoAndClientOrderIdHaveTheirFixedForms) {
    EXPECT_EQ(BasketMemo("Tech10", 57), "Tech10-57-/bskt");
    EXPECT_EQ(BasketMemo("Tech-10", 1), "Tech-10-1-/bskt");
    EXPECT_EQ(BasketClOrderID("ACCT01", "20240315", 57, 3), "ACCT01-20240315-57-3");
    EXPECT_EQ(BasketClOrderID("A", "20251102", -2, 9999), "A-20251102--2-9999");
}

TEST(BasketOrderIds, MemoParsing) {
    struct Row {
        const char* memo;
        bool basket;
        const char* id;
        int16_t seq;
    };
    const Row rows[] = {
        {"A-1-/bskt", true, "A", 1},
        {"Tech-10-57-/bskt", true, "Tech10", 57},
        {"Tech10-57-/bskt", true, "Tech10", 57},
        {"a-b-c-32767-/bskt", true, "abc", 32767},
        {"-5-/bskt", true, "", 5}, // a nameless basket: the tracker drops it as no basket
        {"A-/bskt", false, "", 0},
        {"A-1-bskt", false, "", 0},
        {"A-1-/bskt ", false, "", 0},
        {"A-1-/BSKT", false, "", 0},
        {"", false, "", 0},
        {"plain memo", false, "", 0},
    };
    for (const Row& r : rows) {
        const auto parsed = ParseBasketMemo(r.memo);
        ASSERT_EQ(parsed.has_value(), r.basket) << r.memo;
        if (parsed) {
            EXPECT_EQ(parsed->basketId, r.id) << r.memo;
            EXPECT_EQ(parsed->basketSeq, r.seq) << r.memo;
        }
    }
}

TEST(BasketOrderIds, BasketIdOfANameIsTheIdItsMemoGivesBack) {
    for (const char* name : {"Tech", "Tech-10", "-a--b-", "Oil & Gas", "x"}) {
        const auto parsed = ParseBasketMemo(BasketMemo(name, 12));
        ASSERT_TRUE(parsed) << name;
        EXPECT_EQ(BasketIdOf(name), parsed->basketId) << name;
    }
}

TEST(BasketOrderIds, SendNumberThatIsNoNumberIsAConversionError) {
    try {
        ParseBasketMemo("A-x-/bskt");
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::TypeMismatch);
    }
    try {
        ParseBasketMemo("A-40000-/bskt");
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}

TEST(SendSequence, OrderSeqWrapsAfter9999) {
    SendSequence seq(4, 9998);
    EXPECT_EQ(seq.TakeOrderSeq(), 9998);
    EXPECT_EQ(seq.TakeOrderSeq(), 9999);
    EXPECT_EQ(seq.TakeOrderSeq(), 1);
    EXPECT_EQ(seq.TakeOrderSeq(), 2);
    EXPECT_EQ(seq.BasketSeq(), 4);
}

TEST(SendSequence, StoredOrderSeqAboveTheWrapStartsAgainAtOne) {
    SendSequence seq(1, 32767);
    EXPECT_EQ(seq.TakeOrderSeq(), 32767);
    EXPECT_EQ(seq.OrderSeq(), 1);
}

} // namespace
} // namespace wicker
