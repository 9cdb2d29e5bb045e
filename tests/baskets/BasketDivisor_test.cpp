#include "MemoryIndexStore.h"
#include "baskets/BasketDivisor.h"
#include "common/RuntimeError.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::MemoryIndexStore;

struct DivisorCase {
    const char* name;
    std::string text;
    double expected;
};

class StoreEditedDivisorTest : public testing::TestWithParam<DivisorCase> {};

TEST_P(StoreEditedDivisorTest, NeverZero) {
    MemoryIndexStore index;
    index.setDivisor("A", 9);
    EXPECT_EQ(StoreEditedDivisor(index, "A", GetParam().text, "Eql Dlr Weighted"),
              GetParam().expected);
    EXPECT_EQ(index.divisors, (std::map<std::string, double>{{"A", GetParam().expected}}));
    EXPECT_EQ(index.indexTypes.at("A"), "Eql Dlr Weighted");
}

INSTANTIATE_TEST_SUITE_P(Texts, StoreEditedDivisorTest,
                         testing::Values(DivisorCase{"Zero", "0", 1}, DivisorCase{"Empty", "", 1},
                                         DivisorCase{"Fraction", "2.5", 2.5},
                                         // Only the text "0" itself is replaced.
                                         DivisorCase{"ZeroPointZero", "0.0", 0},
                                         DivisorCase{"Negative", "-3", -3}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StoreEditedDivisorTest, TextThatIsNotANumberChangesNothing) {
    MemoryIndexStore index;
    index.setDivisor("A", 9);
    EXPECT_THROW(StoreEditedDivisor(index, "A", "nine", "Price Weighted"), RuntimeError);
    EXPECT_EQ(index.divisors.at("A"), 9);
    EXPECT_TRUE(index.indexTypes.empty());
}

} // namespace
} // namespace wicker
