#include "platform/QVXOrderMaintenance.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/RecordingOrders.h"
#include "trading/orders/SubmitErrors.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct ErrorRow {
    int32_t code;
    const char* shortText;
    const char* longText;
};

// The platform's table, typed out again on its own so that a slip in either copy shows.
const ErrorRow Table[] = {
    {-25, "Trader not enabled for odd-lot transactions.",
     "Order cannot be sent. Trader not enabled to: 1) Allow odd-lot\r\nopen transactions, Or 2) "
     "Allow odd-lot cover transactions."},
    {-24, "Futures minimum balance violation.",
     "Futures order cannot be sent. Futures minimum balance violation."},
    {-23, "Trader not enabled for futures.",
     "Futures order cannot be sent. Trader not enabled for futures."},
    {-22, "Account not enabled for this product.",
     "Futures order cannot be sent. Account not enabled for this product."},
    {-21, "P/L violation.", "Futures order cannot be sent. P/L violation."},
    {-20, "Margin violation.", "Futures order cannot be sent. Margin violation."},
    {-19, "Position size violation.", "Futures order cannot be sent. Position size violation."},
    {-18, "Order size violation.", "Futures order cannot be sent. Order size violation."},
    {-17, "Security not marked as located.",
     "Order cannot be sent. Security not marked as located."},
    {-16, "Quorvex is offline.", "Order cannot be sent. Quorvex is offline."},
    {-15, "ActiveX API not enabled.", "Order cannot be sent. ActiveX API not enabled."},
    {-14, "Long sale position rule violation.",
     "Order cannot be sent. Long sale position rule violation."},
    {-13, "Short sale position rule violation.",
     "Order cannot be sent. Short sale position rule violation."},
    {-12, "Long sale position rule violation.",
     "Order cannot be sent. Long sale position rule violation."},
    {-11, "SelectNet short sales are disabled.",
     "Order cannot be sent. SelectNet short sales are disabled."},
    {-10, "NYSE+ 30 Second Rule Violation.",
     "Order cannot be sent. NYSE+ 30 Second Rule Violation."},
    {-9, "NYSE+ Rules Violation.", "Order cannot be sent. NYSE+ Rules Violation."},
    {-8, "This order would violate your exposure limit.",
     "Order cannot be sent. This order would violate your exposure limit."},
    {-7, "Destination is not valid.", "Order cannot be sent. Destination is not valid."},
    {-6, "TIF is not valid.", "Order cannot be sent. TIF is not valid."},
    {-5, "Price Type is not valid.", "Order cannot be sent. Price Type is not valid."},
    {-4, "Symbol is not valid.", "Order cannot be sent. Symbol is not valid."},
    {-3, "Quantity is not valid.", "Order cannot be sent. Quantity is not valid."},
    {-2, "Side is not valid.", "Order cannot be sent. Side is not valid."},
    {-1, "Account is not valid.", "Basket cannot be sent. Account is not valid."},
};

class SubmitErrorTable : public ::testing::TestWithParam<ErrorRow> {};

TEST_P(SubmitErrorTable, ShortTextIsThePlatformsText) {
    EXPECT_EQ(GetSubmitErrorStr(GetParam().code), GetParam().shortText);
}

TEST_P(SubmitErrorTable, LongPromptCarriesTheOrderBelowTheTextExceptForCodeMinusOne) {
    const ErrorRow& row = GetParam();
    const std::string expected =
        row.code == -1 ? std::string(row.longText) : std::string(row.longText) + "\r\nBUY 300 IBM";
    EXPECT_EQ(SubmitErrorPrompt(row.code, "BUY", 300, "IBM"), expected);
}

INSTANTIATE_TEST_SUITE_P(AllCodes, SubmitErrorTable, ::testing::ValuesIn(Table),
                         [](const auto& p) { return "Code" + std::to_string(-p.param.code); });

TEST(SubmitErrors, UnknownCodesUseTheirTwoDifferentWordings) {
    struct Row {
        int32_t code;
        const char* shortText;
        const char* prompt;
    };
    const Row rows[] = {
        {0, "Unknown SubmitOrder Error. SubmitOrder Error Code = 0",
         "Unknown reject. SubmitOrder Reject Code = 0"},
        {-26, "Unknown SubmitOrder Error. SubmitOrder Error Code = -26",
         "Unknown reject. SubmitOrder Reject Code = -26"},
        {7, "Unknown SubmitOrder Error. SubmitOrder Error Code = 7",
         "Unknown reject. SubmitOrder Reject Code = 7"},
        {-32768, "Unknown SubmitOrder Error. SubmitOrder Error Code = -32768",
         "Unknown reject. SubmitOrder Reject Code = -32768"},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(GetSubmitErrorStr(r.code), r.shortText);
        EXPECT_EQ(SubmitErrorPrompt(r.code, "B", 100, "IBM"), r.prompt);
    }
}

TEST(SubmitErrors, ShowSubmitErrorShowsOneOkBoxWithItsTitle) {
    test::RecordingMessageBoxes boxes;
    ShowSubmitError(boxes, -4, "S", 200, "ZZZZ");
    ASSERT_EQ(boxes.shown().size(), 1u);
    const MessageRequest& m = boxes.shown()[0];
    EXPECT_EQ(m.text, "Order cannot be sent. Symbol is not valid.\r\nS 200 ZZZZ");
    EXPECT_EQ(m.title, "Error submitting order");
    EXPECT_EQ(m.buttons, MsgButtons::Ok);
    EXPECT_EQ(m.icon, MsgIcon::None);
}

TEST(SubmitErrors, ShowSubmitErrorReadsTheRefusedOrderObject) {
    test::RecordingOrders orders;
    auto order = orders.CreateOrder();
    order->setSide("T");
    order->setQuantity(75);
    order->setSymbol("QQQ");
    test::RecordingMessageBoxes boxes;
    ShowSubmitError(boxes, -13, *order);
    ShowSubmitError(boxes, -1, *order);
    EXPECT_EQ(boxes.texts(),
              (std::vector<std::string>{
                  "Order cannot be sent. Short sale position rule violation.\r\nT 75 QQQ",
                  "Basket cannot be sent. Account is not valid."}));
}

TEST(ReplaceErrors, NotOpenHasItsOwnTextWhileSubmitKeepsItUnknown) {
    struct Row {
        const char* name;
        int32_t code;
        const char* shortText;
        const char* prompt;
    };
    const Row rows[] = {
        {"not open", kReplaceOrderNotOpen, "Order is not open.",
         "Order cannot be changed. Order is not open.\r\nB 100 IBM"},
        {"quantity", -3, "Quantity is not valid.",
         "Order cannot be sent. Quantity is not valid.\r\nB 100 IBM"},
        {"offline", -16, "Quorvex is offline.",
         "Order cannot be sent. Quorvex is offline.\r\nB 100 IBM"},
        {"unknown", -27, "Unknown SubmitOrder Error. SubmitOrder Error Code = -27",
         "Unknown reject. SubmitOrder Reject Code = -27"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(GetReplaceErrorStr(r.code), r.shortText);
        test::RecordingMessageBoxes boxes;
        ShowReplaceError(boxes, r.code, "B", 100, "IBM");
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0].text, r.prompt);
        EXPECT_EQ(boxes.shown()[0].title, "Error submitting order");
        EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
        EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::None);
    }
    EXPECT_EQ(GetSubmitErrorStr(kReplaceOrderNotOpen),
              "Unknown SubmitOrder Error. SubmitOrder Error Code = -26");
}

} // namespace
} // namespace wicker
