// Quote updates per second that the simulator makes for 5,000 registered symbols and
// delivers through the platform's event queue to a handler that counts them, all on one
// thread. Two baselines in the same run take the same records: a bare std::vector push and
// walk ("vector"), and the event queue alone ("queue"). The summary prints the simulator's
// rate against the 100,000 updates/s target and against both baselines.
#include "common/Clock.h"
#include "platform/sim/SimPlatform.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

constexpr int kSymbols = 5000;
constexpr double kTarget = 100000;

std::vector<std::string> SymbolNames() {
    // Two to five capital letters, as listed and OTC symbols look.
    std::vector<std::string> names;
    for (int i = 0; static_cast<int>(names.size()) < kSymbols; ++i) {
        std::string name;
        int n = i;
        do {
            name += static_cast<char>('A' + n % 26);
            n /= 26;
        } while (n > 0);
        if (name.size() >= 2) {
            names.push_back(name);
        }
    }
    return names;
}

class Counter final : public QVXEvents, public QVXQuoteEvents {
public:
    int64_t quotes = 0;
    int64_t other = 0;
    void OnQVXOrderUpdate(const QVXOrderStruct&) override { ++other; }
    void OnQVXOrderReject(const QVXRejectStruct&) override { ++other; }
    void OnQVXOrderWarning(const QVXOrderWarning&) override { ++other; }
    void OnQVXShutdown() override { ++other; }
    void OnPlatformStatus(bool, const std::string&) override { ++other; }
    void OnQVXQuoteSnap(const QVXQuoteStruct&) override { ++other; }
    void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override {
        quotes += 1;
        benchmark::DoNotOptimize(q.Fields);
    }
};

// A started simulator with every symbol registered and its snapshots drained.
struct Market {
    ManualClock clock;
    SimPlatform platform{SimSettings{}, clock, SimDriver::Manual};
    Counter counter;

    Market() {
        for (const std::string& s : SymbolNames()) {
            platform.RegisterSymbol(s, "*");
        }
        platform.Start();
        platform.Events().drain(counter, counter);
    }
};

// The update records of one virtual second of the simulated market, for the baselines.
std::vector<QVXQuoteStruct> RecordedUpdates() {
    struct Keep final : QVXEvents, QVXQuoteEvents {
        std::vector<QVXQuoteStruct> quotes;
        void OnQVXOrderUpdate(const QVXOrderStruct&) override {}
        void OnQVXOrderReject(const QVXRejectStruct&) override {}
        void OnQVXOrderWarning(const QVXOrderWarning&) override {}
        void OnQVXShutdown() override {}
        void OnPlatformStatus(bool, const std::string&) override {}
        void OnQVXQuoteSnap(const QVXQuoteStruct&) override {}
        void OnQVXQuoteUpdate(const QVXQuoteStruct& q) override { quotes.push_back(q); }
    } keep;
    Market market;
    market.platform.advance(std::chrono::seconds(1));
    market.platform.Events().drain(keep, keep);
    return keep.quotes;
}

void BM_Simulator(benchmark::State& state) {
    Market market;
    for (auto _ : state) {
        // 100 ms of market: about 2,000 updates at the default rate.
        market.platform.advance(std::chrono::milliseconds(100));
        market.platform.Events().drain(market.counter, market.counter);
    }
    state.counters["updates/s"] =
        benchmark::Counter(static_cast<double>(market.counter.quotes), benchmark::Counter::kIsRate);
    state.SetItemsProcessed(market.counter.quotes);
}

void BM_Vector(benchmark::State& state) {
    const std::vector<QVXQuoteStruct> records = RecordedUpdates();
    Counter counter;
    QVXQuoteEvents& handler = counter;
    std::vector<QVXQuoteStruct> pending;
    for (auto _ : state) {
        for (const QVXQuoteStruct& q : records) {
            pending.push_back(q);
        }
        for (const QVXQuoteStruct& q : pending) {
            handler.OnQVXQuoteUpdate(q);
        }
        pending.clear();
    }
    state.counters["updates/s"] =
        benchmark::Counter(static_cast<double>(counter.quotes), benchmark::Counter::kIsRate);
    state.SetItemsProcessed(counter.quotes);
}

void BM_Queue(benchmark::State& state) {
    const std::vector<QVXQuoteStruct> records = RecordedUpdates();
    Counter counter;
    PlatformEventQueue queue;
    for (auto _ : state) {
        for (const QVXQuoteStruct& q : records) {
            queue.push(PlatformEventQueue::QuoteUpdate{q});
        }
        queue.drain(counter, counter);
    }
    state.counters["updates/s"] =
        benchmark::Counter(static_cast<double>(counter.quotes), benchmark::Counter::kIsRate);
    state.SetItemsProcessed(counter.quotes);
}

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (!run.error_occurred && (run.run_type == Run::RT_Iteration || median)) {
                const auto it = run.counters.find("updates/s");
                if (it != run.counters.end()) {
                    m_rates[run.run_name.function_name] = it->second.value;
                }
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    double Rate(const std::string& name) const {
        const auto it = m_rates.find(name);
        return it == m_rates.end() ? 0 : it->second;
    }

private:
    std::map<std::string, double> m_rates;
};

void PrintSummary(const SummaryReporter& r) {
    const double sim = r.Rate("simulator");
    const double vector = r.Rate("vector");
    const double queue = r.Rate("queue");
    std::printf("\nQuote updates for %d symbols, made and delivered on one thread (CPU time)\n",
                kSymbols);
    std::printf("  simulator       %12.0f updates/s  %6.2fx the %.0f/s target\n", sim,
                sim / kTarget, kTarget);
    if (vector > 0) {
        std::printf("  vector baseline %12.0f updates/s  simulator = %.3fx of it\n", vector,
                    sim / vector);
    }
    if (queue > 0) {
        std::printf("  queue baseline  %12.0f updates/s  simulator = %.3fx of it\n", queue,
                    sim / queue);
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("simulator", BM_Simulator)->MinTime(0.5);
    benchmark::RegisterBenchmark("vector", BM_Vector)->MinTime(0.5);
    benchmark::RegisterBenchmark("queue", BM_Queue)->MinTime(0.5);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintSummary(reporter);
    benchmark::Shutdown();
    return 0;
}
