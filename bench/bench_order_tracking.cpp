// Order tracking at the scale of a busy day: updates found through the record-id index
// against the linear walk of all orders, the per-basket list rebuild, and the memory the
// tracked orders take. Prints the ratios measured in this run.
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "trading/orders/OrderTracker.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <malloc.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Ok; }
};

constexpr int OrdersPerBasket = 500;

QVXOrderStruct MakeRecord(int32_t id, int32_t version) {
    const int basket = id / OrdersPerBasket;
    QVXOrderStruct r;
    r.OrderRecordId = id;
    r.Memo = "Basket" + std::to_string(basket) + "-" + std::to_string(basket + 1) + "-/bskt";
    r.ClOrderID = "ACCT01-20240315-" + std::to_string(basket + 1) + "-" +
                  std::to_string(id % OrdersPerBasket + 1);
    r.Account = "ACCT01";
    r.Destination = "NASDAQ";
    r.Symbol = "SYM" + std::to_string(id % 3000);
    r.Instrument = r.Symbol;
    r.Side = id % 3 == 0 ? "S" : "B";
    r.Tif = "D";
    r.OrderTime = "09:30:00";
    r.UpdateTime = "09:30:0" + std::to_string(version % 10);
    r.Quantity = 100 + id % 900;
    r.CumExecQuantity = std::min(r.Quantity, version * 10);
    r.LvsQuantity = r.Quantity - r.CumExecQuantity;
    r.AvgExecPrice = 10 + (id % 1000) / 100.0;
    r.LmtPrice = r.AvgExecPrice;
    return r;
}

/// Deterministic record ids of the updates: every order gets updates, in a scattered order.
std::vector<int32_t> UpdateIds(int orders, int updates) {
    std::vector<int32_t> ids(static_cast<size_t>(updates));
    uint32_t x = 12345;
    for (auto& id : ids) {
        x = x * 1664525u + 1013904223u;
        id = static_cast<int32_t>((x >> 8) % static_cast<uint32_t>(orders));
    }
    return ids;
}

/// The platform hands over one record per event; the loops below only retarget it, so that
/// they time the lookup and the copy, not the making of the record.
void Retarget(QVXOrderStruct& r, int32_t id, int32_t version) {
    r.OrderRecordId = id;
    r.CumExecQuantity = std::min(r.Quantity, version * 10);
    r.LvsQuantity = r.Quantity - r.CumExecQuantity;
}

void Populate(OrderTracker& tracker, int orders) {
    for (int32_t id = 0; id < orders; ++id) {
        tracker.OnQVXOrderUpdate(MakeRecord(id, 0));
    }
}

/// The walk the tracker replaces: the first order whose record id matches, from the front.
class LinearWalk {
public:
    explicit LinearWalk(int orders) {
        for (int32_t id = 0; id < orders; ++id) {
            OrderUpdate o;
            o.UpdateOrder(MakeRecord(id, 0), true);
            m_orders.push_back(std::move(o));
        }
    }
    void OnQVXOrderUpdate(const QVXOrderStruct& r) {
        for (OrderUpdate& o : m_orders) {
            if (o.m_nOrderRecordId == r.OrderRecordId) {
                o.UpdateOrder(r, false);
                return;
            }
        }
    }
    /// Groups the orders by walking the row list for each order.
    size_t GroupLinearly() const {
        std::vector<OrderRow> rows;
        for (const OrderUpdate& o : m_orders) {
            OrderRow* row = nullptr;
            for (OrderRow& r : rows) {
                if (r.m_nBasketNum == o.m_nBasketSeq && r.m_strBasketName == o.m_strBasketId) {
                    row = &r;
                    break;
                }
            }
            if (row == nullptr) {
                rows.emplace_back();
                row = &rows.back();
                row->m_nBasketNum = o.m_nBasketSeq;
                row->m_strBasketName = o.m_strBasketId;
            }
            row->Add(o);
        }
        return rows.size();
    }

private:
    std::deque<OrderUpdate> m_orders;
};

void BM_UpdatesIndexed(benchmark::State& state) {
    const int orders = static_cast<int>(state.range(0));
    const int updates = static_cast<int>(state.range(1));
    SilentBoxes boxes;
    SystemClock clock;
    OrderTracker tracker(boxes, clock);
    Populate(tracker, orders);
    const auto ids = UpdateIds(orders, updates);
    QVXOrderStruct r = MakeRecord(0, 1);
    for (auto _ : state) {
        int32_t version = 1;
        for (int32_t id : ids) {
            Retarget(r, id, ++version % 50);
            tracker.OnQVXOrderUpdate(r);
        }
    }
    state.counters["ns_per_update"] = benchmark::Counter(
        static_cast<double>(updates),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_UpdatesLinearWalk(benchmark::State& state) {
    const int orders = static_cast<int>(state.range(0));
    const int updates = static_cast<int>(state.range(1));
    LinearWalk walk(orders);
    const auto ids = UpdateIds(orders, updates);
    QVXOrderStruct r = MakeRecord(0, 1);
    for (auto _ : state) {
        int32_t version = 1;
        for (int32_t id : ids) {
            Retarget(r, id, ++version % 50);
            walk.OnQVXOrderUpdate(r);
        }
    }
    state.counters["ns_per_update"] = benchmark::Counter(
        static_cast<double>(updates),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_FillOrderList(benchmark::State& state) {
    const int orders = static_cast<int>(state.range(0));
    SilentBoxes boxes;
    SystemClock clock;
    OrderTracker tracker(boxes, clock);
    Populate(tracker, orders);
    for (auto _ : state) {
        tracker.FillOrderList();
        benchmark::DoNotOptimize(tracker.BasketListLines().data());
    }
}

void BM_GroupByLinearWalk(benchmark::State& state) {
    const int orders = static_cast<int>(state.range(0));
    LinearWalk walk(orders);
    for (auto _ : state) {
        benchmark::DoNotOptimize(walk.GroupLinearly());
    }
}

void BM_MemoryOfTrackedOrders(benchmark::State& state) {
    const int orders = static_cast<int>(state.range(0));
    double megabytes = 0;
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        {
            SilentBoxes boxes;
            SystemClock clock;
            auto tracker = std::make_unique<OrderTracker>(boxes, clock);
            Populate(*tracker, orders);
            tracker->FillOrderList();
            megabytes = static_cast<double>(mallinfo2().uordblks - before) / (1024.0 * 1024.0);
        }
    }
    state.counters["MB"] = megabytes;
}

BENCHMARK(BM_UpdatesIndexed)
    ->Args({20000, 200000})
    ->Args({50000, 200000})
    ->Unit(benchmark::kMillisecond);
// The walk over 50,000 orders takes half a minute for 200,000 updates: a tenth of them
// gives the same cost per update.
BENCHMARK(BM_UpdatesLinearWalk)
    ->Args({20000, 200000})
    ->Args({50000, 20000})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FillOrderList)->Arg(20000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GroupByLinearWalk)->Arg(20000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MemoryOfTrackedOrders)
    ->Arg(20000)
    ->Arg(50000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// Keeps every run's figures for the summary after the table.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            m_time[run.benchmark_name()] = run.GetAdjustedRealTime();
            for (const auto& [name, counter] : run.counters) {
                m_counters[run.benchmark_name() + ":" + name] = counter.value;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    double time(const std::string& name) const { return find(m_time, name); }
    double counter(const std::string& name) const { return find(m_counters, name); }

private:
    static double find(const std::map<std::string, double>& m, const std::string& key) {
        const auto it = m.find(key);
        return it == m.end() ? 0 : it->second;
    }
    std::map<std::string, double> m_time;
    std::map<std::string, double> m_counters;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nSummary (same run)\n");
    for (const char* orders : {"20000", "50000"}) {
        const std::string walked = std::string(orders) == "20000" ? "/200000" : "/20000";
        const double indexed =
            reporter.counter("BM_UpdatesIndexed/" + std::string(orders) + "/200000:ns_per_update");
        const double linear = reporter.counter("BM_UpdatesLinearWalk/" + std::string(orders) +
                                               walked + "/iterations:1:ns_per_update");
        if (indexed > 0 && linear > 0) {
            std::printf("%s orders, updates: index %.0f ns/update, linear walk %.0f ns/update, "
                        "%.0fx faster (target >= 50x)\n",
                        orders, indexed * 1e9, linear * 1e9, linear / indexed);
        }
        const double fill = reporter.time(std::string("BM_FillOrderList/") + orders);
        const double group = reporter.time(std::string("BM_GroupByLinearWalk/") + orders);
        if (fill > 0) {
            std::printf("%s orders: FillOrderList %.2f ms (target < 20 ms), grouping by linear "
                        "walk %.2f ms\n",
                        orders, fill, group);
        }
        const double mb = reporter.counter(std::string("BM_MemoryOfTrackedOrders/") + orders +
                                           "/iterations:1:MB");
        if (mb > 0) {
            std::printf("%s orders: %.1f MB tracked (target < 100 MB for 20000)\n", orders, mb);
        }
    }
    benchmark::Shutdown();
    return 0;
}
