// Whole-process memory while the main window (offscreen) tracks 20,000 orders on the
// simulator: a loaded 5,000-line basket sent four times (BUY BID), the market moved on until
// the orders are acknowledged and partly filled, every event taken and lvBaskets rebuilt. Each run
// is a fresh process (this program started again with --one-run), which reads its own VmRSS and
// VmHWM from /proc/self/status; the program reports the runs' figures.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "platform/sim/SimPlatform.h"
#include "trading/TradingDesk.h"
#include "trading/ui/frmMain.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
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
constexpr int Sends = 4;
constexpr int Runs = 3;

/// A line of /proc/self/status in megabytes ("VmRSS", "VmHWM").
double StatusMb(const char* key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const std::string prefix = std::string(key) + ":";
    while (std::getline(status, line)) {
        if (line.rfind(prefix, 0) == 0) {
            return std::stod(line.substr(prefix.size())) / 1024.0; // kB
        }
    }
    return -1;
}

/// One run: the desk tracking 20,000 orders; prints "<orders> <VmRSS MB> <VmHWM MB>".
int OneRun(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    Folder folder{"memory"};
    ManualClock clock{std::chrono::system_clock::now()};
    SimPlatform platform{SimSettings{}, clock, SimDriver::Manual};
    SilentBoxes boxes;
    TradingDesk desk{platform, boxes, clock, folder.path};
    frmMain window{desk, platform, boxes};
    if (!window.FormLoad()) {
        std::fprintf(stderr, "the window did not load\n");
        return 1;
    }
    window.stopTimers(); // run below on the simulator's virtual time
    window.show();
    platform.Start();
    PasteTable table;
    for (int i = 0; i < Lines; ++i) {
        table.push_back({Ticker(i), std::to_string(100 + i % 900), i % 2 ? "NASDAQ" : "NYSE"});
    }
    desk.PasteLines(table);
    const auto pass = [&](int ticks) {
        for (int t = 0; t < ticks; ++t) {
            platform.advance(std::chrono::milliseconds(200));
            while (platform.Events().size() > 0) {
                QCoreApplication::processEvents(); // the window's event pump
            }
            desk.Timer200ms();
            if (t % 5 == 4) {
                desk.Timer1sec();
            }
            QCoreApplication::processEvents();
        }
    };
    pass(10);
    const double before = StatusMb("VmRSS");
    for (int send = 0; send < Sends; ++send) {
        clock.set(clock.now() + std::chrono::minutes(1)); // no repeat-send check in the way
        const ExecuteReport report = desk.ExecuteBasket(0, "ACCT01");
        if (report.outcome != ExecuteOutcome::Sent) {
            std::fprintf(stderr, "send %d: outcome %d\n", send + 1,
                         static_cast<int>(report.outcome));
            return 1;
        }
        pass(10);
    }
    pass(25);
    std::printf("%zu %.2f %.2f %.2f\n", desk.Tracker().Orders().size(), StatusMb("VmRSS"),
                StatusMb("VmHWM"), before);
    window.FormUnload();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--one-run") == 0) {
        return OneRun(argc, argv);
    }
    // popen runs a shell: name this program by its path, not by /proc/self/exe.
    const std::string self = fs::read_symlink("/proc/self/exe").string();
    std::vector<double> rss;
    std::vector<double> hwm;
    for (int run = 0; run < Runs; ++run) {
        FILE* child = popen(("'" + self + "' --one-run").c_str(), "r");
        size_t orders = 0;
        double r = 0;
        double h = 0;
        double before = 0;
        const bool read = child != nullptr &&
                          std::fscanf(child, "%zu %lf %lf %lf", &orders, &r, &h, &before) == 4;
        const int status = child != nullptr ? pclose(child) : -1;
        if (!read || status != 0 || orders < static_cast<size_t>(Lines * Sends * 9 / 10)) {
            std::fprintf(stderr, "run %d failed (%zu orders tracked)\n", run + 1, orders);
            return 1;
        }
        rss.push_back(r);
        hwm.push_back(h);
        std::printf("run %d: %zu orders tracked, VmRSS %.1f MB, VmHWM %.1f MB (VmRSS %.1f MB with "
                    "the basket loaded, before the first send)\n",
                    run + 1, orders, r, h, before);
    }
    bench::Report("whole-process resident memory (VmRSS), main window (offscreen) tracking 20,000 "
                  "orders on the "
                  "simulator",
                  "MB", rss, {"<", 80});
    bench::Report("whole-process peak resident memory (VmHWM), main window (offscreen) tracking "
                  "20,000 orders on the "
                  "simulator",
                  "MB", hwm, {"<", 80});
    return 0;
}
