#include "common/Conversions.h"
#include "common/RuntimeError.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace wicker {
namespace {

int ErrorOf(auto&& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

struct IntCase {
    const char* name;
    double in;
    int expected; // value, or -error number when `error` is set
    bool error;
};

class CIntTest : public testing::TestWithParam<IntCase> {};

TEST_P(CIntTest, RoundsHalfToEvenAndOverflows) {
    const auto& c = GetParam();
    if (c.error) {
        EXPECT_EQ(ErrorOf([&] { CInt(c.in); }), c.expected);
    } else {
        EXPECT_EQ(CInt(c.in), c.expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, CIntTest,
    testing::Values(
        IntCase{"two_and_half", 2.5, 2, false}, IntCase{"three_and_half", 3.5, 4, false},
        IntCase{"minus_two_and_half", -2.5, -2, false},
        IntCase{"minus_three_and_half", -3.5, -4, false}, IntCase{"half", 0.5, 0, false},
        IntCase{"one_and_half", 1.5, 2, false}, IntCase{"just_above_half", 2.5000001, 3, false},
        IntCase{"just_below_half", 2.4999999, 2, false}, IntCase{"top", 32767.0, 32767, false},
        IntCase{"top_plus_half_overflows", 32767.5, err::Overflow, true},
        IntCase{"top_plus_less_than_half", 32767.4, 32767, false},
        IntCase{"bottom_minus_half_is_even", -32768.5, -32768, false},
        IntCase{"below_bottom", -32769.0, err::Overflow, true},
        IntCase{"nan", std::nan(""), err::Overflow, true},
        IntCase{"infinity", std::numeric_limits<double>::infinity(), err::Overflow, true}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(CLng, RangeAndRounding) {
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    EXPECT_EQ(CLng(-2147483648.0), -2147483647 - 1);
    EXPECT_EQ(ErrorOf([] { CLng(2147483647.5); }), err::Overflow);
    EXPECT_EQ(ErrorOf([] { CLng(3e9); }), err::Overflow);
    EXPECT_EQ(CLng(-0.5), 0);
    EXPECT_EQ(CLng(10.5), 10);
    EXPECT_EQ(CLng(11.5), 12);
}

struct TextCase {
    const char* text;
    bool numeric;
    double value; // CDbl when numeric
};

TEST(IsNumericAndCDbl, Table) {
    const TextCase cases[] = {
        {"1e3", true, 1000},   {"abc", false, 0},    {"", false, 0},     {"  42  ", true, 42},
        {"-1.5", true, -1.5},  {"+7", true, 7},      {".5", true, 0.5},  {"5.", true, 5},
        {"1,000", true, 1000}, {"1E-2", true, 0.01}, {"1d2", true, 100}, {"&H10", true, 16},
        {"&HFFFF", true, -1},  {"&O17", true, 15},   {"1e", false, 0},   {".", false, 0},
        {"-", false, 0},       {"12abc", false, 0},  {"1 2", false, 0},  {",1", false, 0},
        {"1e999", false, 0},   {"&HF", true, 15},    {"&H", false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(IsNumeric(c.text), c.numeric);
        if (c.numeric) {
            EXPECT_DOUBLE_EQ(CDbl(c.text), c.value);
        } else {
            EXPECT_NE(ErrorOf([&] { CDbl(c.text); }), 0);
        }
    }
}

TEST(TextToInteger, ConvertsNumericTextAndRefusesOther) {
    EXPECT_EQ(CInt("2.5"), 2);
    EXPECT_EQ(CInt(" 3.5 "), 4);
    EXPECT_EQ(CLng("1e3"), 1000);
    EXPECT_EQ(ErrorOf([] { CInt("abc"); }), err::TypeMismatch);
    EXPECT_EQ(ErrorOf([] { CInt(""); }), err::TypeMismatch);
    EXPECT_EQ(ErrorOf([] { CInt("40000"); }), err::Overflow);
    EXPECT_EQ(ErrorOf([] { CLng("3000000000"); }), err::Overflow);
}

TEST(Val, ReadsTheLeadingNumberOnly) {
    const std::pair<const char*, double> cases[] = {
        {"abc", 0},     {"", 0},       {"12abc", 12}, {"  -3.5x", -3.5},
        {"1 2 3", 123}, {"1,000", 1},  {"1e3", 1000}, {"2.5.1", 2.5},
        {"&H1F", 31},   {"$5", 0},     {".25", 0.25}, {"1e", 1},
        {"- 4", -4},    {"100k", 100}, {"\t7", 7},    {"1e999", 0},
    };
    for (const auto& [text, value] : cases) {
        SCOPED_TRACE(text);
        EXPECT_DOUBLE_EQ(Val(text), value);
    }
}

TEST(Int, FloorsTowardMinusInfinity) {
    EXPECT_EQ(Int(1.9), 1.0);
    EXPECT_EQ(Int(-1.3), -2.0);
    EXPECT_EQ(Int(-2.0), -2.0);
}

TEST(NumberText, ShortestDisplayForm) {
    const std::pair<double, const char*> cases[] = {
        {0.0, "0"},
        {200.0, "200"},
        {-1.5, "-1.5"},
        {0.1 + 0.2, "0.3"},
        {1.0 / 3.0, "0.333333333333333"},
        {123456789012345.0, "123456789012345"},
        {1e15, "1E+15"},
        {1234567890123456.0, "1.23456789012346E+15"},
        {0.00001, "0.00001"},
        {1.5e-7, "1.5E-07"},
        {2147483648.0, "2147483648"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(NumberText(value), text) << value;
    }
}

} // namespace
} // namespace wicker
