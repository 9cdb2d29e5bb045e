#include "common/RuntimeError.h"
#include "support/RecordingMessageBoxes.h"
#include "trading/RecordingOrders.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/ExecutionButtons.h"
#include "trading/orders/SendListener.h"

#include <array>
#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using test::MemorySequenceStore;
using test::RecordedOrder;
using test::RecordingMessageBoxes;
using test::RecordingOrders;

ExecutionLine QuotedLine(std::string symbol, std::string qty = "300", std::string dest = "NASDAQ") {
    ExecutionLine line;
    line.checked = true;
    line.symbol = std::move(symbol);
    line.bid = "10.00";
    line.ask = "10.10";
    line.last = "10.05";
    line.quantity = std::move(qty);
    line.destination = std::move(dest);
    line.modifier = "0.01";
    line.tif = "GTC";
    line.price = "9.50";
    return line;
}

ExecutionLine UnquotedLine(std::string symbol) {
    ExecutionLine line = QuotedLine(std::move(symbol));
    line.bid = line.ask = line.last = "";
    line.tif = "";
    return line;
}

class Execution : public ::testing::Test {
protected:
    Execution() : clock(FromLocal(LocalDateTime{2024, 3, 15, 9, 30, 0, 0})) {
        inputs.account = "acct01";
        inputs.multiplier = "1";
        inputs.basketName = "Tech10";
    }

    ExecuteReport Click(int index, const std::vector<ExecutionLine>& lines,
                        SendListener* listener = nullptr) {
        BasketExecution execution(orders, sequence, store, boxes, clock);
        execution.setListener(listener);
        return execution.cmdExecuteBasket_Click(index, SendLines::Of(lines), inputs, settings);
    }

    RecordingOrders orders;
    SendSequence sequence{57, 1};
    MemorySequenceStore store;
    RecordingMessageBoxes boxes;
    ManualClock clock;
    ExecutionInputs inputs;
    ExecutionSettings settings;
};

struct ButtonCase {
    const char* name;
    int index;
    const char* caption; ///< "" = no button
    bool quoteFree;      ///< may go without quotes
    const char* side;    ///< "" = not set
    const char* type;    ///< "" = not set
    const char* limit;   ///< "" = not set
    const char* tif;     ///< "" = not set
};

// Every button's rule, and one quoted line (bid 10.00, ask 10.10, last 10.05, own price
// 9.50, modifier 0.01, GTC) sent through it.
const ButtonCase ButtonCases[] = {
    {"BuyBid", 0, "BUY BID", false, "BUY", "5", "10.01", "G"},
    {"BuyAsk", 1, "BUY ASK", false, "BUY", "5", "10.11", "G"},
    {"BuyLast", 2, "BUY LAST", false, "BUY", "5", "10.06", "G"},
    {"BuyMkt", 3, "BUY MKT", true, "B", "1", "", "G"},
    {"SellBid", 4, "SELL BID", false, "S", "5", "10.01", "G"},
    {"SellAsk", 5, "SELL ASK", false, "S", "5", "10.11", "G"},
    {"SellLast", 6, "SELL LAST", false, "S", "5", "10.06", "G"},
    {"SellMkt", 7, "SELL MKT", true, "S", "1", "", "G"},
    {"ShrtBid", 8, "SHRT BID", false, "T", "5", "10.01", "G"},
    {"ShrtAsk", 9, "SHRT ASK", false, "T", "5", "10.11", "G"},
    {"ShrtLast", 10, "SHRT LAST", false, "T", "5", "10.06", "G"},
    {"ShrtMkt", 11, "SHRT MKT", true, "T", "1", "", "G"},
    {"BuyMoc", 12, "BUY MOC", true, "B", "2", "", "G"},
    {"SellMoc", 13, "SELL MOC", true, "S", "2", "", "G"},
    {"ShrtMoc", 14, "SHRT MOC", true, "T", "2", "", "G"},
    {"ShrtMoo", 15, "SHRT MOO", true, "T", "1", "", "O"},
    {"SellMoo", 16, "SELL MOO", true, "S", "1", "", "O"},
    {"BuyMoo", 17, "BUY MOO", true, "B", "1", "", "O"},
    {"BuyPrice", 18, "BUY", false, "B", "5", "9.51", "G"},
    {"SellPrice", 19, "SELL", false, "S", "5", "9.51", "G"},
    {"ShortPrice", 20, "SHORT", false, "T", "5", "9.51", "G"},
    {"OutOfRange", 21, "", false, "", "", "", ""},
    {"Negative", -1, "", false, "", "", "", ""},
};

class ExecutionButtonCases : public Execution, public ::testing::WithParamInterface<ButtonCase> {};

TEST_P(ExecutionButtonCases, OrderCarriesTheButtonsRuleInTheOrderOfItsSets) {
    const ButtonCase& c = GetParam();
    const auto rule = ExecuteButtonRuleFor(c.index);
    ASSERT_EQ(rule.has_value(), *c.caption != '\0');
    if (rule) {
        EXPECT_EQ(rule->index, c.index);
        EXPECT_EQ(rule->caption, c.caption);
    }
    EXPECT_EQ(IsMarketTypeButton(c.index), c.quoteFree);
    const ExecuteReport report = Click(c.index, {QuotedLine("IBM")});
    ASSERT_EQ(report.outcome, ExecuteOutcome::Sent);
    ASSERT_EQ(orders.created.size(), 1u);
    const RecordedOrder& o = orders.created[0];
    EXPECT_TRUE(o.submitted);
    EXPECT_TRUE(o.released);
    EXPECT_EQ(o.value("Side"), c.side);
    EXPECT_EQ(o.value("PriceType"), c.type);
    EXPECT_EQ(o.has("LmtPrice") ? NumberText(std::round(CDbl(o.value("LmtPrice")) * 100) / 100)
                                : std::string(),
              c.limit);
    EXPECT_EQ(o.value("Tif"), c.tif);

    std::vector<std::string> expected{"Memo", "Account", "Symbol", "Quantity", "Destination"};
    if (*c.tif != '\0') {
        expected.insert(expected.end(), {"Tif", "PriceType", "Side"});
    }
    if (*c.limit != '\0') {
        expected.push_back("LmtPrice");
    }
    expected.push_back("ClOrderID");
    EXPECT_EQ(o.setOrder(), expected);
    EXPECT_TRUE(boxes.shown().empty());
}

INSTANTIATE_TEST_SUITE_P(AllButtons, ExecutionButtonCases, ::testing::ValuesIn(ButtonCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_F(Execution, OrderIdentityFieldsHaveTheirForms) {
    ExecutionLine line = QuotedLine("ibm", "300", "nasdaq");
    Click(0, {line, QuotedLine("MSFT"), QuotedLine("AAPL")});
    ASSERT_EQ(orders.created.size(), 3u);
    const RecordedOrder& first = orders.created[0];
    EXPECT_EQ(first.value("Memo"), "Tech10-57-/bskt");
    EXPECT_EQ(first.value("Account"), "ACCT01");
    EXPECT_EQ(first.value("Symbol"), "ibm"); // as displayed
    EXPECT_EQ(first.value("Destination"), "NASDAQ");
    EXPECT_EQ(first.value("Quantity"), "300");
    EXPECT_EQ(first.value("ClOrderID"), "ACCT01-20240315-57-1");
    EXPECT_EQ(orders.created[2].value("ClOrderID"), "ACCT01-20240315-57-3");
}

TEST_F(Execution, PreChecksRefuseWithTheirMessagesAndChangeNothing) {
    EXPECT_EQ(Click(0, {}).outcome, ExecuteOutcome::NoLines);
    EXPECT_TRUE(boxes.shown().empty());

    for (const char* blank : {"", "   "}) {
        boxes.clear();
        inputs.account = blank;
        EXPECT_EQ(Click(0, {QuotedLine("IBM")}).outcome, ExecuteOutcome::MissingAccount);
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0],
                  (MessageRequest{"Please choose an account to use.", "Missing Account"}));
    }

    inputs.account = "ACCT01";
    for (const char* multiplier : {"0", "", "abc", "0.0"}) {
        boxes.clear();
        inputs.multiplier = multiplier;
        EXPECT_EQ(Click(0, {QuotedLine("IBM")}).outcome, ExecuteOutcome::ZeroMultiple)
            << multiplier;
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.shown()[0], (MessageRequest{"Basket multiple must be greater than 0", ""}));
    }
    EXPECT_TRUE(orders.created.empty());
    EXPECT_EQ(store.writes, 0);
    EXPECT_EQ(sequence.BasketSeq(), 57);
}

TEST_F(Execution, NegativeMultiplierPasses) {
    inputs.multiplier = "-1";
    EXPECT_EQ(Click(3, {QuotedLine("IBM")}).outcome, ExecuteOutcome::Sent);
    EXPECT_EQ(orders.submitted().size(), 1u);
}

TEST_F(Execution, ConfirmationAsksOnceAndOnlyYesSends) {
    settings.confirmBeforeSending = true;
    boxes.answerNext(MsgAnswer::No);
    EXPECT_EQ(Click(0, {QuotedLine("IBM")}).outcome, ExecuteOutcome::NotConfirmed);
    ASSERT_EQ(boxes.shown().size(), 1u);
    const MessageRequest& q = boxes.shown()[0];
    EXPECT_EQ(q.text, "Do you want to send this basket order?\r\n\r\nBUY 1 line, 300 shares, "
                      "$3,003.00");
    EXPECT_EQ(q.title, "Basket Confirmation");
    EXPECT_EQ(q.buttons, MsgButtons::YesNo);
    EXPECT_EQ(q.icon, MsgIcon::Question);
    EXPECT_EQ(q.defaultButton, MsgDefault::Second);
    EXPECT_TRUE(orders.created.empty());
    EXPECT_EQ(sequence.BasketSeq(), 57);

    boxes.answerNext(MsgAnswer::Yes);
    EXPECT_EQ(Click(0, {QuotedLine("IBM")}).outcome, ExecuteOutcome::Sent);
    EXPECT_EQ(orders.submitted().size(), 1u);
    EXPECT_EQ(boxes.shown().size(), 2u);

    // Market orders are valued at the last; lines that cannot go are counted apart.
    boxes.clear();
    boxes.answerNext(MsgAnswer::No);
    std::vector<ExecutionLine> big(2, QuotedLine("IBM", "40000"));
    big.push_back(QuotedLine("BAD", "x"));
    Click(7, big);
    EXPECT_EQ(boxes.shown()[0].text, "Do you want to send this basket order?\r\n\r\nSELL 2 lines, "
                                     "80,000 shares, $804,000.00\r\n1 line cannot be sent and "
                                     "will be listed.");
}

TEST_F(Execution, BasketWithoutCheckedLinesStillUsesUpItsNumber) {
    ExecutionLine a = QuotedLine("IBM");
    ExecutionLine b = QuotedLine("MSFT");
    a.checked = b.checked = false;
    sequence.setOrderSeq(40);
    const ExecuteReport report = Click(0, {a, b});
    EXPECT_EQ(report.outcome, ExecuteOutcome::Sent);
    EXPECT_TRUE(orders.created.empty());
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(sequence.BasketSeq(), 58);
    EXPECT_EQ(sequence.OrderSeq(), 1);
    EXPECT_EQ(store.saved, std::optional<int16_t>(58));
    EXPECT_EQ(store.writes, 1);
}

TEST_F(Execution, MarketButtonSendsWithoutQuotesLimitButtonNeedsAllThree) {
    Click(3, {UnquotedLine("IBM")});
    ASSERT_EQ(orders.submitted().size(), 1u);
    EXPECT_EQ(orders.submitted()[0]->value("Tif"), "D");
    EXPECT_TRUE(boxes.shown().empty());

    ExecutionLine noAsk = QuotedLine("IBM");
    noAsk.ask = "0";
    ExecutionLine noTif = QuotedLine("MSFT", "200", "ARCA");
    noTif.tif = "";
    ExecutionLine noLast = QuotedLine("AAPL", "100", "NYSE");
    noLast.last = "";
    orders.created.clear();
    Click(0, {noAsk, noTif, noLast, QuotedLine("ORCL")});
    // A line that cannot go gets no order object at all.
    ASSERT_EQ(orders.created.size(), 1u);
    ASSERT_EQ(orders.submitted().size(), 1u);
    EXPECT_EQ(orders.submitted()[0]->value("Symbol"), "ORCL");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "***** Orders Not Sent *****\r\nIBM 300 NASDAQ\r\nMSFT 200 "
                                     "ARCA\r\nAAPL 100 NYSE\r\n\r\n");
    EXPECT_EQ(boxes.shown()[0].title, "Some Orders Were Not Sent");
    EXPECT_EQ(boxes.shown()[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(boxes.shown()[0].buttons, MsgButtons::Ok);
}

// The order sequence wraps after 9,999; the ids of one send never repeat, wherever the
// stored sequence started.
TEST_F(Execution, OrderNumbersGoPast9999InsteadOfRepeating) {
    sequence.setOrderSeq(9998);
    std::vector<ExecutionLine> lines(10001, QuotedLine("IBM"));
    Click(3, lines);
    ASSERT_EQ(orders.created.size(), 10001u);
    std::set<std::string> ids;
    for (const auto& order : orders.created) {
        ids.insert(order.value("ClOrderID"));
    }
    EXPECT_EQ(ids.size(), 10001u);
    EXPECT_EQ(orders.created[1].value("ClOrderID"), "ACCT01-20240315-57-9999");
    EXPECT_EQ(orders.created[2].value("ClOrderID"), "ACCT01-20240315-57-10000");
    EXPECT_EQ(orders.created[10000].value("ClOrderID"), "ACCT01-20240315-57-19998");
    EXPECT_EQ(sequence.OrderSeq(), 1);
}

// A large send's orders are filled in by two threads: each order carries its own line's
// texts and the next number, the same on both sides of where the halves meet.
TEST_F(Execution, ALargeSendFillsEveryOrderFromItsOwnLine) {
    const std::array<std::pair<const char*, const char*>, 3> tifs{
        {{"DAY", "D"}, {"OS", "1"}, {"GTC", "G"}}};
    std::vector<ExecutionLine> lines;
    std::vector<size_t> sentLines;
    for (size_t i = 0; i < 2003; ++i) {
        lines.push_back(i % 7 == 3
                            ? UnquotedLine("U" + std::to_string(i))
                            : QuotedLine("S" + std::to_string(i), "300", i % 2 ? "arca" : "nyse"));
        if (i % 7 != 3) {
            lines.back().tif = tifs[i % 3].first;
            sentLines.push_back(i);
        }
    }
    const ExecuteReport report = Click(0, lines); // a limit button: unquoted lines stay
    EXPECT_EQ(report.notSent.size(), lines.size() - sentLines.size());
    EXPECT_EQ(report.notSent.front(), "U3 300 NASDAQ");
    ASSERT_EQ(orders.created.size(), sentLines.size());
    for (size_t k = 0; k < sentLines.size(); ++k) {
        const size_t i = sentLines[k];
        const RecordedOrder& o = orders.created[k];
        SCOPED_TRACE("order " + std::to_string(k));
        EXPECT_EQ(o.value("Symbol"), "S" + std::to_string(i));
        EXPECT_EQ(o.value("Destination"), i % 2 ? "ARCA" : "NYSE");
        EXPECT_EQ(o.value("Tif"), tifs[i % 3].second);
        EXPECT_EQ(o.value("ClOrderID"), "ACCT01-20240315-57-" + std::to_string(k + 1));
        EXPECT_EQ(o.setOrder(), orders.created[0].setOrder());
        EXPECT_TRUE(o.submitted);
    }
}

TEST_F(Execution, FirstSendStartsAtTheStoredOrderSeqLaterOnesAtOne) {
    sequence.setOrderSeq(120);
    BasketExecution execution(orders, sequence, store, boxes, clock); // one for the session
    execution.cmdExecuteBasket_Click(
        3, SendLines::Of(std::vector{QuotedLine("IBM"), QuotedLine("MSFT")}), inputs, settings);
    execution.cmdExecuteBasket_Click(3, SendLines::Of(std::vector{QuotedLine("IBM")}), inputs,
                                     settings);
    ASSERT_EQ(orders.created.size(), 3u);
    EXPECT_EQ(orders.created[0].value("ClOrderID"), "ACCT01-20240315-57-120");
    EXPECT_EQ(orders.created[1].value("ClOrderID"), "ACCT01-20240315-57-121");
    EXPECT_EQ(orders.created[2].value("ClOrderID"), "ACCT01-20240315-58-1");
    EXPECT_EQ(orders.created[2].value("Memo"), "Tech10-58-/bskt");
}

TEST_F(Execution, ReserveOnlyForListedDestinationsUpToTheQuantity) {
    settings.reserveEnabled = true;
    settings.reserveQuantity = 300;
    Click(3, {QuotedLine("A", "300", "inet"), QuotedLine("B", "299", "INET"),
              QuotedLine("C", "5000", "NYSE"), QuotedLine("D", "301", "ARCA")});
    ASSERT_EQ(orders.created.size(), 4u);
    EXPECT_EQ(orders.created[0].value("MaxFloor"), "300"); // destination upper-cased first
    EXPECT_FALSE(orders.created[1].has("MaxFloor"));
    EXPECT_FALSE(orders.created[2].has("MaxFloor"));
    EXPECT_EQ(orders.created[3].value("MaxFloor"), "300");
    EXPECT_EQ(orders.created[0].setOrder()[5], "MaxFloor");

    settings.reserveEnabled = false;
    orders.created.clear();
    Click(3, {QuotedLine("A", "300", "INET")});
    EXPECT_FALSE(orders.created[0].has("MaxFloor"));
}

TEST_F(Execution, OneSummaryWithNotSentBlockFirstThenRefusals) {
    orders.submitResult = [](const RecordedOrder& o) {
        return o.value("Symbol") == "IBM" ? -7 : o.value("Symbol") == "X!Y" ? -99 : 12;
    };
    ExecutionLine unsendable = QuotedLine("MSFT", "200", "ARCA");
    unsendable.bid = "0";
    const ExecuteReport report = Click(
        4, {QuotedLine("IBM"), unsendable, QuotedLine("X!Y", "50", "NYSE"), QuotedLine("OK")});
    EXPECT_EQ(report.ordersSubmitted, 3);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text,
              "***** Orders Not Sent *****\r\n"
              "MSFT 200 ARCA\r\n"
              "\r\n"
              "***** Submit Order Error *****\r\n"
              "IBM 300 NASDAQ: Destination is not valid.\r\n"
              "X!Y 50 NYSE: Unknown SubmitOrder Error. SubmitOrder Error Code = -99\r\n");
    BasketExecution execution(orders, sequence, store, boxes, clock);
    EXPECT_EQ(execution.LastSubmitResult(), 0);
    execution.cmdExecuteBasket_Click(4, SendLines::Of(std::vector{QuotedLine("OK")}), inputs,
                                     settings);
    EXPECT_EQ(execution.LastSubmitResult(), 12);
}

TEST_F(Execution, SummaryWithOnlyRefusals) {
    EXPECT_EQ(SendSummaryText({}, {{"IBM 300 NASDAQ", -1}}),
              "***** Submit Order Error *****\r\nIBM 300 NASDAQ: Account is not valid.\r\n");
    EXPECT_EQ(SendSummaryText({}, {}), "");
}

// basket.ini takes the next send number once per send. When it cannot, the basket goes out
// all the same (the journal keeps its number from being used again) and the trader is told.
TEST_F(Execution, NextBasketNumberIsStoredOncePerSendAndAFailureIsShownAfterIt) {
    Click(3, {QuotedLine("IBM"), QuotedLine("MSFT")});
    EXPECT_EQ(store.saved, std::optional<int16_t>(58));
    EXPECT_EQ(store.writes, 1);

    store.failWrites = true;
    const ExecuteReport report = Click(3, {QuotedLine("IBM")});
    EXPECT_EQ(report.outcome, ExecuteOutcome::Sent);
    EXPECT_EQ(orders.submitted().size(), 3u);
    EXPECT_EQ(sequence.BasketSeq(), 59);
    EXPECT_EQ(sequence.OrderSeq(), 1);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0].text, "disk full\r\nThe basket was sent. The order journal keeps "
                                     "its send number, so the next send still takes a new one.");
    EXPECT_EQ(boxes.shown()[0].title, "Basket Number Not Saved");
}

TEST_F(Execution, LastBasketNumberIsNotExceeded) {
    sequence.setBasketSeq(32767);
    EXPECT_EQ(Click(3, {QuotedLine("IBM")}).outcome, ExecuteOutcome::NotReserved);
    EXPECT_TRUE(orders.created.empty());
    EXPECT_EQ(store.writes, 0);
    EXPECT_EQ(sequence.BasketSeq(), 32767);
}

/// What a send tells its listener: each result, then the orders that left.
class HeardSend final : public SendListener {
public:
    void SendBegins(int16_t, std::string_view, std::span<const QVXOrder* const>,
                    std::string_view) override {}
    void SendContinues(int16_t, std::span<const QVXOrder* const>) override {}
    void Submitted(int32_t result) override { results.push_back(result); }
    void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) override {
        for (const auto& order : orders) {
            handed.push_back(order->Symbol());
        }
    }
    void SendEnds(int16_t) override { ended = true; }

    std::vector<int32_t> results;
    std::vector<std::string> handed;
    bool ended = false;
};

TEST_F(Execution, CrashMidBasketNeverReusesClientOrderIds) {
    orders.submitResult = [&](const RecordedOrder& o) -> int32_t {
        if (o.value("Symbol") == "BOOM") {
            throw RuntimeError(440, "Platform failure");
        }
        return 0;
    };
    HeardSend heard;
    BasketExecution execution(orders, sequence, store, boxes, clock);
    execution.setListener(&heard);
    EXPECT_THROW(
        execution.cmdExecuteBasket_Click(
            3,
            SendLines::Of(std::vector{QuotedLine("IBM"), QuotedLine("BOOM"), QuotedLine("MSFT")}),
            inputs, settings),
        RuntimeError);
    ASSERT_EQ(orders.submitted().size(), 2u);
    // The order out before the failure is followed; the one that failed is not.
    EXPECT_EQ(heard.results, std::vector<int32_t>{0});
    EXPECT_EQ(heard.handed, std::vector<std::string>{"IBM"});
    EXPECT_TRUE(heard.ended);
    EXPECT_TRUE(orders.created[1].released);
    EXPECT_EQ(orders.created.size(), 3u); // every order was ready before the first left

    // A restart reads the stored number, as does this run's own next send.
    ASSERT_TRUE(store.saved.has_value());
    for (SendSequence next : {sequence, SendSequence(*store.saved, 1)}) {
        RecordingOrders later;
        MemorySequenceStore laterStore;
        RecordingMessageBoxes laterBoxes;
        BasketExecution again(later, next, laterStore, laterBoxes, clock);
        again.cmdExecuteBasket_Click(
            3, SendLines::Of(std::vector{QuotedLine("IBM"), QuotedLine("MSFT")}), inputs, settings);
        for (const RecordedOrder& o : later.created) {
            for (const RecordedOrder* earlier : orders.submitted()) {
                EXPECT_NE(o.value("ClOrderID"), earlier->value("ClOrderID"));
            }
        }
    }
}

/// The parts a send announces; the ones after the first come from a helper thread.
class PartsHeard final : public SendListener {
public:
    void SendBegins(int16_t, std::string_view, std::span<const QVXOrder* const> orders,
                    std::string_view) override {
        Heard(orders);
    }
    void SendContinues(int16_t, std::span<const QVXOrder* const> orders) override {
        if (parts == failingPart) {
            throw RuntimeError(3043, "Disk or network error.");
        }
        Heard(orders);
    }
    void Submitted(int32_t) override {}
    void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) override {
        handed = orders.size();
    }
    void SendEnds(int16_t) override {}

    std::vector<std::string> ids; ///< of the orders announced, in order
    std::atomic<size_t> announced{0};
    size_t parts = 0;
    size_t failingPart = std::numeric_limits<size_t>::max();
    size_t handed = 0;

private:
    void Heard(std::span<const QVXOrder* const> orders) {
        for (const QVXOrder* o : orders) {
            ids.push_back(o->ClOrderID());
        }
        ++parts;
        announced.store(ids.size());
    }
};

// A large send's orders are made and written down in parts while the first ones leave: each
// order is announced once, in order, and never leaves before its part was announced.
TEST_F(Execution, NoOrderLeavesBeforeThePartThatHoldsItIsAnnounced) {
    PartsHeard heard;
    size_t submitted = 0;
    size_t early = 0;
    orders.submitResult = [&](const RecordedOrder&) {
        early += heard.announced.load() <= submitted++;
        return 1;
    };
    const ExecuteReport report =
        Click(3, std::vector<ExecutionLine>(3000, QuotedLine("IBM")), &heard);
    EXPECT_EQ(report.ordersSubmitted, 3000);
    EXPECT_EQ(early, 0u);
    EXPECT_GT(heard.parts, 2u);
    ASSERT_EQ(heard.ids.size(), 3000u);
    for (size_t k = 0; k < heard.ids.size(); ++k) {
        ASSERT_EQ(heard.ids[k], "ACCT01-20240315-57-" + std::to_string(k + 1));
    }
    EXPECT_EQ(heard.handed, 3000u);
    EXPECT_EQ(store.saved, std::optional<int16_t>(58));
}

// A part that cannot be announced ends the send there: the orders before it left and are
// followed, none of it or after it leaves, and the send number is used up.
TEST_F(Execution, APartThatCannotBeAnnouncedEndsTheSendThere) {
    PartsHeard heard;
    heard.failingPart = 2;
    EXPECT_THROW(Click(3, std::vector<ExecutionLine>(3000, QuotedLine("IBM")), &heard),
                 RuntimeError);
    EXPECT_EQ(heard.ids.size(), 128u); // the first two parts
    EXPECT_EQ(orders.submitted().size(), heard.ids.size());
    EXPECT_EQ(heard.handed, heard.ids.size());
    EXPECT_EQ(sequence.BasketSeq(), 58);
    EXPECT_EQ(store.saved, std::optional<int16_t>(58));
}

// Every line is judged before the first order leaves: a bad line is listed with its reason
// and never stops the lines after it.
TEST_F(Execution, WholeBasketIsCheckedBeforeAnyOrderLeaves) {
    struct Row {
        const char* name;
        int button;
        std::function<void(ExecutionLine&)> spoil;
        const char* notSent; ///< "" = the line goes out
        const char* quantity;
    };
    const Row rows[] = {
        {"FortyThousandSharesGoWhole", 0, [](ExecutionLine& l) { l.quantity = "40000"; }, "",
         "40000"},
        {"QuantityNotANumber", 0, [](ExecutionLine& l) { l.quantity = "12x"; },
         "BAD 12x NASDAQ (quantity is not a number)", ""},
        {"QuantityBeyond32Bit", 3, [](ExecutionLine& l) { l.quantity = "3000000000"; },
         "BAD 3000000000 NASDAQ (quantity is more than 2,147,483,647 shares)", ""},
        {"ModifierEmpty", 0, [](ExecutionLine& l) { l.modifier = ""; },
         "BAD 300 NASDAQ (price modifier \"\" is not a number)", ""},
        {"PriceNotFinite", 0,
         [](ExecutionLine& l) {
             l.bid = "1E308";
             l.modifier = "1E308";
         },
         "BAD 300 NASDAQ (no limit price)", ""},
        {"PriceBelowZero", 0, [](ExecutionLine& l) { l.modifier = "-10.05"; },
         "BAD 300 NASDAQ (limit price -0.05 is not above 0)", ""},
        {"OwnPriceNotANumber", 18, [](ExecutionLine& l) { l.price = "n/a"; },
         "BAD 300 NASDAQ (no limit price)", ""},
    };
    for (const Row& r : rows) {
        orders.created.clear();
        boxes.clear();
        ExecutionLine bad = QuotedLine("BAD");
        r.spoil(bad);
        const ExecuteReport report = Click(r.button, {QuotedLine("IBM"), bad, QuotedLine("MSFT")});
        EXPECT_EQ(report.outcome, ExecuteOutcome::Sent) << r.name;
        if (*r.notSent == '\0') {
            ASSERT_EQ(orders.submitted().size(), 3u) << r.name;
            EXPECT_EQ(orders.submitted()[1]->value("Quantity"), r.quantity) << r.name;
            EXPECT_TRUE(boxes.shown().empty()) << r.name;
        } else {
            ASSERT_EQ(orders.submitted().size(), 2u) << r.name;
            EXPECT_EQ(orders.submitted()[1]->value("Symbol"), "MSFT") << r.name;
            ASSERT_EQ(boxes.shown().size(), 1u) << r.name;
            EXPECT_EQ(boxes.shown()[0].text,
                      "***** Orders Not Sent *****\r\n" + std::string(r.notSent) + "\r\n\r\n")
                << r.name;
        }
    }
}

// The limit comes from the quote's own value, not the rounded cell, and lands on the tick
// grid never more aggressive than asked.
TEST_F(Execution, LimitPriceIsTheQuotesOwnValueOnTheTickGrid) {
    struct Row {
        const char* name;
        int button;
        double own; ///< the quote's value behind the price cell; NaN = none
        const char* cell;
        const char* modifier;
        double expected;
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    const Row rows[] = {
        {"SubPennyBidNotTheRoundedCell", 0, 0.4567, "0.46", "0", 0.4567},
        {"SubPennyAskSell", 5, 0.4571, "0.46", "0", 0.4571},
        {"HalfPennyModifierBuyRoundsDown", 0, 219.50, "219.50", "0.005", 219.50},
        {"HalfPennyModifierSellRoundsUp", 4, 219.50, "219.50", "0.005", 219.51},
        {"ShortRoundsUp", 10, 10.051, "10.05", "0", 10.06},
        {"CellWhenNoQuoteValue", 0, none, "10.00", "0.01", 10.01},
    };
    for (const Row& r : rows) {
        orders.created.clear();
        ExecutionLine line = QuotedLine("IBM");
        line.modifier = r.modifier;
        const auto rule = ExecuteButtonRuleFor(r.button);
        (rule->price == PriceSource::Bid   ? line.bid
         : rule->price == PriceSource::Ask ? line.ask
                                           : line.last) = r.cell;
        (rule->price == PriceSource::Bid   ? line.bidValue
         : rule->price == PriceSource::Ask ? line.askValue
                                           : line.lastValue) = r.own;
        Click(r.button, {line});
        ASSERT_EQ(orders.submitted().size(), 1u) << r.name;
        EXPECT_DOUBLE_EQ(CDbl(orders.submitted()[0]->value("LmtPrice")), r.expected) << r.name;
    }
}

class ScriptedOverride : public LimitOverride {
public:
    bool ConfirmOverride(const std::string& basket, const std::string& side,
                         const std::vector<LimitBreach>& breaches) override {
        asked.push_back(basket + " " + side);
        seen = breaches;
        return answer;
    }
    bool answer = false;
    std::vector<std::string> asked;
    std::vector<LimitBreach> seen;
};

// Each limit stops a send that breaks it until the trader overrides it; the override is
// named in the send's report.
TEST_F(Execution, EachLimitStopsTheSendUnlessOverridden) {
    struct Row {
        const char* name;
        std::function<void(SendLimits&)> set;
        int button;
        LimitBreach breach;
    };
    const Row rows[] = {
        {"SharesPerOrder",
         [](SendLimits& l) { l.maxOrderShares = 10000; },
         3,
         {"BIG 40000 NASDAQ", LimitName::OrderShares, "40,000 shares, limit 10,000"}},
        {"ValuePerOrder",
         [](SendLimits& l) { l.maxOrderValue = 100000; },
         3,
         {"BIG 40000 NASDAQ", LimitName::OrderValue, "$404,000.00, limit $100,000.00"}},
        {"ValuePerSend",
         [](SendLimits& l) { l.maxSendValue = 400000; },
         0,
         {"Whole send", LimitName::SendValue, "$401,401.00, limit $400,000.00"}},
        {"PriceBandBuy",
         [](SendLimits& l) { l.priceBandPercent = 5; },
         18,
         {"BIG 40000 NASDAQ", LimitName::PriceBand,
          "limit 11.01 is 9.01% above the last 10.1, band 5%"}},
    };
    for (const Row& r : rows) {
        for (const bool answer : {false, true}) {
            orders.created.clear();
            settings.limits = {};
            r.set(settings.limits);
            ScriptedOverride prompt;
            prompt.answer = answer;
            ExecutionLine big = QuotedLine("BIG", "40000");
            big.last = "10.10";
            big.price = "11.00";
            const int16_t seq = sequence.BasketSeq();
            BasketExecution execution(orders, sequence, store, boxes, clock);
            execution.setLimitOverride(&prompt);
            const ExecuteReport report = execution.cmdExecuteBasket_Click(
                r.button, SendLines::Of(std::vector{QuotedLine("IBM", "100"), big}), inputs,
                settings);
            ASSERT_EQ(prompt.seen.size(), 1u) << r.name;
            const auto text = [](const LimitBreach& b) {
                return b.line + " | " + b.limit + " | " + b.text;
            };
            EXPECT_EQ(text(prompt.seen[0]), text(r.breach)) << r.name;
            if (answer) {
                EXPECT_EQ(report.outcome, ExecuteOutcome::Sent) << r.name;
                EXPECT_EQ(orders.submitted().size(), 2u) << r.name;
                EXPECT_EQ(report.overriddenLimits, std::vector<std::string>{r.breach.limit})
                    << r.name;
            } else {
                EXPECT_EQ(report.outcome, ExecuteOutcome::LimitsRefused) << r.name;
                EXPECT_TRUE(orders.created.empty()) << r.name;
                EXPECT_EQ(sequence.BasketSeq(), seq) << r.name;
            }
        }
    }
}

TEST_F(Execution, RepeatSendOfTheSameBasketAndSideNeedsAnOverride) {
    settings.limits.repeatSeconds = 5;
    ScriptedOverride prompt;
    BasketExecution execution(orders, sequence, store, boxes, clock);
    execution.setLimitOverride(&prompt);
    const auto send = [&](int button) {
        return execution.cmdExecuteBasket_Click(
            button, SendLines::Of(std::vector{QuotedLine("IBM")}), inputs, settings);
    };
    EXPECT_EQ(send(3).outcome, ExecuteOutcome::Sent);
    clock.set(clock.now() + std::chrono::seconds(2));
    EXPECT_EQ(send(7).outcome, ExecuteOutcome::Sent); // the other side is another send
    EXPECT_EQ(send(3).outcome, ExecuteOutcome::LimitsRefused);
    EXPECT_EQ(prompt.asked, std::vector<std::string>{"Tech10 BUY"});
    clock.set(clock.now() + std::chrono::seconds(4));
    EXPECT_EQ(send(3).outcome, ExecuteOutcome::Sent);
    EXPECT_EQ(orders.submitted().size(), 3u);

    // Without anyone to ask, a broken limit refuses the send.
    BasketExecution unattended(orders, sequence, store, boxes, clock);
    settings.limits = {.maxOrderShares = 1};
    EXPECT_EQ(unattended
                  .cmdExecuteBasket_Click(3, SendLines::Of(std::vector{QuotedLine("IBM")}), inputs,
                                          settings)
                  .outcome,
              ExecuteOutcome::LimitsRefused);
}

} // namespace
} // namespace wicker
