#include "BasketTestDb.h"
#include "baskets/SaveBasketAs.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::BasketTestDb;
using test::RecordingMessageBoxes;

class SaveBasketAsTest : public testing::Test {
protected:
    BasketTestDb t;
    RecordingMessageBoxes boxes;
    std::vector<BasketLine> lines{{"IBM", "100", "NYSE"}, {"MSFT", "2.5", "ARCA"}};
};

TEST_F(SaveBasketAsTest, StoresCopyOffTheButtonsAndReturnsItsNumber) {
    t.addBasket("Old", "OLD", 1);
    const auto n = SaveBasketAs(*t.db, boxes, "New", "NEW", lines);
    ASSERT_TRUE(n);
    EXPECT_EQ(t.rows("SELECT intBasketNum, strButtonName, intOnButton, chType FROM tblBaskets "
                     "WHERE strBasketName = 'New'"),
              (std::vector<std::string>{std::to_string(*n) + "|NEW|0|B"}));
    EXPECT_EQ(t.lines(*n),
              (std::vector<std::string>{"IBM|100|NYSE|<null>", "MSFT|2.5|ARCA|<null>"}));
    EXPECT_TRUE(boxes.shown().empty());
}

struct InUseCase {
    const char* name;
    std::string basket;
    std::string button;
    std::string message;
};

class SaveBasketAsRefusalTest : public SaveBasketAsTest,
                                public testing::WithParamInterface<InUseCase> {};

TEST_P(SaveBasketAsRefusalTest, InformationMessageAndNothingStored) {
    t.addBasket("Old", "OLD");
    EXPECT_FALSE(SaveBasketAs(*t.db, boxes, GetParam().basket, GetParam().button, lines));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, GetParam().message);
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Information);
    EXPECT_EQ(t.count("tblBaskets"), 1);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

const char* const kBoth = "You must enter both a basket name and a button name.";
const char* const kInUse = "The basket name or button name you have entered is already in use.";

INSTANTIATE_TEST_SUITE_P(Names, SaveBasketAsRefusalTest,
                         testing::Values(InUseCase{"NoName", "", "NEW", kBoth},
                                         InUseCase{"NoButton", "New", "", kBoth},
                                         InUseCase{"NameInUse", "Old", "NEW", kInUse},
                                         InUseCase{"ButtonInUse", "New", "OLD", kInUse},
                                         InUseCase{"ButtonInUseOtherCase", "New", "old", kInUse}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SaveBasketAsTest, RefusedLineStoresNothing) {
    lines.push_back({"BAD", "", "NYSE"});
    EXPECT_THROW(SaveBasketAs(*t.db, boxes, "New", "NEW", lines), DbError);
    EXPECT_EQ(t.count("tblBaskets"), 0);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

} // namespace
} // namespace wicker
