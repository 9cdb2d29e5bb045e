#include "trading/orders/ExecutionButtons.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

struct ButtonRow {
    const char* name;
    int index;
    const char* caption;
    const char* side;
    int32_t priceType;
    PriceSource price;
    bool quoteFree; ///< may go without quotes
    bool fixedOpenTif;
};

const ButtonRow Buttons[] = {
    {"BuyBid", 0, "BUY BID", "BUY", 5, PriceSource::Bid, false, false},
    {"BuyAsk", 1, "BUY ASK", "BUY", 5, PriceSource::Ask, false, false},
    {"BuyLast", 2, "BUY LAST", "BUY", 5, PriceSource::Last, false, false},
    {"BuyMkt", 3, "BUY MKT", "B", 1, PriceSource::None, true, false},
    {"SellBid", 4, "SELL BID", "S", 5, PriceSource::Bid, false, false},
    {"SellAsk", 5, "SELL ASK", "S", 5, PriceSource::Ask, false, false},
    {"SellLast", 6, "SELL LAST", "S", 5, PriceSource::Last, false, false},
    {"SellMkt", 7, "SELL MKT", "S", 1, PriceSource::None, true, false},
    {"ShrtBid", 8, "SHRT BID", "T", 5, PriceSource::Bid, false, false},
    {"ShrtAsk", 9, "SHRT ASK", "T", 5, PriceSource::Ask, false, false},
    {"ShrtLast", 10, "SHRT LAST", "T", 5, PriceSource::Last, false, false},
    {"ShrtMkt", 11, "SHRT MKT", "T", 1, PriceSource::None, true, false},
    {"BuyMoc", 12, "BUY MOC", "B", 2, PriceSource::None, true, false},
    {"SellMoc", 13, "SELL MOC", "S", 2, PriceSource::None, true, false},
    {"ShrtMoc", 14, "SHRT MOC", "T", 2, PriceSource::None, true, false},
    {"ShrtMoo", 15, "SHRT MOO", "T", 1, PriceSource::None, true, true},
    {"SellMoo", 16, "SELL MOO", "S", 1, PriceSource::None, true, true},
    {"BuyMoo", 17, "BUY MOO", "B", 1, PriceSource::None, true, true},
    {"BuyPrice", 18, "BUY", "B", 5, PriceSource::LinePrice, false, false},
    {"SellPrice", 19, "SELL", "S", 5, PriceSource::LinePrice, false, false},
    {"ShortPrice", 20, "SHORT", "T", 5, PriceSource::LinePrice, false, false},
};

class ButtonTable : public ::testing::TestWithParam<ButtonRow> {};

TEST_P(ButtonTable, RuleMatchesTheButton) {
    const ButtonRow& b = GetParam();
    const auto rule = ExecuteButtonRuleFor(b.index);
    ASSERT_TRUE(rule.has_value());
    EXPECT_EQ(rule->index, b.index);
    EXPECT_EQ(rule->caption, b.caption);
    EXPECT_EQ(rule->side, b.side);
    EXPECT_EQ(rule->priceType, b.priceType);
    EXPECT_EQ(rule->price, b.price);
    EXPECT_EQ(IsMarketTypeButton(b.index), b.quoteFree);
    EXPECT_EQ(rule->kind == ButtonKind::MarketOnOpen, b.fixedOpenTif);
    EXPECT_EQ(rule->kind == ButtonKind::Limit, rule->price != PriceSource::None);
}

INSTANTIATE_TEST_SUITE_P(AllButtons, ButtonTable, ::testing::ValuesIn(Buttons),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(ExecutionButtons, IndicesOutsideTheArrayHaveNoRuleAndNeedQuotes) {
    for (int index : {-1, 21, 99}) {
        EXPECT_FALSE(ExecuteButtonRuleFor(index).has_value()) << index;
        EXPECT_FALSE(IsMarketTypeButton(index)) << index;
    }
}

TEST(ExecutionButtons, TifTextMapsToItsCode) {
    struct Row {
        const char* text;
        const char* code;
    };
    const Row rows[] = {
        {"AEX", "A"}, {"CHXP", "C"}, {"DAY", "D"}, {"GTC", "G"},  {"GTX", "X"}, {"FOK", "F"},
        {"IOC", "I"}, {"OPG", "O"},  {"OS", "1"},  {"NOW", "N"},  {"EXT", "E"}, {"", "D"},
        {"day", "D"}, {"gtc", "D"},  {"OS ", "D"}, {" IOC", "D"}, {"XYZ", "D"},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(TifCode(r.text), r.code) << '"' << r.text << '"';
    }
}

TEST(ExecutionButtons, ReserveGoesOnlyToTheListedDestinations) {
    for (const char* d :
         {"ARCA", "ATTN", "BRUT", "GNET", "INCA", "INET", "ISLD", "NASDAQ", "NOCI", "TRAC"}) {
        EXPECT_TRUE(TakesReserve(d)) << d;
    }
    for (const char* d : {"NYSE", "", "arca", "ARCA ", "NASD", "AMEX"}) {
        EXPECT_FALSE(TakesReserve(d)) << d;
    }
}

} // namespace
} // namespace wicker
