// One click of an order button on a 5,000-line basket, from the click to the return of the
// last SubmitOrder, against a bare loop that fills and submits the same 5,000 order
// objects with their values ready-made. The order objects keep what they are told and
// SubmitOrder hands a copy to the platform's queue, so the ratio shows what the send's own
// checks, conversions and numbering cost per order.
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "trading/orders/BasketExecution.h"

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

struct SentOrder {
    std::string account, side, symbol, clOrderId, tif, destination, memo;
    int32_t quantity = 0, priceType = 0, maxFloor = 0;
    double lmtPrice = 0;
};

/// The platform's side of SubmitOrder: the order joins the outgoing queue.
struct OutgoingQueue {
    std::vector<SentOrder> sent;
};

class QueuedTicket : public QVXOrder {
public:
    explicit QueuedTicket(OutgoingQueue& queue) : m_queue(queue) {}
    std::string Account() const override { return m_o.account; }
    void setAccount(std::string v) override { m_o.account = std::move(v); }
    std::string Side() const override { return m_o.side; }
    void setSide(std::string v) override { m_o.side = std::move(v); }
    std::string Symbol() const override { return m_o.symbol; }
    void setSymbol(std::string v) override { m_o.symbol = std::move(v); }
    int32_t Quantity() const override { return m_o.quantity; }
    void setQuantity(int32_t v) override { m_o.quantity = v; }
    double LmtPrice() const override { return m_o.lmtPrice; }
    void setLmtPrice(double v) override { m_o.lmtPrice = v; }
    int32_t PriceType() const override { return m_o.priceType; }
    void setPriceType(int32_t v) override { m_o.priceType = v; }
    std::string ClOrderID() const override { return m_o.clOrderId; }
    void setClOrderID(std::string v) override { m_o.clOrderId = std::move(v); }
    std::string Tif() const override { return m_o.tif; }
    void setTif(std::string v) override { m_o.tif = std::move(v); }
    std::string Destination() const override { return m_o.destination; }
    void setDestination(std::string v) override { m_o.destination = std::move(v); }
    int32_t MaxFloor() const override { return m_o.maxFloor; }
    void setMaxFloor(int32_t v) override { m_o.maxFloor = v; }
    std::string Memo() const override { return m_o.memo; }
    void setMemo(std::string v) override { m_o.memo = std::move(v); }
    int32_t SubmitOrder() override {
        m_queue.sent.push_back(m_o);
        return 0;
    }

private:
    OutgoingQueue& m_queue;
    SentOrder m_o;
};

class QueuedTickets : public QVXOrderFactory {
public:
    std::unique_ptr<QVXOrder> CreateOrder() override {
        return std::make_unique<QueuedTicket>(queue);
    }
    OutgoingQueue queue;
};

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Ok; }
};

class NullStore : public SequenceStore {
public:
    Result<void> SaveBasketNum(int16_t) override { return {}; }
};

constexpr int Lines = 5000;

std::vector<ExecutionLine> Basket() {
    std::vector<ExecutionLine> lines(Lines);
    for (int i = 0; i < Lines; ++i) {
        ExecutionLine& l = lines[static_cast<size_t>(i)];
        l.checked = true;
        l.symbol = "SYM" + std::to_string(i);
        l.bid = "10.00";
        l.ask = "10.02";
        l.last = "10.01";
        l.quantity = std::to_string(100 + i % 900);
        l.destination = i % 2 ? "NASDAQ" : "NYSE";
        l.modifier = "0.01";
        l.tif = "DAY";
    }
    return lines;
}

void BM_ClickSend(benchmark::State& state) {
    const auto lines = Basket();
    QueuedTickets tickets;
    SendSequence sequence(1, 1);
    NullStore store;
    SilentBoxes boxes;
    SystemClock clock;
    BasketExecution execution(tickets, sequence, store, boxes, clock);
    const ExecutionInputs inputs{"ACCT01", "1", "Bench"};
    ExecutionSettings settings;
    settings.reserveEnabled = true;
    for (auto _ : state) {
        state.PauseTiming();
        tickets.queue.sent.clear();
        tickets.queue.sent.reserve(Lines);
        sequence.setBasketSeq(1);
        state.ResumeTiming();
        execution.cmdExecuteBasket_Click(0, lines, inputs, settings);
    }
}

void BM_BareLoop(benchmark::State& state) {
    // The same orders with every value ready.
    std::vector<SentOrder> ready(Lines);
    for (int i = 0; i < Lines; ++i) {
        SentOrder& o = ready[static_cast<size_t>(i)];
        o.memo = "Bench-1-/bskt";
        o.account = "ACCT01";
        o.symbol = "SYM" + std::to_string(i);
        o.quantity = 100 + i % 900;
        o.destination = i % 2 ? "NASDAQ" : "NYSE";
        o.maxFloor = 100;
        o.tif = "D";
        o.priceType = 5;
        o.side = "BUY";
        o.lmtPrice = 10.01;
        o.clOrderId = "ACCT01-20240315-1-" + std::to_string(i + 1);
    }
    QueuedTickets tickets;
    for (auto _ : state) {
        state.PauseTiming();
        tickets.queue.sent.clear();
        tickets.queue.sent.reserve(Lines);
        state.ResumeTiming();
        for (const SentOrder& o : ready) {
            auto t = tickets.CreateOrder();
            t->setMemo(o.memo);
            t->setAccount(o.account);
            t->setSymbol(o.symbol);
            t->setQuantity(o.quantity);
            t->setDestination(o.destination);
            t->setMaxFloor(o.maxFloor);
            t->setTif(o.tif);
            t->setPriceType(o.priceType);
            t->setSide(o.side);
            t->setLmtPrice(o.lmtPrice);
            t->setClOrderID(o.clOrderId);
            benchmark::DoNotOptimize(t->SubmitOrder());
        }
    }
}

BENCHMARK(BM_ClickSend)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareLoop)->Unit(benchmark::kMicrosecond);

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            times[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double click = reporter.times["BM_ClickSend"];
    const double bare = reporter.times["BM_BareLoop"];
    if (click > 0 && bare > 0) {
        std::printf("\nSummary (same run): 5000-line click %.0f us, bare loop %.0f us, "
                    "ratio %.2f (target <= 1.2 with the simulator's SubmitOrder behind both)\n",
                    click, bare, click / bare);
    }
    benchmark::Shutdown();
    return 0;
}
