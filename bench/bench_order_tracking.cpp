// Order tracking at the scale of a busy day, on the real OrderTracker: 200,000 order updates
// over 20,000 tracked orders, found through the record-id index, against the linear walk of
// all orders that the index replaces (the first order whose record id matches, from the
// front), each round timing both on the same updates; and the per-basket list rebuild.
// (Whole-process memory with 20,000 tracked orders: bench_order_memory.)
#include "BenchReport.h"
#include "BenchSupport.h"
#include "common/Clock.h"
#include "common/MessageBox.h"
#include "trading/orders/OrderTracker.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <deque>
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

constexpr int Orders = 20000;
constexpr int Updates = 200000;
constexpr int Rounds = 3;

template <typename Target> double TimeUpdatesMs(Target& target, const std::vector<int32_t>& ids) {
    QVXOrderStruct r = MakeRecord(0, 1);
    int32_t version = 1;
    const double start = bench::ThreadCpuMs();
    for (int32_t id : ids) {
        Retarget(r, id, ++version % 50);
        target.OnQVXOrderUpdate(r);
    }
    return bench::ThreadCpuMs() - start;
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

BENCHMARK(BM_FillOrderList)->Arg(20000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GroupByLinearWalk)->Arg(20000)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    SilentBoxes boxes;
    SystemClock clock;
    OrderTracker tracker(boxes, clock);
    Populate(tracker, Orders);
    LinearWalk walk(Orders);
    const std::vector<int32_t> ids = UpdateIds(Orders, Updates);
    std::vector<double> ratios;
    std::vector<double> fills;
    for (int round = 0; round < Rounds; ++round) {
        const double indexed = TimeUpdatesMs(tracker, ids);
        const double linear = TimeUpdatesMs(walk, ids);
        ratios.push_back(linear / indexed);
        const double start = bench::ThreadCpuMs();
        tracker.FillOrderList();
        fills.push_back(bench::ThreadCpuMs() - start);
        std::printf("round %d: %d updates over %d orders: OrderTracker %.1f ms (%.0f ns each), "
                    "linear walk %.0f ms, %.1fx; FillOrderList %.2f ms\n",
                    round + 1, Updates, Orders, indexed, indexed * 1e6 / Updates, linear,
                    linear / indexed, fills.back());
    }
    bench::Report("200,000 order updates over 20,000 tracked orders: linear walk / OrderTracker "
                  "(thread CPU time)",
                  "x", ratios, {">=", 50});
    bench::Report("FillOrderList over 20,000 tracked orders", "ms", fills, {"<", 20});
    return 0;
}
