// One click of BUY BID on a 5,000-line basket through the real TradingDesk and
// BasketExecution with the simulator's SubmitOrder behind it, from the click to the return
// of the last SubmitOrder. In the same run: the whole-basket check and the pre-trade limits
// alone, on the same lines with every limit switched on (none broken). The summary says
// what share of the click they take and what they add to the rest of it.
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/sim/SimPlatform.h"
#include "trading/TradingDesk.h"
#include "trading/orders/SendLimits.h"
#include "trading/orders/SendPlan.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;
namespace fs = std::filesystem;

constexpr int Lines = 5000;
constexpr int BuyBid = 0;

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Ok; }
};

/// Four capitals per line, all distinct: tickers the simulator takes.
std::string Ticker(int i) {
    std::string s(4, 'A');
    for (int k = 3; k >= 0; --k, i /= 26) {
        s[static_cast<size_t>(k)] = static_cast<char>('A' + i % 26);
    }
    return s;
}

/// A data folder of its own, removed at the end.
struct Folder {
    fs::path path = fs::temp_directory_path() / ("wicker-bench-send-" + std::to_string(getpid()));
    Folder() { fs::create_directories(path); }
    ~Folder() {
        std::error_code ec;
        fs::remove_all(path, ec);
    }
};

/// A started simulator, a loaded desk with the 5,000 lines quoted, and every limit on at
/// values this basket does not break.
struct Desk {
    Folder folder;
    ManualClock clock{std::chrono::system_clock::now()};
    SimPlatform platform{SimSettings{}, clock, SimDriver::Manual};
    SilentBoxes boxes;
    TradingDesk desk{platform, boxes, clock, folder.path};

    Desk() {
        if (!desk.FormLoad()) {
            std::fprintf(stderr, "the desk did not load\n");
            std::exit(1);
        }
        platform.Start();
        PasteTable table;
        for (int i = 0; i < Lines; ++i) {
            table.push_back({Ticker(i), std::to_string(100 + i % 900), i % 2 ? "NASDAQ" : "NYSE"});
        }
        desk.PasteLines(table);
        for (int tick = 0; tick < 10; ++tick) {
            platform.advance(std::chrono::milliseconds(200));
            desk.DrainPlatformEvents();
            desk.Timer200ms();
        }

        Settings& s = desk.settings();
        s.maxOrderShares = 1'000'000;
        s.maxOrderValue = 1e9;
        s.maxSendValue = 1e12;
        s.priceBandPercent = 50;
        s.repeatSendSeconds = 1; // the clock moves a minute between clicks
    }
};

Desk& TheDesk() {
    static Desk d;
    return d;
}

void BM_ClickSend(benchmark::State& state) {
    Desk& d = TheDesk();
    ExecuteReport report;
    for (auto _ : state) {
        state.PauseTiming();
        d.desk.DrainPlatformEvents();
        d.clock.set(d.clock.now() + std::chrono::minutes(1));
        d.desk.Sequence().setBasketSeq(1);
        state.ResumeTiming();
        report = d.desk.ExecuteBasket(BuyBid, "ACCT01");
    }
    // A line whose simulated quote lacks a side at that moment is listed, not sent.
    state.counters["sent"] = report.ordersSubmitted;
    if (report.outcome != ExecuteOutcome::Sent || report.ordersSubmitted < Lines * 9 / 10 ||
        !report.submitErrors.empty()) {
        std::fprintf(stderr, "outcome %d, %d submitted, %zu not sent (%s), %zu refused\n",
                     static_cast<int>(report.outcome), report.ordersSubmitted,
                     report.notSent.size(), report.notSent.empty() ? "" : report.notSent[0].c_str(),
                     report.submitErrors.size());
        state.SkipWithError("not every line was sent");
    }
}

void BM_ChecksAlone(benchmark::State& state) {
    Desk& d = TheDesk();
    std::vector<ExecutionLine> lines = d.desk.Stocks().ExecutionLines();
    for (ExecutionLine& l : lines) { // the quotes' own values, as the desk hands them over
        l.bidValue = std::stod(l.bid);
        l.askValue = std::stod(l.ask);
        l.lastValue = std::stod(l.last);
    }
    const TickTable ticks = TickTable::UsEquities();
    const Settings& s = d.desk.settings();
    const SendLimits limits{s.maxOrderShares, s.maxOrderValue, s.maxSendValue, s.priceBandPercent,
                            s.repeatSendSeconds};
    for (auto _ : state) {
        const SendPlan plan = PlanSend(BuyBid, lines, ticks);
        benchmark::DoNotOptimize(CheckSendLimits(limits, BuyBid, lines, plan, 60.0));
    }
}

BENCHMARK(BM_ClickSend)->Unit(benchmark::kMicrosecond)->Iterations(20);
BENCHMARK(BM_ChecksAlone)->Unit(benchmark::kMicrosecond);

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            times[run.benchmark_name()] = run.GetAdjustedRealTime();
            if (const auto sent = run.counters.find("sent"); sent != run.counters.end()) {
                sentLines = sent->second.value;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
    double sentLines = 0;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    double click = 0;
    double checks = 0;
    for (const auto& [name, t] : reporter.times) {
        if (name.rfind("BM_ClickSend", 0) == 0) {
            click = t;
        } else if (name.rfind("BM_ChecksAlone", 0) == 0) {
            checks = t;
        }
    }
    if (click > checks && checks > 0) {
        std::printf("\nSummary (same run): BUY BID on 5,000 lines (%.0f sent) through TradingDesk "
                    "into the simulator, click to last SubmitOrder %.0f us; of it the "
                    "whole-basket check and the five limits on the same lines %.0f us; they add "
                    "%.1f%% to the rest of the send (target <= 5%%)\n",
                    reporter.sentLines, click, checks, 100.0 * checks / (click - checks));
    }
    benchmark::Shutdown();
    return 0;
}
