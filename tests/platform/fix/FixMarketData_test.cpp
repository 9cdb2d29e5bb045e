#include "platform/fix/FixMarketData.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

FixQuoteFields FullQuote(bool snapshot) {
    FixQuoteFields q;
    q.symbol = "IBM";
    q.snapshot = snapshot;
    q.bid = 10.5;
    q.bidSize = 300;
    q.ask = 10.55;
    q.askSize = 200;
    q.last = 10.52;
    q.lastSize = 100;
    q.open = 10.1;
    q.close = 10.0;
    q.high = 10.6;
    q.low = 9.9;
    q.vwap = 10.31;
    q.volume = 1234567;
    return q;
}

void ExpectSame(const FixQuoteFields& a, const FixQuoteFields& b) {
    EXPECT_EQ(a.symbol, b.symbol);
    EXPECT_EQ(a.snapshot, b.snapshot);
    EXPECT_EQ(a.bid, b.bid);
    EXPECT_EQ(a.bidSize, b.bidSize);
    EXPECT_EQ(a.ask, b.ask);
    EXPECT_EQ(a.askSize, b.askSize);
    EXPECT_EQ(a.last, b.last);
    EXPECT_EQ(a.lastSize, b.lastSize);
    EXPECT_EQ(a.open, b.open);
    EXPECT_EQ(a.close, b.close);
    EXPECT_EQ(a.high, b.high);
    EXPECT_EQ(a.low, b.low);
    EXPECT_EQ(a.vwap, b.vwap);
    EXPECT_EQ(a.volume, b.volume);
}

TEST(FixMarketData, SnapshotAndIncrementRoundTrip) {
    for (const bool snapshot : {true, false}) {
        SCOPED_TRACE(snapshot ? "W" : "X");
        const FixQuoteFields q = FullQuote(snapshot);
        const FixMessage m = MarketDataMessage(q, "Q-IBM");
        EXPECT_EQ(m.msgType, snapshot ? "W" : "X");
        ASSERT_NE(m.findGroup(268), nullptr);
        EXPECT_EQ(m.findGroup(268)->entries.size(), 9u);
        const std::vector<FixQuoteFields> back = ParseMarketData(m);
        ASSERT_EQ(back.size(), 1u);
        ExpectSame(back[0], q);
    }
}

TEST(FixMarketData, IncrementCarriesOnlyWhatChanged) {
    FixQuoteFields q;
    q.symbol = "MSFT";
    q.bid = 20.0;
    const FixMessage m = MarketDataMessage(q, "Q-MSFT");
    ASSERT_EQ(m.findGroup(268)->entries.size(), 1u);
    const std::vector<FixQuoteFields> back = ParseMarketData(m);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].bid, 20.0);
    EXPECT_FALSE(back[0].bidSize);
    EXPECT_FALSE(back[0].ask);
    EXPECT_FALSE(back[0].volume);
}

TEST(FixMarketData, IncrementNamingSeveralSymbolsGivesOneQuoteEach) {
    FixMessage x;
    x.msgType = "X";
    x.groups.push_back(FixGroup{268,
                                {
                                    {{279, "1"}, {269, "0"}, {55, "A"}, {270, "1.5"}},
                                    {{279, "1"}, {269, "1"}, {55, "B"}, {270, "2.5"}},
                                    {{279, "1"}, {269, "1"}, {55, "A"}, {270, "1.6"}},
                                    {{279, "2"}, {269, "2"}, {55, "A"}, {270, "1.55"}},
                                    {{279, "1"}, {269, "2"}, {55, "B"}, {270, "x"}},
                                    {{279, "1"}, {269, "B"}, {55, "B"}, {271, "-5"}},
                                    {{279, "1"}, {269, "0"}, {270, "9"}},
                                    {{279, "1"}, {55, "A"}, {270, "9"}},
                                }});
    const std::vector<FixQuoteFields> q = ParseMarketData(x);
    ASSERT_EQ(q.size(), 2u);
    EXPECT_EQ(q[0].symbol, "A");
    EXPECT_EQ(q[0].bid, 1.5);
    EXPECT_EQ(q[0].ask, 1.6);
    EXPECT_FALSE(q[0].last) << "a delete carries no value";
    EXPECT_EQ(q[1].symbol, "B");
    EXPECT_EQ(q[1].ask, 2.5);
    EXPECT_FALSE(q[1].last) << "not a number";
    EXPECT_FALSE(q[1].volume) << "negative size";
}

TEST(FixMarketData, OtherMessagesAndEmptyGroupsGiveNothing) {
    FixMessage w;
    w.msgType = "W";
    w.add(55, "IBM");
    EXPECT_TRUE(ParseMarketData(w).empty());
    FixMessage d;
    d.msgType = "D";
    d.groups.push_back(FixGroup{268, {{{269, "0"}, {270, "1"}}}});
    EXPECT_TRUE(ParseMarketData(d).empty());
}

TEST(FixMarketData, RequestAndItsParse) {
    const FixMessage v = MarketDataRequest("IBM", true);
    EXPECT_EQ(v.msgType, "V");
    EXPECT_EQ(*v.find(262), "Q-IBM");
    EXPECT_EQ(*v.find(263), "1");
    ASSERT_NE(v.findGroup(267), nullptr);
    EXPECT_EQ(v.findGroup(267)->entries.size(), 9u);
    const auto s = ParseMarketDataRequest(v);
    ASSERT_TRUE(s);
    EXPECT_TRUE(s->subscribe);
    EXPECT_EQ(s->symbols, std::vector<std::string>{"IBM"});
    EXPECT_EQ(s->mdReqID, "Q-IBM");

    const auto off = ParseMarketDataRequest(MarketDataRequest("IBM", false));
    ASSERT_TRUE(off);
    EXPECT_FALSE(off->subscribe);

    FixMessage bad = v;
    bad.groups.clear();
    EXPECT_FALSE(ParseMarketDataRequest(bad)) << "no symbol";
    FixMessage snapshotOnly = v;
    snapshotOnly.fields[1].value = "0";
    EXPECT_FALSE(ParseMarketDataRequest(snapshotOnly));
}

} // namespace
} // namespace wicker
