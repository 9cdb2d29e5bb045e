#pragma once

#include "common/Clock.h"
#include "platform/sim/SimPlatform.h"

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace wicker::test {

/// A field of `into` takes the value of `update` wherever the update carries it.

/// Everything a simulated platform delivered through its event queue, in order.
class SimRecorder : public QVXEvents, public QVXQuoteEvents {
public:
    std::vector<QVXOrderStruct> updates;
    std::vector<QVXRejectStruct> rejects;
    std::vector<QVXQuoteStruct> snaps;
    std::vector<QVXQuoteStruct> quotes;
    std::vector<std::string> journal; // one line per event: the order events arrived in
    int shutdowns = 0;
    /// The quote picture of each symbol as the events built it so far.
    std::map<std::string, QVXQuoteStruct> market;
    /// The picture of the order's symbol when each update arrived (parallel to updates).
    std::vector<QVXQuoteStruct> marketAtUpdate;

    void OnQVXOrderUpdate(const QVXOrderStruct& u) override {
        updates.push_back(u);
        marketAtUpdate.push_back(market[u.Symbol]);
        journal.push_back("update " + std::to_string(u.OrderRecordId) + " " + u.Action);
    }
    void OnQVXOrderReject(const QVXRejectStruct& r) override {
        rejects.push_back(r);
        journal.push_back("reject " + r.ClOrderID);
    }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override {
        journal.push_back("warning " + w.ClOrderID + " " + w.Text);
    }
    void OnQVXShutdown() override {
        ++shutdowns;
        journal.emplace_back("shutdown");
    }
    void OnPlatformStatus(bool online, const std::string&) override {
        journal.emplace_back(online ? "online" : "offline");
    }
    void OnQVXQuoteSnap(const QVXQuoteStruct& q) override {
        snaps.push_back(q);
        market[q.Symbol] = q;
    }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override;

    /// The updates of one order, oldest first.
    std::vector<QVXOrderStruct> of(int32_t recordId) const {
        std::vector<QVXOrderStruct> list;
        for (const QVXOrderStruct& u : updates) {
            if (u.OrderRecordId == recordId) {
                list.push_back(u);
            }
        }
        return list;
    }
};

/// The properties of one order; the defaults make a valid market buy.
struct OrderFields {
    std::string account = "ACCT01";
    std::string side = "B";
    std::string symbol = "IBM";
    int32_t quantity = 100;
    double price = 0;
    int32_t priceType = 1;
    std::string tif = "D";
    std::string destination = "NASDAQ";
    std::string clOrderId = "ACCT01-20240315-57-1";
    std::string memo = "Tech10-57-/bskt";
};

/// Submits one order of `fields` to `platform`; SubmitOrder's answer.
inline int32_t Submit(Platform& platform, const OrderFields& fields) {
    auto order = platform.CreateOrder();
    order->setMemo(fields.memo);
    order->setAccount(fields.account);
    order->setSymbol(fields.symbol);
    order->setQuantity(fields.quantity);
    order->setDestination(fields.destination);
    order->setTif(fields.tif);
    order->setPriceType(fields.priceType);
    order->setSide(fields.side);
    order->setLmtPrice(fields.price);
    order->setClOrderID(fields.clOrderId);
    return order->SubmitOrder();
}

/// A simulated platform on a manual clock, started, and a recorder to drain it into.
class SimDesk {
public:
    explicit SimDesk(SimSettings settings = {}, bool start = true)
        : clock(Clock::TimePoint{std::chrono::seconds(1710513000)}),
          platform(std::move(settings), clock, SimDriver::Manual) {
        if (start) {
            platform.Start();
        }
    }

    int32_t send(const OrderFields& fields) { return Submit(platform, fields); }

    void drain() { platform.Events().drain(events, events); }

    void run(std::chrono::milliseconds by) {
        platform.advance(by);
        drain();
    }

    ManualClock clock;
    SimPlatform platform;
    SimRecorder events;
};

/// A started desk with IBM's quotes drained: seed 7, clips of 1000 shares, auctions 3 s
/// after the order, "HALT" halted.
class IbmDeskTest : public ::testing::Test {
protected:
    IbmDeskTest() : desk(Settings()) {
        desk.platform.RegisterSymbol("IBM", "*");
        desk.drain();
    }
    static SimSettings Settings() {
        SimSettings s;
        s.seed = 7;
        s.clipSize = 1000;
        s.fillDelayMs = 3000;
        s.halted = {"HALT"};
        return s;
    }
    const QVXQuoteStruct& quote() { return desk.events.market["IBM"]; }

    SimDesk desk;
};

inline void SimRecorder::OnQVXQuoteUpdate(const QVXQuoteStruct& q) {
    quotes.push_back(q);
    PlatformEventQueue::MergeQuote(market[q.Symbol], q);
}

} // namespace wicker::test
