#include "BasketTestDb.h"
#include "MemoryIndexStore.h"
#include "baskets/NewBasket.h"
#include "common/RuntimeError.h"
#include "support/RecordingMessageBoxes.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::BasketTestDb;
using test::MemoryIndexStore;
using test::RecordingMessageBoxes;

struct LineCase {
    const char* name;
    std::string quantity;
    std::string destination;
    NewBasketField expected;
    std::string message;
    std::string title;
    MsgButtons buttons;
};

class CheckNewBasketLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(CheckNewBasketLineTest, NumericQuantityAndSomeDestination) {
    RecordingMessageBoxes boxes;
    const auto& c = GetParam();
    EXPECT_EQ(CheckNewBasketLine(boxes, c.quantity, c.destination), c.expected);
    if (c.message.empty()) {
        EXPECT_TRUE(boxes.shown().empty());
    } else {
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0].text, c.message);
        EXPECT_EQ(boxes.shown()[0].title, c.title);
        EXPECT_EQ(boxes.shown()[0].buttons, c.buttons);
    }
}

const char* const kBadQty = "Please enter a valid quantity.";
const char* const kNoDest = "Destination cannot be blank. Please enter a destination.";

INSTANTIATE_TEST_SUITE_P(
    Lines, CheckNewBasketLineTest,
    testing::Values(
        LineCase{"Letters", "abc", "NYSE", NewBasketField::Quantity, kBadQty, "Invalid Quantity.",
                 MsgButtons::OkCancel},
        LineCase{"Empty", "", "NYSE", NewBasketField::Quantity, kBadQty, "Invalid Quantity.",
                 MsgButtons::OkCancel},
        LineCase{"Exponent", "1e3", "NYSE", NewBasketField::None, "", "", MsgButtons::Ok},
        LineCase{"Fraction", "2.5", "NYSE", NewBasketField::None, "", "", MsgButtons::Ok},
        LineCase{"QuantityCheckedFirst", "x", "", NewBasketField::Quantity, kBadQty,
                 "Invalid Quantity.", MsgButtons::OkCancel},
        LineCase{"NoDestination", "10", "", NewBasketField::Destination, kNoDest,
                 "Invalid Destination.", MsgButtons::Ok}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(NewBasketTest, LineKeepsSymbolAndQuantityAndUppercasesDestination) {
    const BasketLine l = MakeNewBasketLine("ibm", "1e3", "nyse");
    EXPECT_EQ(l.symbol, "ibm");
    EXPECT_EQ(l.quantity, "1e3");
    EXPECT_EQ(l.destination, "NYSE");
}

TEST(NewBasketTest, IndexTypesInComboOrder) {
    EXPECT_EQ(IndexTypes(),
              (std::vector<std::string>{"Price Weighted", "Mkt Cap Weighted", "Eql Dlr Weighted"}));
}

class SaveNewBasketTest : public testing::Test {
protected:
    bool save(const NewBasket& b) { return SaveNewBasket(*t.db, boxes, index, b, focus); }

    BasketTestDb t;
    RecordingMessageBoxes boxes;
    MemoryIndexStore index;
    NewBasketField focus = NewBasketField::None;
};

TEST_F(SaveNewBasketTest, StoresBasketLinesAndCollections) {
    ASSERT_TRUE(save({"Tech",
                      "TK",
                      "2.5",
                      "Mkt Cap Weighted",
                      {{"IBM", "1e3", "NYSE"}, {"MSFT", "20", "ARCA"}}}));
    EXPECT_EQ(t.rows("SELECT strBasketName, strButtonName, intOnButton, chType FROM tblBaskets"),
              (std::vector<std::string>{"Tech|TK|<null>|B"}));
    const int32_t n =
        t.db->OpenRecordset("SELECT intBasketNum FROM tblBaskets").Field("intBasketNum").toLong();
    EXPECT_EQ(t.lines(n),
              (std::vector<std::string>{"IBM|1000|NYSE|<null>", "MSFT|20|ARCA|<null>"}));
    EXPECT_EQ(index.divisors, (std::map<std::string, double>{{"Tech", 2.5}}));
    EXPECT_EQ(index.indexTypes, (std::map<std::string, std::string>{{"Tech", "Mkt Cap Weighted"}}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(SaveNewBasketTest, NoLinesStoresNoDetailRows) {
    ASSERT_TRUE(save({"Empty", "E", "1", "Price Weighted", {}}));
    EXPECT_EQ(t.count("tblBaskets"), 1);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

TEST_F(SaveNewBasketTest, ReplacesEarlierCollectionMembers) {
    index.setDivisor("Tech", 7);
    index.setIndexType("Tech", "Eql Dlr Weighted");
    ASSERT_TRUE(save({"Tech", "TK", "3", "Price Weighted", {}}));
    EXPECT_EQ(index.divisors.at("Tech"), 3);
    EXPECT_EQ(index.indexTypes.at("Tech"), "Price Weighted");
}

struct RefuseCase {
    const char* name;
    NewBasket basket;
    std::string message;
    std::string title;
    NewBasketField focus;
};

class SaveNewBasketRefusalTest : public SaveNewBasketTest,
                                 public testing::WithParamInterface<RefuseCase> {};

TEST_P(SaveNewBasketRefusalTest, ShowsMessageAndStoresNothing) {
    t.addBasket("Tech");
    EXPECT_FALSE(save(GetParam().basket));
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, GetParam().message);
    EXPECT_EQ(boxes.shown()[0].title, GetParam().title);
    EXPECT_EQ(focus, GetParam().focus);
    EXPECT_EQ(t.count("tblBaskets"), 1);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
    EXPECT_TRUE(index.divisors.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Refusals, SaveNewBasketRefusalTest,
    testing::Values(
        RefuseCase{"NoName",
                   {"", "B", "1", "Price Weighted", {{"A", "1", "NYSE"}}},
                   "Please type a basket name.",
                   "Missing Basket Name",
                   NewBasketField::BasketName},
        RefuseCase{"NoButton",
                   {"N", "", "1", "Price Weighted", {}},
                   "Please type a button name.",
                   "Missing Button Name",
                   NewBasketField::ButtonName},
        RefuseCase{"ExistingName",
                   {"Tech", "X", "1", "Price Weighted", {{"A", "1", "NYSE"}}},
                   "There is an existing basket with this name.\nPlease choose a different "
                   "basket name.",
                   "Error loading basket.",
                   NewBasketField::BasketName},
        RefuseCase{"ExistingNameOtherCase",
                   {"TECH", "X", "1", "Price Weighted", {}},
                   "There is an existing basket with this name.\nPlease choose a different "
                   "basket name.",
                   "Error loading basket.",
                   NewBasketField::BasketName}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SaveNewBasketTest, DivisorThatIsNotANumberStoresNothing) {
    try {
        save({"N", "B", "abc", "Price Weighted", {{"A", "1", "NYSE"}}});
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 13);
    }
    EXPECT_EQ(t.count("tblBaskets"), 0);
    EXPECT_TRUE(index.divisors.empty());
}

TEST_F(SaveNewBasketTest, RefusedLineStoresNothing) {
    EXPECT_THROW(
        save({"N", "B", "1", "Price Weighted", {{"A", "1", "NYSE"}, {"B", "1,000", "NYSE"}}}),
        DbError);
    EXPECT_EQ(t.count("tblBaskets"), 0);
    EXPECT_EQ(t.count("tblBasketDetails"), 0);
}

} // namespace
} // namespace wicker
