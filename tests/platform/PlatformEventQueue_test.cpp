#include "platform/PlatformEventQueue.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace wicker {
namespace {

// Writes every delivered event as one short line, so a test compares the whole sequence.
class Journal : public QVXEvents, public QVXQuoteEvents {
public:
    std::vector<std::string> lines;
    std::vector<QVXQuoteStruct> updates;
    PlatformEventQueue* pushOnUpdate = nullptr;

    void OnQVXOrderUpdate(const QVXOrderStruct& e) override {
        lines.push_back("update " + e.ClOrderID);
        if (pushOnUpdate != nullptr) {
            QVXRejectStruct r;
            r.ClOrderID = "from-handler";
            pushOnUpdate->push(r);
        }
    }
    void OnQVXOrderReject(const QVXRejectStruct& e) override {
        lines.push_back("reject " + e.ClOrderID);
    }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override {
        lines.push_back("warning " + w.ClOrderID);
    }
    void OnQVXShutdown() override { lines.emplace_back("shutdown"); }
    void OnPlatformStatus(bool online, const std::string& text) override {
        lines.push_back(std::string(online ? "up " : "down ") + text);
    }
    void OnQVXQuoteSnap(const QVXQuoteStruct& q) override { lines.push_back("snap " + q.Symbol); }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override {
        lines.push_back("quote " + q.Symbol);
        updates.push_back(q);
    }
};

QVXOrderStruct Update(const std::string& id) {
    QVXOrderStruct u;
    u.ClOrderID = id;
    return u;
}

QVXQuoteStruct Quote(const std::string& symbol) {
    QVXQuoteStruct q;
    q.Symbol = symbol;
    return q;
}

TEST(PlatformEventQueue, DeliversEveryKindInPushOrder) {
    PlatformEventQueue queue;
    Journal journal;
    queue.push(PlatformEventQueue::Status{true, "logged on"});
    queue.push(PlatformEventQueue::QuoteSnap{Quote("IBM")});
    queue.push(Update("1"));
    queue.push(PlatformEventQueue::QuoteUpdate{Quote("IBM")});
    queue.push(QVXRejectStruct{"2", "B", 100, "IBM", 103, ""});
    queue.push(PlatformEventQueue::Shutdown{});
    EXPECT_EQ(queue.drain(journal, journal), 6u);
    EXPECT_EQ(journal.lines, (std::vector<std::string>{"up logged on", "snap IBM", "update 1",
                                                       "quote IBM", "reject 2", "shutdown"}));
    EXPECT_EQ(queue.drain(journal, journal), 0u);
}

void FillClOrderId(QVXOrderStruct& r, const std::string& id) {
    r.ClOrderID = id;
}

// Updates written in place reuse the records of drains before the last one: none may show a
// field of the record's earlier use (a whole pushed update's, here its memo).
TEST(PlatformEventQueue, AnUpdateWrittenInPlaceShowsNothingOfAnEarlierOne) {
    PlatformEventQueue queue;
    struct Seen : Journal {
        std::vector<QVXOrderStruct> orders;
        void OnQVXOrderUpdate(const QVXOrderStruct& e) override { orders.push_back(e); }
    } seen;
    QVXOrderStruct whole = Update("whole");
    whole.Memo = "a memo";
    whole.Moo = true;
    // Per drain: whole updates and updates written in place, in push order.
    const std::vector<std::vector<std::string>> drains{
        {"whole", "a"}, {"b", "c"}, {"d", "whole"}, {"whole", "e"}};
    for (const auto& pushes : drains) {
        for (const std::string& id : pushes) {
            if (id == "whole") {
                queue.push(whole);
            } else {
                queue.pushOrderUpdate(&FillClOrderId, id);
            }
        }
        queue.push(PlatformEventQueue::Status{true, "up"});
        EXPECT_EQ(queue.drain(seen, seen), pushes.size() + 1);
    }
    std::vector<std::string> ids;
    for (const QVXOrderStruct& u : seen.orders) {
        ids.push_back(u.ClOrderID);
        EXPECT_EQ(u.Memo, u.ClOrderID == "whole" ? "a memo" : "") << u.ClOrderID;
        EXPECT_EQ(u.Moo, u.ClOrderID == "whole") << u.ClOrderID;
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"whole", "a", "b", "c", "d", "whole", "whole", "e"}));
}

TEST(PlatformEventQueue, UpdatesOfASymbolMergeOnlyWithinARunOfUpdates) {
    namespace F = QVXQuoteField;
    const auto update = [](const std::string& symbol, uint32_t fields, double price) {
        QVXQuoteStruct q = Quote(symbol);
        q.Fields = fields;
        q.BidPrice = q.AskPrice = q.LastPrice = price;
        return PlatformEventQueue::QuoteUpdate{q};
    };
    PlatformEventQueue queue;
    queue.setQuoteConflation(true);
    Journal journal;
    queue.push(update("IBM", F::Bid | F::Last, 1));
    queue.push(update("MSFT", F::Bid, 2));
    queue.push(update("IBM", F::Ask | F::Last, 3)); // merged into the first
    queue.push(Update("1"));
    queue.push(update("IBM", F::Bid, 4)); // after an order: an event of its own
    queue.push(PlatformEventQueue::QuoteSnap{Quote("IBM")});
    queue.push(update("IBM", F::Bid, 5));
    EXPECT_EQ(queue.size(), 6u);
    queue.drain(journal, journal);
    EXPECT_EQ(journal.lines, (std::vector<std::string>{"quote IBM", "quote MSFT", "update 1",
                                                       "quote IBM", "snap IBM", "quote IBM"}));
    const QVXQuoteStruct& merged = journal.updates[0];
    EXPECT_EQ(merged.Fields, F::Bid | F::Ask | F::Last);
    EXPECT_EQ(merged.BidPrice, 1); // not carried by the later update: kept
    EXPECT_EQ(merged.AskPrice, 3);
    EXPECT_EQ(merged.LastPrice, 3);
    // A drained run is over: the next update is not merged into a delivered one.
    queue.push(update("IBM", F::Bid, 6));
    queue.drain(journal, journal);
    EXPECT_EQ(journal.updates.back().BidPrice, 6);
}

TEST(PlatformEventQueue, OneWakeUpPerBurstAndAgainAfterADrain) {
    PlatformEventQueue queue;
    Journal journal;
    int wakes = 0;
    queue.setWakeUp([&] { ++wakes; });
    for (int i = 0; i < 100; ++i) {
        queue.push(Update(std::to_string(i)));
    }
    EXPECT_EQ(wakes, 1);
    queue.drain(journal, journal);
    queue.push(Update("next"));
    EXPECT_EQ(wakes, 2);
}

TEST(PlatformEventQueue, ABoundedDrainKeepsOrderAndAsksToComeBack) {
    PlatformEventQueue queue;
    Journal journal;
    int wakes = 0;
    queue.setWakeUp([&] { ++wakes; });
    queue.push(Update("1"));
    queue.push(Update("2"));
    queue.push(Update("3"));
    EXPECT_EQ(queue.drain(journal, journal, 2), 2u);
    EXPECT_EQ(wakes, 2); // the leftover asked for another drain
    queue.push(Update("4"));
    EXPECT_EQ(wakes, 2); // already asked
    EXPECT_EQ(queue.size(), 2u);
    queue.drain(journal, journal);
    queue.drain(journal, journal);
    EXPECT_EQ(journal.lines,
              (std::vector<std::string>{"update 1", "update 2", "update 3", "update 4"}));
    queue.push(Update("5"));
    EXPECT_EQ(wakes, 3);
}

TEST(PlatformEventQueue, EventsPushedByAHandlerWaitForTheNextDrain) {
    PlatformEventQueue queue;
    Journal journal;
    journal.pushOnUpdate = &queue;
    queue.push(Update("1"));
    EXPECT_EQ(queue.drain(journal, journal), 1u);
    EXPECT_EQ(journal.lines, (std::vector<std::string>{"update 1"}));
    journal.pushOnUpdate = nullptr;
    EXPECT_EQ(queue.drain(journal, journal), 1u);
    EXPECT_EQ(journal.lines.back(), "reject from-handler");
}

TEST(PlatformEventQueue, PushesFromOtherThreadsArriveWholeAndInPerThreadOrder) {
    PlatformEventQueue queue;
    Journal journal;
    constexpr int kThreads = 4;
    constexpr int kEach = 5000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&queue, t] {
            for (int i = 0; i < kEach; ++i) {
                queue.push(Update(std::to_string(t) + ":" + std::to_string(i)));
            }
        });
    }
    std::size_t delivered = 0;
    while (delivered < std::size_t{kThreads} * kEach) {
        delivered += queue.drain(journal, journal, 1000);
    }
    for (auto& thread : threads) {
        thread.join();
    }
    std::vector<int> next(kThreads, 0);
    for (const std::string& line : journal.lines) {
        const auto colon = line.find(':');
        const int t = std::stoi(line.substr(7, colon - 7));
        ASSERT_EQ(std::stoi(line.substr(colon + 1)), next[t]) << line;
        ++next[t];
    }
    EXPECT_EQ(next, std::vector<int>(kThreads, kEach));
}

} // namespace
} // namespace wicker
