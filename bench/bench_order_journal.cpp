// The order journal on the paths a trader waits on.
// 1. One click of BUY MKT on a 5,000-line basket, through the real TradingDesk with the
//    simulator behind it, from the click to the return of the last SubmitOrder: with the
//    journal (every order written and committed before the first leaves, the hand-off
//    saved after) against the same desk whose send listener tracks without a journal. The
//    simulator keeps its book in the folder in both, as in the program.
// 2. A restart: TradingDesk::FormLoad on a data folder whose journal holds 20,000 orders of
//    the day, until they are all tracked again.
#include "BenchReport.h"
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/TicketOrder.h"
#include "platform/sim/SimPlatform.h"
#include "storage/BasketDatabase.h"
#include "trading/TradingDesk.h"
#include "trading/orders/OrderLedger.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;
namespace fs = std::filesystem;

constexpr int Lines = 5000;
constexpr int RestartOrders = 20000;

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Yes; }
};

/// A fresh data folder per benchmark, removed at the end.
class Folder {
public:
    explicit Folder(const std::string& name)
        : m_path(fs::temp_directory_path() /
                 ("wicker-bench-" + name + "-" + std::to_string(getpid()))) {
        fs::remove_all(m_path);
        fs::create_directories(m_path);
    }
    ~Folder() { fs::remove_all(m_path); }
    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
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
    SilentBoxes boxes;
    SimPlatform sim;
    TradingDesk desk;
};

void Send(benchmark::State& state, bool journal, bool keepBook = true) {
    Folder folder(journal ? "journal" : "nojournal");
    LoadedDesk d(folder.path(), keepBook);
    OrderRecords trackingOnly(d.desk.Tracker(), d.boxes);
    if (!journal) {
        d.desk.Execution().setListener(&trackingOnly);
    }
    for (auto _ : state) {
        d.desk.ExecuteBasket(3, "ACCT01");
        state.PauseTiming();
        d.desk.DrainPlatformEvents();
        state.ResumeTiming();
    }
}

void BM_SendWithJournal(benchmark::State& state) {
    Send(state, true);
}
void BM_SendWithoutJournal(benchmark::State& state) {
    Send(state, false);
}
void BM_SendWithJournalBookInMemory(benchmark::State& state) {
    Send(state, true, false);
}

void BM_Restart20000Orders(benchmark::State& state) {
    Folder folder("restart");
    ManualClock clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0}));
    {
        SilentBoxes boxes;
        SimPlatform sim(Market(), clock, SimDriver::Manual);
        TradingDesk desk(sim, boxes, clock, folder.path());
        desk.FormLoad(); // the database and settings a restart finds
        OrderLedger ledger(folder.path() / "orders.db", clock);
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
        SilentBoxes boxes;
        SimPlatform sim(Market(), clock, SimDriver::Manual);
        TradingDesk desk(sim, boxes, clock, folder.path());
        desk.FormLoad();
        if (desk.Tracker().Orders().size() != static_cast<size_t>(RestartOrders)) {
            state.SkipWithError("the restart did not track every order again");
        }
    }
}

BENCHMARK(BM_SendWithJournal)->Unit(benchmark::kMillisecond)->Iterations(4)->Repetitions(3);
BENCHMARK(BM_SendWithoutJournal)->Unit(benchmark::kMillisecond)->Iterations(4)->Repetitions(3);
BENCHMARK(BM_SendWithJournalBookInMemory)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(4)
    ->Repetitions(3);
BENCHMARK(BM_Restart20000Orders)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

/// Every run's time by benchmark, for min and median of the repetitions.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::pair<double, double> MinMedian(const std::string& name) {
        std::vector<double> t = times[name];
        if (t.empty()) {
            return {0, 0};
        }
        std::sort(t.begin(), t.end());
        return {t.front(), t[t.size() / 2]};
    }
    std::map<std::string, std::vector<double>> times;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto [withMin, withMedian] = reporter.MinMedian("BM_SendWithJournal");
    const auto [withoutMin, withoutMedian] = reporter.MinMedian("BM_SendWithoutJournal");
    const auto [memoryMin, memoryMedian] = reporter.MinMedian("BM_SendWithJournalBookInMemory");
    const auto [restartMin, restartMedian] = reporter.MinMedian("BM_Restart20000Orders");
    if (withMin > 0 && withoutMin > 0) {
        std::printf("\nSummary (same run, min / median of the repetitions):\n"
                    "  5,000-line BUY MKT click to last SubmitOrder, real desk + simulator: with "
                    "the journal %.1f / %.1f ms, tracking without it %.1f / %.1f ms, ratio "
                    "%.2f / %.2f (goal <= 1.10)\n",
                    withMin, withMedian, withoutMin, withoutMedian, withMin / withoutMin,
                    withMedian / withoutMedian);
    }
    if (withMin > 0 && memoryMin > 0) {
        std::printf(
            "  The same click with the journal, the simulator keeping its book in the folder "
            "%.1f / %.1f ms against keeping it in memory only %.1f / %.1f ms, ratio "
            "%.2f / %.2f\n",
            withMin, withMedian, memoryMin, memoryMedian, withMin / memoryMin,
            withMedian / memoryMedian);
    }
    // Each repetition of one against the same repetition of the other: both ran side by side.
    const std::vector<double>& with = reporter.times["BM_SendWithJournal"];
    const std::vector<double>& without = reporter.times["BM_SendWithoutJournal"];
    std::vector<double> ratios;
    for (size_t i = 0; i < std::min(with.size(), without.size()); ++i) {
        ratios.push_back(with[i] / without[i]);
    }
    bench::Report("5,000-line click to last submit, with the order journal / without (real desk "
                  "+ simulator)",
                  "x", ratios, {"<=", 1.10});
    bench::Report("Restart with 20,000 orders of the day in the journal (FormLoad)", "ms",
                  reporter.times["BM_Restart20000Orders"], {"<", 1000});
    if (restartMin > 0) {
        std::printf("  Restart (FormLoad) with 20,000 orders of the day in the journal: %.0f / "
                    "%.0f ms (goal < 1000 ms)\n",
                    restartMin, restartMedian);
    }
    benchmark::Shutdown();
    return 0;
}
