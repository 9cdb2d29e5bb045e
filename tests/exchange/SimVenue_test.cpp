#include "exchange/SimVenue.h"

#include <cmath>
#include <map>
#include <set>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using namespace std::chrono_literals;

class RecordingSink : public ExchangeVenue::Sink {
public:
    std::map<int64_t, std::vector<std::pair<int32_t, double>>> fills;
    std::set<int64_t> expired;
    void onFill(int64_t key, int32_t shares, double price) override {
        fills[key].emplace_back(shares, price);
    }
    void onExpired(int64_t key) override { expired.insert(key); }
    int32_t filled(int64_t key) const {
        int32_t n = 0;
        if (const auto it = fills.find(key); it != fills.end()) {
            for (const auto& f : it->second) {
                n += f.first;
            }
        }
        return n;
    }
};

ExchangeOrderRequest Order(const std::string& side, int32_t qty, int32_t priceType, double price,
                           const std::string& tif = "D") {
    ExchangeOrderRequest r;
    r.clOrdID = "C1";
    r.account = "ACCT01";
    r.side = side;
    r.symbol = "IBM";
    r.quantity = qty;
    r.priceType = priceType;
    r.price = price;
    r.tif = tif;
    r.destination = "NYSE";
    return r;
}

class SimVenueTest : public ::testing::Test {
protected:
    SimVenueTest() : venue(Settings(), t0) {}
    static SimSettings Settings() {
        SimSettings s;
        s.seed = 7;
        s.updatesPerSecond = 10;
        s.clipSize = 100;
        s.fillDelayMs = 500;
        return s;
    }
    /// Moves the market on in steps of 100 ms until `done` or a minute has passed.
    template <class Pred> bool RunUntil(Pred done) {
        for (int step = 0; step < 600 && !done(); ++step) {
            now += 100ms;
            venue.advance(now, sink);
        }
        return done();
    }

    std::chrono::steady_clock::time_point t0{std::chrono::seconds(1000)};
    std::chrono::steady_clock::time_point now = t0;
    SimVenue venue;
    RecordingSink sink;
};

TEST_F(SimVenueTest, AQuoteIsAWholePictureAndTheSameForTheSameSeed) {
    const FixQuoteFields q = venue.quote("IBM");
    ASSERT_TRUE(q.bid && q.ask && q.last && q.close && q.bidSize && q.askSize && q.volume);
    EXPECT_TRUE(q.snapshot);
    EXPECT_GT(*q.bid, 0);
    EXPECT_LT(*q.bid, *q.ask);
    SimVenue twin(Settings(), t0);
    const FixQuoteFields r = twin.quote("IBM");
    EXPECT_EQ(*r.bid, *q.bid);
    EXPECT_EQ(*r.ask, *q.ask);
}

TEST_F(SimVenueTest, AMarketOrderFillsInClipsThatAddUpAtTheTouch) {
    const FixQuoteFields q = venue.quote("IBM");
    venue.accept(1, Order("B", 350, 1, 0), 350, sink);
    ASSERT_TRUE(RunUntil([&] { return sink.filled(1) == 350; }));
    EXPECT_EQ(sink.fills[1].size(), 4u) << "100 + 100 + 100 + 50";
    for (const auto& [shares, price] : sink.fills[1]) {
        EXPECT_LE(shares, 100);
        EXPECT_NEAR(price, *q.ask, *q.ask * 0.05) << "a buy fills near the offer";
    }
    EXPECT_TRUE(sink.expired.empty());
    EXPECT_FALSE(venue.cancel(1)) << "a filled order is no longer on the market";
}

TEST_F(SimVenueTest, ARestingLimitWaitsAndCancelsOnce) {
    const FixQuoteFields q = venue.quote("IBM");
    venue.accept(2, Order("B", 100, 5, std::round(*q.bid * 50) / 100), 100, sink); // half
    now += 2s;
    venue.advance(now, sink);
    EXPECT_EQ(sink.filled(2), 0);
    EXPECT_TRUE(venue.cancel(2));
    EXPECT_FALSE(venue.cancel(2));
    EXPECT_FALSE(venue.cancel(99)) << "unknown order";
}

TEST_F(SimVenueTest, AnImmediateOrderThatCannotTradeExpiresAtOnce) {
    const FixQuoteFields q = venue.quote("IBM");
    venue.accept(3, Order("S", 100, 5, std::round(*q.ask * 200) / 100, "I"), 100, sink);
    EXPECT_EQ(sink.expired.count(3), 1u);
    EXPECT_EQ(sink.filled(3), 0);
}

TEST_F(SimVenueTest, MarketOnCloseFillsAfterTheDelay) {
    venue.accept(4, Order("S", 100, 2, 0), 100, sink);
    EXPECT_EQ(sink.filled(4), 0);
    ASSERT_TRUE(RunUntil([&] { return sink.filled(4) == 100; }));
    EXPECT_GE(now - t0, 500ms);
}

TEST_F(SimVenueTest, AnOrderTheSimulatorRefusesExpires) {
    venue.accept(5, Order("B", 0, 1, 0), 0, sink);
    EXPECT_EQ(sink.expired.count(5), 1u);
}

} // namespace
} // namespace wicker
