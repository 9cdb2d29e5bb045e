// One click of BUY BID on a 5,000-line basket, timed on the path the trader waits on:
// TradingDesk::ExecuteBasket (grid copy, checks, every order made and written down in the
// journal before it leaves, BasketNum saved, the simulator's SubmitOrder for each) from the
// click to the return of the last SubmitOrder, when the basket is at the market. A helper
// thread makes and writes down the orders after the first 64 while those leave. What the click does
// after that (tracking the orders, the send's end in the journal) is printed beside it, and is in
// the stall figure. Its baseline, in the same run against the same SimPlatform: a bare loop that
// creates, fills in and submits the same 5,000 orders, their texts made beforehand. Also the
// longest stretch the UI thread is busy in one piece while such a basket goes out: the click, each
// batch of events the window's pump delivers, and the timer ticks that follow. All times are
// wall time: a send has helper threads, and the UI thread's CPU time would not count its
// waits for them. Run it on a quiet machine.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "common/Formats.h"
#include "common/MessageBox.h"
#include "platform/sim/SimPlatform.h"
#include "trading/TradingDesk.h"
#include "trading/orders/BasketOrderIds.h"
#include "trading/orders/SendListener.h"
#include "trading/orders/SendPlan.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace wicker;
using bench::Folder;
using bench::SilentBoxes;
using bench::Ticker;
namespace fs = std::filesystem;

constexpr int Lines = 5000;
constexpr int BuyBid = 0;
constexpr int Rounds = 5;
constexpr size_t PumpBatch = 2000; // what frmMain's event pump delivers per call

/// A started simulator and a loaded desk with the 5,000 lines quoted.
struct Desk {
    Folder folder{"send"};
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
        Pass(std::chrono::seconds(2));
    }
    /// Market time passes; the desk takes every event and runs its timers.
    void Pass(std::chrono::milliseconds span) {
        for (auto t = std::chrono::milliseconds(0); t < span; t += std::chrono::milliseconds(200)) {
            platform.advance(std::chrono::milliseconds(200));
            desk.DrainPlatformEvents();
            desk.Timer200ms();
        }
        desk.Timer1sec();
    }
};

/// What the bare loop sends: the orders of a BUY BID click, worked out beforehand.
struct BareOrder {
    std::string symbol;
    std::string destination;
    int32_t quantity = 0;
    double limit = 0;
};

std::vector<BareOrder> BareOrders(Desk& d) {
    std::vector<ExecutionLine> lines = d.desk.Stocks().ExecutionLines();
    for (size_t row = 0; row < lines.size(); ++row) {
        if (const Quote* q = d.desk.Quotes().QuoteAt(static_cast<int>(row))) {
            lines[row].bidValue = q->m_fBidPrice;
            lines[row].askValue = q->m_fAskPrice;
            lines[row].lastValue = q->m_fLastPrice;
        }
    }
    const SendPlan plan = PlanSend(BuyBid, SendLines::Of(lines), TickTable::UsEquities());
    std::vector<BareOrder> out;
    for (const PlannedOrder& p : plan.orders) {
        if (p.sendable) {
            out.push_back({lines[p.line].symbol, lines[p.line].destination, p.quantity, p.limit});
        }
    }
    return out;
}

/// Passes a send on to the desk's own records, and notes when its last order has left: the
/// send hands its orders over right after the last SubmitOrder returns.
class LastSubmit final : public SendListener {
public:
    explicit LastSubmit(SendListener& records) : m_records(records) {}
    void SendBegins(int16_t seq, std::string_view name, std::span<const QVXOrder* const> orders,
                    std::string_view overrides) override {
        m_records.SendBegins(seq, name, orders, overrides);
    }
    void SendContinues(int16_t seq, std::span<const QVXOrder* const> orders) override {
        m_records.SendContinues(seq, orders);
    }
    void Submitted(int32_t result) override { m_records.Submitted(result); }
    void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) override {
        at = bench::WallMs();
        m_records.Handed(orders);
    }
    void SendEnds(int16_t seq) override { m_records.SendEnds(seq); }

    double at = 0; ///< when the last order's SubmitOrder had returned

private:
    SendListener& m_records;
};

struct Click {
    double toLastSubmit = 0; ///< ms
    double whole = 0;        ///< ms, until ExecuteBasket returns
    int sent = 0;            ///< orders submitted
    int16_t basketSeq = 0;   ///< the send's number
};

/// One click; fails the program when the basket did not go out.
Click TimedClick(Desk& d) {
    d.clock.set(d.clock.now() + std::chrono::minutes(1)); // no repeat-send check in the way
    LastSubmit last(d.desk.Records());
    d.desk.Execution().setListener(&last);
    const double start = bench::WallMs();
    const ExecuteReport report = d.desk.ExecuteBasket(BuyBid, "ACCT01");
    const Click click{last.at - start, bench::WallMs() - start, report.ordersSubmitted,
                      report.basketSeq};
    d.desk.Execution().setListener(&d.desk.Records());
    if (report.outcome != ExecuteOutcome::Sent || report.ordersSubmitted < Lines * 9 / 10 ||
        !report.submitErrors.empty()) {
        std::fprintf(stderr, "outcome %d, %d submitted, %zu not sent, %zu refused\n",
                     static_cast<int>(report.outcome), report.ordersSubmitted,
                     report.notSent.size(), report.submitErrors.size());
        std::exit(1);
    }
    return click;
}

double BareLoopMs(Desk& d, const std::vector<BareOrder>& orders, int16_t basketSeq) {
    // The click's own memo, and client order ids of the same length as the click's (another
    // prefix of as many letters, for ids of their own): the simulator keeps and reports
    // texts of the same lengths, which decide whether they need memory of their own.
    const std::string date = FormatYyyymmdd(d.clock.localNow());
    std::vector<std::string> ids;
    for (size_t i = 0; i < orders.size(); ++i) {
        ids.push_back(BasketClOrderID("BARE01", date, basketSeq, static_cast<int32_t>(i + 1)));
    }
    const std::string memo = BasketMemo(d.desk.CurrentBasketName(), basketSeq);
    int refused = 0;
    const double start = bench::WallMs();
    for (size_t i = 0; i < orders.size(); ++i) {
        const BareOrder& o = orders[i];
        auto order = d.platform.CreateOrder();
        order->setMemo(memo);
        order->setAccount("ACCT01");
        order->setSymbol(o.symbol);
        order->setQuantity(o.quantity);
        order->setDestination(o.destination);
        order->setTif("D");
        order->setPriceType(OrderPriceType::Limit);
        order->setSide("BUY");
        order->setLmtPrice(o.limit);
        order->setClOrderID(ids[i]);
        refused += order->SubmitOrder() < 0;
    }
    const double ms = bench::WallMs() - start;
    if (refused > 0) {
        std::fprintf(stderr, "the simulator refused %d bare orders\n", refused);
        std::exit(1);
    }
    return ms;
}

/// One timed piece of UI-thread work; keeps the longest.
template <typename Work> void Slice(double& longest, Work&& work) {
    const double start = bench::WallMs();
    work();
    longest = std::max(longest, bench::WallMs() - start);
}

/// The longest single piece of UI-thread work from the click until the basket's
/// acknowledgements and first fills are shown.
double LongestStallMs(Desk& d) {
    double longest = 0;
    Slice(longest, [&] { TimedClick(d); });
    for (int tick = 0; tick < 10; ++tick) {
        d.platform.advance(std::chrono::milliseconds(200)); // the simulator's own thread
        while (d.platform.Events().size() > 0) {
            Slice(longest, [&] { d.desk.DrainPlatformEvents(PumpBatch); });
        }
        Slice(longest, [&] { d.desk.Timer200ms(); });
        if (tick % 5 == 4) {
            Slice(longest, [&] { d.desk.Timer1sec(); });
        }
    }
    return longest;
}

} // namespace

int main() {
    Desk d;
    std::vector<double> ratios;
    std::vector<double> wholeRatios;
    std::vector<double> clicks;
    std::vector<double> wholes;
    std::vector<double> loops;
    std::vector<double> stalls;
    for (int round = 0; round < Rounds; ++round) {
        const Click click = TimedClick(d);
        // What the click sent, worked out from the same quotes: the bare loop sends it too.
        const std::vector<BareOrder> bare = BareOrders(d);
        if (static_cast<int>(bare.size()) != click.sent) {
            std::fprintf(stderr, "the click sent %d orders, the bare loop would send %zu\n",
                         click.sent, bare.size());
            return 1;
        }
        d.Pass(std::chrono::seconds(1));
        const double loop = BareLoopMs(d, bare, click.basketSeq);
        d.Pass(std::chrono::seconds(1));
        clicks.push_back(click.toLastSubmit);
        wholes.push_back(click.whole);
        loops.push_back(loop);
        ratios.push_back(click.toLastSubmit / loop);
        wholeRatios.push_back(click.whole / loop);
        stalls.push_back(LongestStallMs(d));
        std::printf("round %d: click to last SubmitOrder %.1f ms, bare loop %.1f ms (%zu orders), "
                    "%.2fx; whole click %.1f ms (%.2fx); longest UI-thread stall of a send "
                    "%.1f ms\n",
                    round + 1, click.toLastSubmit, loop, bare.size(), ratios.back(), click.whole,
                    wholeRatios.back(), stalls.back());
    }
    std::printf("Click to last SubmitOrder through TradingDesk::ExecuteBasket vs a bare loop "
                "submitting the same orders to the same simulator: median %.1f ms vs %.1f ms "
                "(%.2fx); the whole click, tracking and the journal's end of the send included: "
                "median %.1f ms (%.2fx)\n",
                bench::Median(clicks), bench::Median(loops), bench::Median(ratios),
                bench::Median(wholes), bench::Median(wholeRatios));
    bench::Report("click -> last SubmitOrder, 5,000 lines: TradingDesk::ExecuteBasket vs bare "
                  "SubmitOrder loop, same SimPlatform (wall time)",
                  "x", ratios, {"<=", 1.15});
    bench::Report(
        "longest UI-thread stall while a 5,000-line basket is sent (simulator; wall time of the "
        "longest piece)",
        "ms", stalls, {"<", 50});
    return 0;
}
