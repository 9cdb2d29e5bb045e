#include "common/RuntimeError.h"
#include "trading/basket/BasketCalculation.h"
#include "trading/basket/FieldSpinners.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

StockLine Line(const std::string& symbol, const std::string& basketQty,
               const std::string& last = "", bool checked = true) {
    StockLine line;
    line.cells[stkSymbol] = symbol;
    line.cells[stkBasketQty] = basketQty;
    line.cells[stkLast] = last;
    line.checked = checked;
    return line;
}

TEST(CalcBasket, OrderQuantityByMultiplierDeltaAndLot) {
    struct Row {
        const char* name;
        const char* basketQty;
        const char* multiplier;
        const char* delta;
        int16_t lot;
        const char* expected;
    };
    const Row rows[] = {
        {"half a lot rounds up", "150", "1", "100", 100, "200"},
        {"100 shares or fewer never go to lots", "80", "1", "100", 100, "80"},
        {"exactly 100 is whole shares", "100", "1", "100", 100, "100"},
        {"1.25 lots round down", "250", "1", "50", 100, "100"},
        {"24.5 lots of 10 round up", "245", "1", "100", 10, "250"},
        {"fraction 0.45 of a share rounds down", "20.9", "1", "50", 1, "10"},
        {"fraction 0.46 of a share rounds up", "20.92", "1", "50", 1, "11"},
        {"multiplier scales before lots", "120", "3", "100", 100, "400"},
        {"delta 0 gives 0", "500", "1", "0", 100, "0"},
        {"multiplier 0 gives 0", "500", "0", "100", 100, "0"},
        {"negative multiplier", "150", "-1", "100", 100, "-150"},
        {"multiplier text counts by its leading number", "100", "2x", "100", 1, "200"},
        {"delta text that is no number counts as 0", "100", "1", "abc", 1, "0"},
        {"lot of 0 falls back to 1", "1235", "1", "100", 0, "1235"},
        {"negative lot falls back to 1", "1235", "1", "100", -10, "1235"},
        {"fractional multiplier", "1000", "0.5", "100", 100, "500"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        StockList lines;
        lines.Assign({Line("IBM", r.basketQty)});
        std::vector<float> notional;
        CalcBasket(lines, {r.multiplier, r.delta}, r.lot, notional);
        EXPECT_EQ(lines.Cell(0, stkOrderQty), r.expected);
    }
}

TEST(CalcBasket, NotionalUsesUnroundedSharesOfEveryLine) {
    StockList lines;
    lines.Assign({Line("A", "150", "10.00"), Line("B", "30", "2.50", false), Line("C", "10", "")});
    std::vector<float> notional;
    // A: n = 150 (sent as 200 after lot rounding) x 10 = 1500; B unchecked still counts: 75.
    EXPECT_EQ(CalcBasket(lines, {"1", "100"}, 100, notional), "1575.00");
    ASSERT_EQ(notional.size(), 3u);
    EXPECT_FLOAT_EQ(notional[0], 1500.0f);
    EXPECT_FLOAT_EQ(notional[1], 75.0f);
    EXPECT_FLOAT_EQ(notional[2], 0.0f);
    EXPECT_EQ(lines.Cell(0, stkOrderQty), "200");
}

TEST(CalcBasket, EmptyListShowsZeroWithLeadingDigit) {
    StockList lines;
    std::vector<float> notional{1.0f};
    EXPECT_EQ(CalcBasket(lines, {"1", "100"}, 100, notional), "0.00");
    EXPECT_EQ(CalcCheckedTotal(lines, notional), "0.00");
}

TEST(CalcBasket, BadBasketQuantityStopsAtItsLine) {
    StockList lines;
    lines.Assign({Line("A", "10", "1"), Line("B", "ten", "1"), Line("C", "30", "1")});
    std::vector<float> notional;
    try {
        CalcBasket(lines, {"2", "100"}, 1, notional);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::TypeMismatch);
    }
    EXPECT_EQ(lines.Cell(0, stkOrderQty), "20");
    EXPECT_EQ(lines.Cell(2, stkOrderQty), "");
}

TEST(CalcBasket, OverflowingQuantityIsAnOverflowError) {
    StockList lines;
    lines.Assign({Line("A", "3000000000")});
    std::vector<float> notional;
    try {
        CalcBasket(lines, {"1", "100"}, 1, notional);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}

TEST(CalcCheckedTotal, CountsCheckedLinesOnly) {
    StockList lines;
    lines.Assign({Line("A", "150", "10.00"), Line("B", "30", "2.50", false)});
    std::vector<float> notional;
    CalcBasket(lines, {"1", "100"}, 100, notional);
    // The checked total uses the quantity to send: 200 x 10.
    EXPECT_EQ(CalcCheckedTotal(lines, notional), "2000.00");
    EXPECT_FLOAT_EQ(notional[1], 0.0f);

    lines.SetAllChecked(false);
    EXPECT_EQ(CalcCheckedTotal(lines, notional), ".00");
}

TEST(SetModAndTif, CopyIntoEveryLine) {
    StockList lines;
    lines.Assign({Line("A", "1"), Line("B", "2")});
    SetMod(lines, "0.05x");
    SetTif(lines, "");
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(lines.Cell(row, stkMod), "0.05x"); // as typed, no conversion
        EXPECT_EQ(lines.Cell(row, stkTif), "DAY");
    }
    SetTif(lines, "IOC");
    EXPECT_EQ(lines.Cell(1, stkTif), "IOC");
}

TEST(Spinners, StepsBoundsAndFallbacks) {
    struct Row {
        const char* name;
        std::string (*spin)(std::string_view, bool);
        const char* text;
        bool up;
        const char* expected;
    };
    const Row rows[] = {
        {"multiplier up", SpinPercent, "1", true, "2"},
        {"multiplier down to 0", SpinPercent, "1", false, "0"},
        {"multiplier below 0", SpinPercent, "0", false, "-1"},
        {"multiplier no number", SpinPercent, "x", true, "1"},
        {"delta up", SpinDelta, "50", true, "51"},
        {"delta stays at 100", SpinDelta, "100", true, "100"},
        {"delta above 100 comes back", SpinDelta, "150", false, "100"},
        {"delta stays at 0", SpinDelta, "0", false, "0"},
        {"delta no number", SpinDelta, "", true, "100"},
        {"mod up", SpinMod, "0.05", true, "0.06"},
        {"mod down through zero leaves no residue", SpinMod, "0.01", false, "0"},
        {"mod below zero", SpinMod, "0", false, "-0.01"},
        {"mod no number", SpinMod, "abc", true, "0"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(r.spin(r.text, r.up), r.expected);
    }
}

} // namespace
} // namespace wicker
