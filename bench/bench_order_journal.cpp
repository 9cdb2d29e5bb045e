// The order journal on the paths a trader waits on.
// 1. One click of BUY MKT on a 5,000-line basket, through the real TradingDesk with the
//    simulator behind it, from the click until ExecuteBasket returns (the orders tracked once
//    the last has left): with the journal (every order written and committed before the
//    first leaves, the hand-off saved after) against the same desk whose send listener
//    tracks without a journal. The simulator keeps its book in the folder in both, as in
//    the program. The two desks click in turn, round after round, and each round gives one ratio:
//    what the machine does meanwhile weighs on both alike. The figure is wall time: part of
//    the journal's record is written on a helper thread the click waits for, which the UI
//    thread's CPU time (printed beside) would not count.
// 2. A restart: TradingDesk::FormLoad on a data folder whose journal holds 20,000 orders of
//    the day, until they are all tracked again.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "platform/TicketOrder.h"
#include "platform/sim/SimPlatform.h"
#include "storage/BasketDatabase.h"
#include "trading/TradingDesk.h"
#include "trading/orders/OrderLedger.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;
using bench::Folder;
namespace fs = std::filesystem;

constexpr int Lines = 5000;
constexpr int Rounds = 7;
constexpr int RestartOrders = 20000;

/// Answers Yes: the 5,000 lines break a default send limit, and the trader overrides it.
class YesBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Yes; }
};

SimSettings Market() {
    SimSettings s;
    s.seed = 7;
    return s;
}

/// A desk on the simulator with a 5,000-line basket loaded.
struct LoadedDesk {
    LoadedDesk(const fs::path& folder, bool keepBook)
        : clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})),
          sim(Market(), clock, SimDriver::Manual), desk(sim, boxes, clock, folder) {
        // As the program runs it, the simulated broker keeps its book in the folder.
        if (keepBook && !sim.KeepBook(folder / kSimBookFileName)) {
            throw std::runtime_error("the simulated book cannot be kept");
        }
        sim.Start();
        desk.FormLoad();
        Database& db = desk.db();
        db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                      "VALUES('Bench','Bench',0,'B')");
        const int32_t num =
            db.OpenRecordset("SELECT intBasketNum FROM tblBaskets").Field("intBasketNum").toInt();
        std::vector<BasketLine> lines;
        for (int i = 0; i < Lines; ++i) {
            lines.push_back({"S" + std::to_string(i), std::to_string(100 + i % 900),
                             i % 2 ? "NASDAQ" : "NYSE"});
        }
        {
            Database::Transaction setUp(db); // one disk sync for the set-up, not one per line
            SaveBasketDetails(db, num, "Bench", lines);
            setUp.commit();
        }
        desk.LoadBasketList();
        desk.LoadBasketByName("Bench");
    }
    ManualClock clock;
    YesBoxes boxes;
    SimPlatform sim;
    TradingDesk desk;
};

/// One desk of the comparison, and its times per click.
struct Contender {
    Contender(const std::string& name, bool journal, bool keepBook)
        : folder(name), desk(folder.path, keepBook), trackingOnly(desk.desk.Tracker(), desk.boxes) {
        if (!journal) {
            desk.desk.Execution().setListener(&trackingOnly);
        }
    }
    void Click() {
        const auto wallStart = std::chrono::steady_clock::now();
        const double cpuStart = bench::ThreadCpuMs();
        const ExecuteReport r = desk.desk.ExecuteBasket(3, "ACCT01");
        cpu.push_back(bench::ThreadCpuMs() - cpuStart);
        wall.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - wallStart)
                .count());
        if (r.outcome != ExecuteOutcome::Sent || r.ordersSubmitted != Lines) {
            std::fprintf(stderr, "the click sent %d of %d orders (outcome %d)\n", r.ordersSubmitted,
                         Lines, static_cast<int>(r.outcome));
            std::exit(1);
        }
        desk.desk.DrainPlatformEvents(); // what the next event loop turn does, not timed
        // The next click a minute later: the same basket again at once is a broken limit.
        desk.clock.advance(std::chrono::minutes(1));
    }
    Folder folder;
    LoadedDesk desk;
    OrderRecords trackingOnly;
    std::vector<double> cpu;
    std::vector<double> wall;
};

std::vector<double> Ratios(const std::vector<double>& a, const std::vector<double>& b) {
    std::vector<double> r;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        r.push_back(a[i] / b[i]);
    }
    return r;
}

std::pair<double, double> MinMedian(std::vector<double> t) {
    std::sort(t.begin(), t.end());
    return t.empty() ? std::pair{0.0, 0.0} : std::pair{t.front(), t[t.size() / 2]};
}

void CompareClicks() {
    Contender with("journal", true, true);
    Contender without("nojournal", false, true);
    Contender bookInMemory("bookinmemory", true, false);
    for (int round = 0; round < Rounds; ++round) {
        with.Click();
        without.Click();
        bookInMemory.Click();
    }
    const auto line = [](const char* what, const std::vector<double>& a,
                         const std::vector<double>& b) {
        const auto [aMin, aMedian] = MinMedian(a);
        const auto [bMin, bMedian] = MinMedian(b);
        const auto [rMin, rMedian] = MinMedian(Ratios(a, b));
        std::printf("  %s: %.1f / %.1f ms against %.1f / %.1f ms, ratio per round %.2f / %.2f\n",
                    what, aMin, aMedian, bMin, bMedian, rMin, rMedian);
    };
    std::printf("5,000-line BUY MKT click, whole, real desk + simulator, %d rounds "
                "(min / median):\n",
                Rounds);
    line("UI-thread CPU, with the journal vs tracking without it", with.cpu, without.cpu);
    line("wall, with the journal vs tracking without it", with.wall, without.wall);
    line("wall, the simulator's book kept in the folder vs in memory only (both with the "
         "journal)",
         with.wall, bookInMemory.wall);
    bench::Report("5,000-line click, whole, with the order journal / without (real desk "
                  "+ simulator, wall time, side by side per round)",
                  "x", Ratios(with.wall, without.wall), {"<=", 1.10});
}

void BM_Restart20000Orders(benchmark::State& state) {
    Folder folder("restart");
    ManualClock clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0}));
    {
        YesBoxes boxes;
        SimPlatform sim(Market(), clock, SimDriver::Manual);
        TradingDesk desk(sim, boxes, clock, folder.path);
        desk.FormLoad(); // the database and settings a restart finds
        OrderLedger ledger(folder.path / "orders.db", clock);
        for (int send = 1; send * Lines <= RestartOrders; ++send) {
            std::vector<std::unique_ptr<TicketOrder>> orders;
            std::vector<const QVXOrder*> view;
            for (int i = 0; i < Lines; ++i) {
                auto o = std::make_unique<TicketOrder>([](const OrderTicket&) { return 0; });
                o->setMemo("Bench-" + std::to_string(send) + "-/bskt");
                o->setAccount("ACCT01");
                o->setSymbol("S" + std::to_string(i));
                o->setSide("B");
                o->setQuantity(100);
                o->setPriceType(OrderPriceType::Market);
                o->setTif("D");
                o->setDestination("NYSE");
                o->setClOrderID("ACCT01-20240315-" + std::to_string(send) + "-" +
                                std::to_string(i + 1));
                view.push_back(o.get());
                orders.push_back(std::move(o));
            }
            ledger.SendBegins(static_cast<int16_t>(send), "Bench", view);
            for (const auto& o : orders) { // filled: a restart only shows them
                TrackedOrder t;
                t.state.ClOrderID = o->ClOrderID();
                t.state.Memo = o->Memo();
                t.state.Symbol = o->Symbol();
                t.state.Side = "B";
                t.state.Quantity = 100;
                t.state.CumExecQuantity = 100;
                t.state.AvgExecPrice = 10.01;
                t.state.OrderStatus = QVXOrderStatus::Filled;
                t.currentClOrderId = o->ClOrderID();
                t.seenAt = "10:00:00 AM";
                ledger.Save(t);
            }
            ledger.Flush();
        }
    }
    for (auto _ : state) {
        YesBoxes boxes;
        SimPlatform sim(Market(), clock, SimDriver::Manual);
        TradingDesk desk(sim, boxes, clock, folder.path);
        desk.FormLoad();
        if (desk.Tracker().Orders().size() != static_cast<size_t>(RestartOrders)) {
            state.SkipWithError("the restart did not track every order again");
        }
    }
}

BENCHMARK(BM_Restart20000Orders)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

/// The restart's times, for the result line.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                times.push_back(run.GetAdjustedRealTime());
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::vector<double> times;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    CompareClicks();
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto [restartMin, restartMedian] = MinMedian(reporter.times);
    bench::Report("Restart with 20,000 orders of the day in the journal (FormLoad)", "ms",
                  reporter.times, {"<", 1000});
    if (restartMin > 0) {
        std::printf("  Restart (FormLoad) with 20,000 orders of the day in the journal: %.0f / "
                    "%.0f ms (goal < 1000 ms)\n",
                    restartMin, restartMedian);
    }
    benchmark::Shutdown();
    return 0;
}
