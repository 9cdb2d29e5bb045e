// The main screen at the size of a big basket, on the real window (offscreen). A quote storm
// of 50,000 updates a second over the 5,000 symbols of the loaded basket: every 200 ms the
// platform's thread pushes 10,000 updates into the platform's event queue, and the UI thread
// does what it does for them in the running program: the event pump's drains into the
// QuoteBoard, the Timer200ms tick that writes the cells, the table model's signals and the
// view's reaction to them. That UI-thread work, as the thread's CPU time (the machine may be
// shared), is the figure. Also CalcBasket over the
// 5,000 lines.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "common/Conversions.h"
#include "common/MessageBox.h"
#include "platform/sim/SimPlatform.h"
#include "trading/TradingDesk.h"
#include "trading/basket/BasketCalculation.h"
#include "trading/ui/frmMain.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <QApplication>

namespace {

using namespace wicker;
using bench::Folder;
using bench::SilentBoxes;
using bench::Ticker;
namespace fs = std::filesystem;

constexpr int Lines = 5000;
constexpr int UpdatesPerTick = 10000; // 50,000 a second for 200 ms
constexpr int Rounds = 7;

/// 200 ms of the storm: bid, ask, last and volume of scattered symbols of the basket.
std::vector<QVXQuoteStruct> Storm(int round) {
    std::vector<QVXQuoteStruct> records(UpdatesPerTick);
    uint32_t x = 12345u + static_cast<uint32_t>(round);
    for (auto& q : records) {
        x = x * 1664525u + 1013904223u;
        q.Symbol = Ticker(static_cast<int>((x >> 8) % Lines));
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

/// The simulator (standing still: the storm is pushed by hand), the desk and its window.
struct Screen {
    Folder folder{"screen"};
    ManualClock clock{std::chrono::system_clock::now()};
    SimPlatform platform{SimSettings{}, clock, SimDriver::Manual};
    SilentBoxes boxes;
    TradingDesk desk{platform, boxes, clock, folder.path};
    frmMain window{desk, platform, boxes};

    Screen() {
        if (!window.FormLoad()) {
            std::fprintf(stderr, "the window did not load\n");
            std::exit(1);
        }
        window.stopTimers(); // the ticks are run below, where they are timed
        window.show();
        platform.Start();
        PasteTable table;
        for (int i = 0; i < Lines; ++i) {
            table.push_back({Ticker(i), std::to_string(100 + i % 900), "NYSE"});
        }
        desk.PasteLines(table);
        Settle();
    }
    ~Screen() { window.FormUnload(); }

    /// Everything queued is delivered and shown.
    void Settle() {
        while (platform.Events().size() > 0) {
            QCoreApplication::processEvents();
        }
        desk.Timer200ms();
        QCoreApplication::processEvents();
    }
};

/// The platform's side: pushes a tick's worth of updates from a thread of its own.
void PushStorm(Screen& s, const std::vector<QVXQuoteStruct>& storm) {
    std::thread platformThread([&] {
        for (const QVXQuoteStruct& q : storm) {
            s.platform.Events().push(PlatformEventQueue::QuoteUpdate{q});
        }
    });
    platformThread.join();
}

/// The UI thread's work for one 200 ms tick of the storm, in milliseconds; `drainMs` gets
/// the share of the event pump's drains.
double UiWorkMs(Screen& s, double& drainMs) {
    const double start = bench::ThreadCpuMs();
    while (s.platform.Events().size() > 0) {
        QCoreApplication::processEvents(); // the pump's queued drains
    }
    drainMs = bench::ThreadCpuMs() - start;
    const int written = s.desk.Timer200ms(); // what frmMain's Timer200ms runs
    QCoreApplication::processEvents();       // the view takes the model's signals
    const double ms = bench::ThreadCpuMs() - start;
    if (written == 0) {
        std::fprintf(stderr, "the storm changed no cell\n");
        std::exit(1);
    }
    return ms;
}

double CalcBasketMs(Screen& s, int round) {
    std::vector<float> notional;
    const char* multipliers[] = {"1", "2"}; // every quantity really changes
    const double start = bench::ThreadCpuMs();
    CalcBasket(s.desk.Stocks(), {multipliers[round & 1], "100"}, 100, notional);
    s.desk.Stocks().FlushChanges();
    return bench::ThreadCpuMs() - start;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    Screen screen;
    const std::vector<QVXQuoteStruct> storms[2] = {Storm(0), Storm(1)};
    std::vector<double> uiWork;
    std::vector<double> calc;
    for (int round = 0; round < Rounds; ++round) {
        PushStorm(screen, storms[round & 1]);
        double drain = 0;
        uiWork.push_back(UiWorkMs(screen, drain));
        calc.push_back(CalcBasketMs(screen, round));
        QCoreApplication::processEvents();
        std::printf("round %d: UI-thread work for 200 ms of the storm %.2f ms (drains %.2f ms); "
                    "CalcBasket %.2f ms\n",
                    round + 1, uiWork.back(), drain, calc.back());
    }
    bench::Report(
        "UI-thread work per 200 ms at 50,000 quote updates/s, 5,000-line basket "
        "(frmMain offscreen: queue drains + Timer200ms + model signals; UI-thread CPU time)",
        "ms", uiWork, {"<", 6});
    bench::Report("CalcBasket over 5,000 lines of the loaded basket", "ms", calc, {"<", 5});
    return 0;
}
