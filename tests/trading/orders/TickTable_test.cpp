#include "trading/orders/TickTable.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(TickTable, RoundsBuysDownAndSellsUpWithinTheBandOfThePrice) {
    struct Row {
        const char* name;
        double price;
        double buy;
        double sell;
    };
    const Row rows[] = {
        {"OnTheGridStays", 219.50, 219.50, 219.50},
        {"HalfPenny", 219.505, 219.50, 219.51},
        {"SubPennyQuote", 0.45671, 0.4567, 0.4568},
        {"BinaryResidueIsNoPriceBetween", 0.4567, 0.4567, 0.4567},
        {"JustAboveADollar", 1.00005, 1.00, 1.01},
        {"JustBelowADollarSellsUpOntoIt", 0.99995, 0.9999, 1.00},
        {"AtADollar", 1.00, 1.00, 1.00},
        {"BelowTheSmallestTick", 0.00004, 0.0, 0.0001},
    };
    const TickTable us = TickTable::UsEquities();
    for (const Row& r : rows) {
        EXPECT_DOUBLE_EQ(us.RoundToTick(r.price, true), r.buy) << r.name;
        EXPECT_DOUBLE_EQ(us.RoundToTick(r.price, false), r.sell) << r.name;
    }
}

TEST(TickTable, ReadsItsTextAndRefusesWhatIsNoTable) {
    const Result<TickTable> table = ParseTickTable(" 10 = 0.05 ; 0=0.001;1=0.01 ");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->Text(), "0=0.001;1=0.01;10=0.05");
    EXPECT_DOUBLE_EQ(table->RoundToTick(12.52, true), 12.50);
    EXPECT_DOUBLE_EQ(table->RoundToTick(5.005, false), 5.01);
    EXPECT_EQ(TickTable::UsEquities().Text(), "0=0.0001;1=0.01");

    struct Row {
        const char* text;
        const char* error;
    };
    const Row bad[] = {
        {"1=0.01", "The price bands must start with one from 0, for example 0=0.0001;1=0.01."},
        {"0=0.01;x", "The price band \"x\" is not written as lowest price = tick, for example "
                     "1=0.01."},
        {"0=0", "The price band \"0=0\" needs a lowest price of 0 or more and a tick above 0."},
        {"0=0.01;0=0.02", "The price band from 0 is given twice."},
    };
    for (const Row& r : bad) {
        const Result<TickTable> t = ParseTickTable(r.text);
        ASSERT_FALSE(t) << r.text;
        EXPECT_EQ(t.error().message, r.error);
    }
}

} // namespace
} // namespace wicker
