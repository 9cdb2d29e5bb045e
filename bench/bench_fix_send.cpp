// A 5,000-line basket sent through Wicker's FIX gateway to wicker-exchange, against a bare
// QuickFIX loop that sends the same 5,000 NewOrderSingle messages over the same loopback
// session. Both are timed from the first send until the exchange's 5,000 acknowledgements
// are in (for Wicker: turned into order updates). Prints the medians and their ratio.
#include "common/Clock.h"
#include "exchange/ExchangeProcess.h"
#include "platform/fix/FixGateway.h"
#include "platform/fix/NewOrderSingle.h"
#include "platform/fix/engine/FixBareLoop.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

constexpr int Lines = 5000;
constexpr int Rounds = 9;

OrderTicket Ticket(const std::string& prefix, int i) {
    OrderTicket t;
    t.account = "ACCT01";
    t.side = i % 2 == 0 ? "BUY" : "S";
    t.symbol = "S" + std::to_string(i % 500);
    t.quantity = 100 * (1 + i % 5);
    t.lmtPrice = i % 2 == 0 ? 1.01 : 9999.99; // far from the market: the orders rest
    t.priceType = 5;
    t.clOrderID = prefix + std::to_string(i + 1);
    t.tif = "D";
    t.destination = "NASDAQ";
    t.memo = "Bench-1-/bskt";
    return t;
}

// Counts the order updates the gateway delivers.
class CountingEvents : public FixGatewayEvents {
public:
    void onOrderUpdate(const FixOrderState&) override {
        std::lock_guard lock(m_mutex);
        if (++m_updates == m_awaited) {
            m_done = std::chrono::steady_clock::now();
            m_changed.notify_all();
        }
    }
    void onOrderReject(const FixOrderReject&) override {
        std::lock_guard lock(m_mutex);
        ++m_rejects;
    }
    void onOrderWarning(const FixOrderWarning&) override {
        std::lock_guard lock(m_mutex);
        ++m_rejects; // the benchmark's exchange sends none: counted as a failure
    }
    void onQuote(const FixQuoteFields&) override {}
    void onSessionStatus(bool, const std::string&) override {}

    void expect(int n) {
        std::lock_guard lock(m_mutex);
        m_updates = 0;
        m_awaited = n;
    }
    /// When the awaited update arrived; nothing on timeout.
    std::optional<std::chrono::steady_clock::time_point> wait(std::chrono::seconds limit) {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, limit, [&] { return m_updates >= m_awaited; })) {
            return std::nullopt;
        }
        return m_done;
    }
    int rejects() {
        std::lock_guard lock(m_mutex);
        return m_rejects;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_updates = 0;
    int m_awaited = 0;
    int m_rejects = 0;
    std::chrono::steady_clock::time_point m_done;
};

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// One round of the bare loop: QuickFIX's SocketInitiator, sendToTarget in a loop, reports
// counted. Returns the seconds from the first send to the last acknowledgement.
std::optional<double> BareRound(int port, const std::filesystem::path& folder, int round) {
    FixSessionConfig c;
    c.senderCompID = "WICKER";
    c.targetCompID = "EXCH";
    c.port = port;
    c.resetOnLogon = true;
    c.storePath = (folder / "bare-store").string();
    c.logPath = (folder / "bare-log").string();
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
    const double s = bare.sendAndAwait(orders, Lines, 60000);
    if (s < 0) {
        return std::nullopt;
    }
    return s;
}

// One round of Wicker: SubmitOrder for every line, through the paced window, the reports
// turned into order updates. Same measure.
std::optional<double> WickerRound(int port, const std::filesystem::path& folder, int round) {
    FixPlatformSettings s;
    s.port = port;
    s.resetOnLogon = true;
    const SystemClock clock;
    CountingEvents events;
    FixGateway gateway(s, folder / "wicker", clock, events);
    if (!gateway.start().ok()) {
        return std::nullopt;
    }
    for (int i = 0; i < 1000 && !gateway.isLoggedOn(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::vector<OrderTicket> tickets;
    tickets.reserve(Lines);
    for (int i = 0; i < Lines; ++i) {
        tickets.push_back(Ticket("W" + std::to_string(round) + "-", i));
    }
    events.expect(Lines);
    const auto start = std::chrono::steady_clock::now();
    for (const OrderTicket& t : tickets) {
        if (gateway.SubmitOrder(t) <= 0) {
            return std::nullopt;
        }
    }
    const auto done = events.wait(std::chrono::seconds(60));
    if (!done || events.rejects() > 0) {
        return std::nullopt;
    }
    return std::chrono::duration<double>(*done - start).count();
}

// Rounds alternate between the two, each on a fresh connection of the same session, so
// that neither gains from running first or from the exchange's growing books.
void BM_Send5000LineBasket(benchmark::State& state, int port, const std::filesystem::path& folder) {
    std::vector<double> bare;
    std::vector<double> wicker;
    std::vector<double> ratios; // each round against the bare round just before it
    int round = 0;
    for (auto _ : state) {
        const std::optional<double> b = BareRound(port, folder, round);
        const std::optional<double> w = WickerRound(port, folder, round);
        if (!b || !w) {
            state.SkipWithError("a round did not complete: an order was refused or unanswered");
            return;
        }
        bare.push_back(*b);
        wicker.push_back(*w);
        ratios.push_back(*w / *b);
        state.SetIterationTime(*w);
        ++round;
    }
    state.counters["bare_ms"] = Median(bare) * 1e3;
    state.counters["wicker_ms"] = Median(wicker) * 1e3;
    state.counters["ratio"] = Median(ratios);
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
        if (const Result<void> started = exchange.start({"--rest"}); !started) {
            std::fprintf(stderr, "%s\n", started.error().message.c_str());
            return 1;
        }
        const int port = exchange.port();
        benchmark::RegisterBenchmark(
            "BM_Send5000LineBasket",
            [&](benchmark::State& s) { BM_Send5000LineBasket(s, port, folder); })
            ->Iterations(Rounds)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        SummaryReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        const double bare = reporter.counter("bare_ms");
        const double wicker = reporter.counter("wicker_ms");
        const double ratio = reporter.counter("ratio");
        if (bare > 0 && wicker > 0) {
            std::printf("\nSummary (same run, %d alternating rounds of %d orders, timed from the "
                        "first send to the last acknowledgement)\n",
                        Rounds, Lines);
            std::printf("bare QuickFIX loop %.1f ms, Wicker FIX platform %.1f ms (medians); "
                        "median of the rounds' ratios %.2fx (target <= 1.3x)\n",
                        bare, wicker, ratio);
        } else {
            status = 1;
        }
    }
    std::error_code ec;
    std::filesystem::remove_all(folder, ec);
    benchmark::Shutdown();
    return status;
}
