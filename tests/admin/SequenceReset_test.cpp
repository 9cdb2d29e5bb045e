#include "admin/SequenceReset.h"
#include "storage/Settings.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace test;

class SequenceReset : public testing::Test {
protected:
    std::string stored(const std::string& key) const {
        return test::IniValue(dir / "basket.ini", "Sequence", key);
    }

    TempDir dir;
    RecordingMessageBoxes boxes;
    SendSequence sequence{3, 40};
};

TEST_F(SequenceReset, BasketNumberGoesToCounterFileAndMessage) {
    EXPECT_EQ(SetBasketSequence(dir.path(), sequence, "7", boxes), std::optional<int16_t>(7));
    EXPECT_EQ(sequence.BasketSeq(), 7);
    EXPECT_EQ(sequence.OrderSeq(), 40);
    EXPECT_EQ(stored("BasketNum"), "7");
    EXPECT_EQ(stored("SeqNum"), "<missing>");
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0],
              (MessageRequest{"Next Basket Squence Number will be: 7", "Sequence Reset"}));
}

TEST_F(SequenceReset, TradeNumberGoesToCounterFileAndMessage) {
    EXPECT_EQ(SetTradeSequence(dir.path(), sequence, "12", boxes), std::optional<int16_t>(12));
    EXPECT_EQ(sequence.OrderSeq(), 12);
    EXPECT_EQ(sequence.BasketSeq(), 3);
    EXPECT_EQ(stored("SeqNum"), "12");
    EXPECT_EQ(stored("BasketNum"), "<missing>");
    EXPECT_EQ(boxes.shown().at(0),
              (MessageRequest{"Next Trade Squence Number will be: 12", "Sequence Reset"}));
}

struct TypedCase {
    const char* name;
    const char* typed;
    int16_t counter;
};

class TypedText : public SequenceReset, public testing::WithParamInterface<TypedCase> {};

// The file keeps the text as typed; the counter takes the number it starts with.
TEST_P(TypedText, StoredAsTypedCountedByItsLeadingNumber) {
    const TypedCase& c = GetParam();
    EXPECT_EQ(SetBasketSequence(dir.path(), sequence, c.typed, boxes),
              std::optional<int16_t>(c.counter));
    EXPECT_EQ(sequence.BasketSeq(), c.counter);
    EXPECT_EQ(stored("BasketNum"), c.typed);
    EXPECT_EQ(boxes.texts().at(0),
              "Next Basket Squence Number will be: " + std::to_string(c.counter));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TypedText,
    testing::Values(TypedCase{"NotANumber", "abc", 0}, TypedCase{"Empty", "", 0},
                    TypedCase{"LeadingNumber", "12abc", 12}, TypedCase{"HalfToEven", "2.5", 2},
                    TypedCase{"HalfUpToEven", "3.5", 4}, TypedCase{"Negative", "-5", -5},
                    TypedCase{"Largest", "32767", 32767}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SequenceReset, NumberTooLargeChangesNothing) {
    EXPECT_FALSE(SetBasketSequence(dir.path(), sequence, "40000", boxes));
    EXPECT_FALSE(SetTradeSequence(dir.path(), sequence, "1e9", boxes));
    EXPECT_EQ(sequence.BasketSeq(), 3);
    EXPECT_EQ(sequence.OrderSeq(), 40);
    EXPECT_EQ(stored("BasketNum"), "<missing>");
    EXPECT_EQ(stored("SeqNum"), "<missing>");
    EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Run-time error '6':\n\nOverflow",
                                                       "Run-time error '6':\n\nOverflow"}));
}

TEST_F(SequenceReset, UnwritableFileChangesNothingAndSaysSo) {
    // A folder where the file should be: it can be neither read nor replaced.
    std::filesystem::create_directory(dir / "basket.ini");
    EXPECT_FALSE(SetBasketSequence(dir.path(), sequence, "7", boxes));
    EXPECT_EQ(sequence.BasketSeq(), 3);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_NE(boxes.shown()[0].text.find("Sequence / BasketNum"), std::string::npos);
}

TEST_F(SequenceReset, TextThatTheFileCannotHoldChangesNothing) {
    EXPECT_FALSE(SetTradeSequence(dir.path(), sequence, "8\r\nInjected=1", boxes));
    EXPECT_EQ(sequence.OrderSeq(), 40);
    EXPECT_EQ(stored("SeqNum"), "<missing>");
}

LocalDateTime Day(int day) {
    return LocalDateTime{2024, 5, day, 9, 30, 0, 0};
}

TEST_F(SequenceReset, BasketNumberSurvivesARestartTheSameDayAndResetsTheNext) {
    ManualClock clock(FromLocal(Day(14)));
    LoadSettings(dir.path(), clock); // the day's first start
    ASSERT_TRUE(SetTradeSequence(dir.path(), sequence, "55", boxes));
    ASSERT_TRUE(SetBasketSequence(dir.path(), sequence, "7", boxes));

    clock.set(FromLocal(Day(14)) + std::chrono::hours(6));
    Settings sameDay = LoadSettings(dir.path(), clock);
    EXPECT_EQ(sameDay.basketNum, 7);
    EXPECT_EQ(SendSequence(sameDay.basketNum, sameDay.seqNum).BasketSeq(), 7);

    clock.set(FromLocal(Day(15)));
    Settings nextDay = LoadSettings(dir.path(), clock);
    EXPECT_EQ(nextDay.basketNum, 1);
    EXPECT_EQ(nextDay.seqNum, 55); // the trade sequence is never reset by the date
    EXPECT_EQ(stored("BasketNum"), "1");
}

TEST_F(SequenceReset, NonNumericTextReadsBackAsTheDefaultOnTheNextStart) {
    ManualClock clock(FromLocal(Day(14)));
    LoadSettings(dir.path(), clock);
    SetBasketSequence(dir.path(), sequence, "abc", boxes);
    EXPECT_EQ(LoadSettings(dir.path(), clock).basketNum, 1);
}

} // namespace
} // namespace wicker
