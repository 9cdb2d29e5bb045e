// The main screen at the size of a big basket: CalcBasket over 5,000 lines, and one
// Timer200ms tick after 200 ms of a quote storm of 50,000 updates a second over 5,000
// symbols. Each is set against a plain copy of the same cells measured in this run.
#include "common/Conversions.h"
#include "trading/basket/BasketCalculation.h"
#include "trading/basket/StockList.h"
#include "trading/quotes/QuoteBoard.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

constexpr int Lines = 5000;
constexpr int UpdatesPerTick = 10000; // 50,000 a second for 200 ms

std::string SymbolOf(int i) {
    return "S" + std::to_string(i);
}

StockList MakeBasket() {
    std::vector<StockLine> lines(Lines);
    for (int i = 0; i < Lines; ++i) {
        StockLine& line = lines[static_cast<size_t>(i)];
        line.cells[stkSymbol] = SymbolOf(i);
        line.cells[stkBasketQty] = std::to_string(50 + (i * 37) % 2000);
        line.cells[stkLast] = NumberText(5 + (i % 400) * 0.25);
        line.cells[stkDest] = "NYSE";
    }
    StockList list;
    list.Assign(std::move(lines));
    return list;
}

void BM_CalcBasket(benchmark::State& state) {
    StockList lines = MakeBasket();
    std::vector<float> notional;
    const char* multipliers[] = {"1", "2"};
    int round = 0;
    for (auto _ : state) {
        // Alternate the multiplier so that every line's quantity really changes.
        benchmark::DoNotOptimize(
            CalcBasket(lines, {multipliers[round++ & 1], "100"}, 100, notional));
        lines.FlushChanges();
    }
}

/// Baseline: the order-quantity cells written from texts made beforehand.
void BM_CopyQuantityCells(benchmark::State& state) {
    StockList lines = MakeBasket();
    std::vector<std::string> texts[2];
    for (int i = 0; i < Lines; ++i) {
        texts[0].push_back(std::to_string(100 + i));
        texts[1].push_back(std::to_string(200 + i));
    }
    int round = 0;
    for (auto _ : state) {
        const auto& t = texts[round++ & 1];
        for (int i = 0; i < Lines; ++i) {
            lines.SetCell(i, stkOrderQty, t[static_cast<size_t>(i)]);
        }
        lines.FlushChanges();
    }
}

/// The storm's records, made beforehand: bid, ask, last and volume of scattered symbols.
std::vector<QVXQuoteStruct> Storm(int round) {
    std::vector<QVXQuoteStruct> records(UpdatesPerTick);
    uint32_t x = 12345u + static_cast<uint32_t>(round);
    for (auto& q : records) {
        x = x * 1664525u + 1013904223u;
        const int i = static_cast<int>((x >> 8) % Lines);
        q.Symbol = SymbolOf(i);
        q.Fields = QVXQuoteField::Bid | QVXQuoteField::Ask | QVXQuoteField::Last |
                   QVXQuoteField::CumVolume;
        const double p = 10 + (x >> 20) % 1000 * 0.01;
        q.BidPrice = p - 0.01;
        q.AskPrice = p + 0.01;
        q.LastPrice = p;
        q.CumVolume = static_cast<int32_t>(x >> 12);
    }
    return records;
}

struct QuoteSetup {
    StockList lines = MakeBasket();
    QuoteBoard board;
    std::vector<QVXQuoteStruct> storms[2] = {Storm(0), Storm(1)};
    QuoteSetup() {
        board.setDisplay({2, true, 100000});
        board.SetLines(lines);
    }
};

void BM_QuoteHandlers(benchmark::State& state) {
    QuoteSetup s;
    int round = 0;
    for (auto _ : state) {
        for (const QVXQuoteStruct& q : s.storms[round++ & 1]) {
            s.board.OnQVXQuoteUpdate(q);
        }
        state.PauseTiming();
        s.board.Timer200ms(s.lines);
        s.lines.FlushChanges();
        state.ResumeTiming();
    }
    state.counters["ns_per_update"] =
        benchmark::Counter(UpdatesPerTick, benchmark::Counter::kIsIterationInvariantRate |
                                               benchmark::Counter::kInvert);
}

void BM_Timer200msTick(benchmark::State& state) {
    QuoteSetup s;
    int round = 0;
    double cells = 0;
    const uint64_t writesBefore = s.lines.CellWrites();
    for (auto _ : state) {
        state.PauseTiming();
        for (const QVXQuoteStruct& q : s.storms[round++ & 1]) {
            s.board.OnQVXQuoteUpdate(q);
        }
        state.ResumeTiming();
        cells += s.board.Timer200ms(s.lines);
        s.lines.FlushChanges();
    }
    state.counters["cells_per_tick"] = cells / static_cast<double>(state.iterations());
    state.counters["writes_per_tick"] = static_cast<double>(s.lines.CellWrites() - writesBefore) /
                                        static_cast<double>(state.iterations());
}

/// Baseline: the same number of cells a tick writes, copied from texts made beforehand.
void BM_CopyQuoteCells(benchmark::State& state) {
    QuoteSetup s;
    // One tick's worth of (row, column) writes, taken from a real tick.
    for (const QVXQuoteStruct& q : s.storms[0]) {
        s.board.OnQVXQuoteUpdate(q);
    }
    struct Write {
        int row;
        int column;
    };
    std::vector<Write> writes;
    std::vector<std::string> texts[2];
    for (const Quote& q : [&] {
             std::vector<Quote> flagged;
             for (int i = 0; i < Lines; ++i) {
                 for (const Quote* p : s.board.QuotesOf(SymbolOf(i))) {
                     if (p->AnyUpdate()) {
                         flagged.push_back(*p);
                     }
                 }
             }
             return flagged;
         }()) {
        for (int column : {stkBid, stkAsk, stkLast, stkVolume, stkChange, stkPctChange, stkOpenChg,
                           stkPctOpenChg}) {
            writes.push_back({q.m_nRow, column});
            texts[0].push_back("10.0" + std::to_string(column % 10));
            texts[1].push_back("11.0" + std::to_string(column % 10));
        }
    }
    int round = 0;
    for (auto _ : state) {
        const auto& t = texts[round++ & 1];
        for (size_t i = 0; i < writes.size(); ++i) {
            s.lines.SetCell(writes[i].row, writes[i].column, t[i]);
        }
        s.lines.FlushChanges();
    }
    state.counters["cells_per_tick"] = static_cast<double>(writes.size());
}

BENCHMARK(BM_CalcBasket)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CopyQuantityCells)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuoteHandlers)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Timer200msTick)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CopyQuoteCells)->Unit(benchmark::kMillisecond);

/// Keeps every run's figures for the summary after the table.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            m_time[run.benchmark_name()] = run.GetAdjustedRealTime();
            m_cpu[run.benchmark_name()] = run.GetAdjustedCPUTime();
            for (const auto& [name, counter] : run.counters) {
                m_counters[run.benchmark_name() + ":" + name] = counter.value;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    /// Real and CPU time of a benchmark (its median when it was repeated).
    double time(const std::string& name) const { return pick(m_time, name); }
    double cpu(const std::string& name) const { return pick(m_cpu, name); }
    double counter(const std::string& name) const {
        const size_t colon = name.find(':');
        return pick(m_counters, name.substr(0, colon), name.substr(colon));
    }

private:
    static double pick(const std::map<std::string, double>& m, const std::string& name,
                       const std::string& suffix = "") {
        for (const std::string& key : {name + "_median" + suffix, name + suffix}) {
            const auto it = m.find(key);
            if (it != m.end()) {
                return it->second;
            }
        }
        return 0;
    }
    std::map<std::string, double> m_time;
    std::map<std::string, double> m_cpu;
    std::map<std::string, double> m_counters;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nSummary (same run; CPU time, real time in brackets)\n");
    const double calc = reporter.cpu("BM_CalcBasket");
    const double copy = reporter.cpu("BM_CopyQuantityCells");
    if (calc > 0 && copy > 0) {
        std::printf("CalcBasket, %d lines: %.2f ms [%.2f] (target < 5 ms), %.1fx a plain copy of "
                    "the quantity cells (%.3f ms)\n",
                    Lines, calc, reporter.time("BM_CalcBasket"), calc / copy, copy);
    }
    const double tick = reporter.cpu("BM_Timer200msTick");
    const double cellCopy = reporter.cpu("BM_CopyQuoteCells");
    if (tick > 0 && cellCopy > 0) {
        std::printf("Timer200ms after %d updates over %d symbols: %.2f ms [%.2f] (target < 10 "
                    "ms), %.0f cells written, %.1fx a plain copy of as many cells (%.3f ms)\n",
                    UpdatesPerTick, Lines, tick, reporter.time("BM_Timer200msTick"),
                    reporter.counter("BM_Timer200msTick:cells_per_tick"), tick / cellCopy,
                    cellCopy);
    }
    const double handlers = reporter.cpu("BM_QuoteHandlers");
    if (handlers > 0) {
        std::printf("Quote handlers: %.2f ms [%.2f] per 200 ms of the storm (%.0f ns per update)\n",
                    handlers, reporter.time("BM_QuoteHandlers"),
                    reporter.counter("BM_QuoteHandlers:ns_per_update") * 1e9);
    }
    benchmark::Shutdown();
    return 0;
}
