// The FIX round trip of a 5,000-line basket through Wicker's real path, against a bare
// QuickFIX loop doing the same round trip over the same kind of session (FileStore and
// FileLog, FIX 4.2, loopback, the same wicker-exchange with fixed prices). Wicker: the BUY
// MKT button's code (BasketExecution) -> FixPlatform -> wire -> exchange -> platform event
// queue -> order tracker, timed from the click until all 10,000 reports (an acknowledgement
// and a fill per order) are in the basket totals. Bare: 5,000 prebuilt NewOrderSingle in a
// sendToTarget loop, timed until its 10,000 ExecutionReports have arrived. Also the longest
// piece of UI-thread work while such a basket goes out through the whole desk on FIX.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "common/Formats.h"
#include "common/MessageBox.h"
#include "exchange/ExchangeProcess.h"
#include "platform/fix/FixPlatform.h"
#include "platform/fix/NewOrderSingle.h"
#include "platform/fix/engine/FixBareLoop.h"
#include "trading/TradingDesk.h"
#include "trading/TradingEvents.h"
#include "trading/orders/BasketExecution.h"
#include "trading/orders/OrderTracker.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

constexpr int Lines = 5000;
constexpr int Reports = 2 * Lines;
constexpr int Rounds = 15; // a round varies by a fifth either way on two shared cores
constexpr int BuyMarket = 3;
constexpr int StallRounds = 3;
constexpr size_t PumpBatch = 2000; // what frmMain's event pump delivers per call

std::string Symbol(int i) {
    return "S" + std::to_string(i % 500);
}

// Market buys of 100: each filled at once in one clip, so two reports per order.
OrderTicket Ticket(const std::string& prefix, int i) {
    OrderTicket t;
    t.account = "ACCT01";
    t.side = "B";
    t.symbol = Symbol(i);
    t.quantity = 100;
    t.priceType = 1;
    t.clOrderID = prefix + std::to_string(i + 1);
    t.tif = "D";
    t.destination = "NASDAQ";
    t.memo = "Bench-1-/bskt";
    return t;
}

class SilentBoxes : public MessageBoxes {
public:
    MsgAnswer show(const MessageRequest&) override {
        ++shown;
        return MsgAnswer::Ok;
    }
    int shown = 0;
};

class NullStore : public SequenceStore {
public:
    Result<void> SaveBasketNum(int16_t) override { return {}; }
};

// The platform's events into the screen's order handlers, as the program's drain does.
class ToTracker : public QVXEvents, public QVXQuoteEvents {
public:
    explicit ToTracker(TradingEvents& events) : m_events(events) {}
    void OnQVXOrderUpdate(const QVXOrderStruct& u) override {
        ++updates;
        m_events.OnQVXOrderUpdate(u);
    }
    void OnQVXOrderReject(const QVXRejectStruct& r) override {
        ++rejects;
        m_events.OnQVXOrderReject(r);
    }
    void OnQVXOrderWarning(const QVXOrderWarning& w) override { m_events.OnQVXOrderWarning(w); }
    void OnQVXShutdown() override {}
    void OnPlatformStatus(bool, const std::string&) override {}
    void OnQVXQuoteSnap(const QVXQuoteStruct&) override {}
    void OnQVXQuoteUpdate(const QVXQuoteStruct&) override {}
    int updates = 0;
    int rejects = 0;

private:
    TradingEvents& m_events;
};

// One round of the bare loop: QuickFIX's SocketInitiator, sendToTarget in a loop, reports
// counted. Seconds from the first send to the last report; nothing when one is missing.
std::optional<double> BareRound(int port, const std::filesystem::path& folder, int round) {
    FixSessionConfig c;
    c.senderCompID = "WICKER";
    c.targetCompID = "EXCH";
    c.port = port;
    c.resetOnLogon = true;
    c.storePath = (folder / ("bare-store-" + std::to_string(round))).string();
    c.logPath = (folder / ("bare-log-" + std::to_string(round))).string();
    FixBareLoop bare(c);
    if (!bare.logon(10000)) {
        return std::nullopt;
    }
    const SystemClock clock;
    std::vector<FixMessage> orders;
    orders.reserve(Lines);
    for (int i = 0; i < Lines; ++i) {
        orders.push_back(BuildNewOrderSingle(Ticket("B" + std::to_string(round) + "-", i),
                                             FixOrderProfile{}, clock)
                             .message);
    }
    const double s = bare.sendAndAwait(orders, Reports, 60000);
    if (s < 0) {
        return std::nullopt;
    }
    return s;
}

// One round of Wicker: the button's click sends the basket through the FixPlatform (paced
// by its send window); then the "UI thread" drains the event queue into the order tracker
// and, once every report is through, rebuilds the totals (the screen does that once a
// second, so within a one-second round once) and checks the send's row shows every order
// filled. Seconds from the click to that point; nothing when it never gets there.
// `clickSeconds` gets the time the click itself took.
std::optional<double> WickerRound(int port, const std::filesystem::path& folder, int round,
                                  double& clickSeconds) {
    FixPlatformSettings s;
    s.port = port;
    s.resetOnLogon = true;
    s.quotes = FixQuoteSource::None;
    const SystemClock clock;
    FixPlatform platform(s, PreTradeLimits{}, folder / ("wicker-" + std::to_string(round)), clock);
    if (!platform.Start().ok()) {
        return std::nullopt;
    }
    for (int i = 0; i < 1000 && !platform.isLoggedOn(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    SilentBoxes boxes;
    OrderTracker tracker(boxes, clock);
    TradingEvents events(tracker, [] {});
    ToTracker toTracker(events);
    SendSequence sequence{static_cast<int16_t>(round + 1), 1};
    NullStore store;
    BasketExecution execution(platform, sequence, store, boxes, clock);
    std::vector<ExecutionLine> lines(Lines);
    for (int i = 0; i < Lines; ++i) {
        lines[i].checked = true;
        lines[i].symbol = Symbol(i);
        lines[i].quantity = "100";
        lines[i].destination = "NASDAQ";
        lines[i].modifier = "0";
        lines[i].tif = "DAY";
    }
    const SendLines toSend = SendLines::Of(lines);
    const auto start = std::chrono::steady_clock::now();
    const ExecuteReport r =
        execution.cmdExecuteBasket_Click(BuyMarket, toSend, {"acct01", "1", "Bench"}, {});
    if (r.ordersSubmitted != Lines || !r.submitErrors.empty()) {
        return std::nullopt;
    }
    clickSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const auto limit = start + std::chrono::seconds(60);
    for (;;) {
        platform.Events().drain(toTracker, toTracker);
        if (toTracker.updates >= Reports) {
            tracker.FillOrderList();
            const std::vector<OrderRow>& rows = tracker.Rows();
            if (rows.size() != 1 || rows[0].m_nTotalOrders != Lines ||
                rows[0].m_nFilledQty != int64_t{100} * Lines) {
                return std::nullopt;
            }
            break;
        }
        if (toTracker.rejects > 0 || std::chrono::steady_clock::now() > limit) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The longest piece of UI-thread work, in wall ms (waits for helpers count), while a 5,000-line
// basket goes out through the whole desk (grid copy, checks, order journal, BasketNum saved,
// FixPlatform) and its reports come back: the click, each batch the window's pump delivers, and the
// timer ticks, until every fill is in the totals. Nothing when the basket does not get there.
std::optional<double> DeskStallRound(int port, int round) {
    bench::Folder folder("fix-desk-" + std::to_string(round));
    const SystemClock clock;
    // Send numbers of their own today: the exchange refuses a client order id it has seen.
    std::ofstream(folder.path / "basket.ini")
        << "[Sequence]\r\nCurDate=" << FormatYyyymmdd(clock.localNow())
        << "\r\nBasketNum=" << 1000 + round << "\r\n";
    FixPlatformSettings s;
    s.port = port;
    s.resetOnLogon = true;
    s.quotes = FixQuoteSource::None;
    FixPlatform platform(s, PreTradeLimits{}, folder.path / "fix", clock);
    bench::SilentBoxes boxes;
    TradingDesk desk(platform, boxes, clock, folder.path);
    if (!desk.FormLoad() || !platform.Start().ok()) {
        return std::nullopt;
    }
    for (int i = 0; i < 1000 && !platform.isLoggedOn(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    PasteTable table;
    for (int i = 0; i < Lines; ++i) {
        table.push_back({Symbol(i), "100", "NASDAQ"});
    }
    desk.PasteLines(table);
    double longest = 0;
    const auto piece = [&](const auto& work) {
        const double start = bench::WallMs();
        work();
        longest = std::max(longest, bench::WallMs() - start);
    };
    ExecuteReport sent;
    piece([&] { sent = desk.ExecuteBasket(BuyMarket, "ACCT01"); });
    if (sent.ordersSubmitted != Lines || !sent.submitErrors.empty()) {
        return std::nullopt;
    }
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    int ticks = 0;
    for (auto tick = std::chrono::steady_clock::now();;) {
        while (platform.Events().size() > 0) {
            piece([&] { desk.DrainPlatformEvents(PumpBatch); });
        }
        if (std::chrono::steady_clock::now() >= tick) {
            piece([&] { desk.Timer200ms(); });
            if (++ticks % 5 == 0) {
                piece([&] { desk.Timer1sec(); });
            }
            tick += std::chrono::milliseconds(200);
            const std::vector<OrderRow>& rows = desk.Tracker().Rows();
            if (rows.size() == 1 && rows[0].m_nFilledQty == int64_t{100} * Lines) {
                return longest;
            }
        }
        if (std::chrono::steady_clock::now() > limit) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}
double Min(const std::vector<double>& v) {
    return v.empty() ? 0 : *std::min_element(v.begin(), v.end());
}

// Rounds alternate between the two, each on a fresh connection and store, so neither gains
// from running first.
void BM_BasketRoundTrip5000(benchmark::State& state, int port, const std::filesystem::path& folder,
                            std::vector<double>& ratios) {
    std::vector<double> bare;
    std::vector<double> wicker;
    ratios.clear(); // each round against the bare round just before it
    std::vector<double> clicks;
    int round = 0;
    for (auto _ : state) {
        double click = 0;
        const std::optional<double> b = BareRound(port, folder, round);
        const std::optional<double> w = WickerRound(port, folder, round, click);
        if (!b || !w) {
            state.SkipWithError("a round did not complete: an order was refused or unanswered");
            return;
        }
        bare.push_back(*b);
        wicker.push_back(*w);
        ratios.push_back(*w / *b);
        clicks.push_back(click);
        std::printf("round %d: Wicker %.1f ms (click %.1f ms), bare %.1f ms, %.2fx\n", round + 1,
                    *w * 1e3, click * 1e3, *b * 1e3, ratios.back());
        state.SetIterationTime(*w);
        ++round;
    }
    state.counters["bare_min_ms"] = Min(bare) * 1e3;
    state.counters["bare_median_ms"] = Median(bare) * 1e3;
    state.counters["wicker_min_ms"] = Min(wicker) * 1e3;
    state.counters["wicker_median_ms"] = Median(wicker) * 1e3;
    state.counters["wicker_click_median_ms"] = Median(clicks) * 1e3;
    state.counters["ratio_min"] = Min(ratios);
    state.counters["ratio_median"] = Median(ratios);
}

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            for (const auto& [name, counter] : run.counters) {
                m_counters[name] = counter.value;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    double counter(const std::string& name) const {
        const auto it = m_counters.find(name);
        return it == m_counters.end() ? 0 : it->second;
    }

private:
    std::map<std::string, double> m_counters;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("wicker-bench-fix-" + std::to_string(getpid()));
    int status = 0;
    {
        ExchangeProcess exchange(WICKER_EXCHANGE_PROGRAM, folder / "exchange");
        if (const Result<void> started = exchange.start({"--market", "steady"}); !started) {
            std::fprintf(stderr, "%s\n", started.error().message.c_str());
            return 1;
        }
        const int port = exchange.port();
        std::vector<double> ratios;
        benchmark::RegisterBenchmark(
            "BM_BasketRoundTrip5000",
            [&](benchmark::State& s) { BM_BasketRoundTrip5000(s, port, folder, ratios); })
            ->Iterations(Rounds)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        SummaryReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        const auto c = [&](const char* name) { return reporter.counter(name); };
        double load[1] = {0};
        getloadavg(load, 1);
        if (c("bare_median_ms") > 0 && c("wicker_median_ms") > 0) {
            std::printf(
                "\nSummary: round trip of a %d-line basket (%d orders out, %d execution "
                "reports back) over a FIX 4.2 loopback session to wicker-exchange, %d "
                "alternating rounds in this run; load average %.2f.\n"
                "Wicker (BUY MKT click -> FixPlatform -> wire -> exchange -> event queue -> "
                "order tracker, until every fill is in the basket totals): min %.1f ms, "
                "median %.1f ms (the click itself: median %.1f ms).\n"
                "Bare QuickFIX loop (prebuilt messages, sendToTarget loop, until every "
                "report has arrived): min %.1f ms, median %.1f ms.\n"
                "Wicker / bare, per round: min %.2fx, median %.2fx (goal <= 1.25x).\n",
                Lines, Lines, Reports, Rounds, load[0], c("wicker_min_ms"), c("wicker_median_ms"),
                c("wicker_click_median_ms"), c("bare_min_ms"), c("bare_median_ms"), c("ratio_min"),
                c("ratio_median"));
            bench::Report("FIX round trip of 5,000 lines until every fill is in the totals, "
                          "Wicker's real path / bare QuickFIX loop",
                          "x", ratios, {"<=", 1.25});
        } else {
            status = 1;
        }
        std::vector<double> stalls;
        for (int round = 0; round < StallRounds && status == 0; ++round) {
            if (const std::optional<double> stall = DeskStallRound(port, round)) {
                std::printf("desk on FIX, round %d: longest UI-thread stall %.1f ms\n", round + 1,
                            *stall);
                stalls.push_back(*stall);
            } else {
                std::fprintf(stderr, "the desk's basket did not complete on FIX\n");
                status = 1;
            }
        }
        if (status == 0) {
            bench::Report("longest UI-thread stall while a 5,000-line basket is sent (FIX to "
                          "wicker-exchange, whole desk with its journal; wall time of the "
                          "longest piece)",
                          "ms", stalls, {"<", 50});
        }
    }
    std::error_code ec;
    std::filesystem::remove_all(folder, ec);
    benchmark::Shutdown();
    return status;
}
