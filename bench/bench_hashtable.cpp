// HashTable against std::unordered_map<std::string, int64_t> on the same keys: add, lookup
// hit, lookup miss and remove at 1,000 / 10,000 / 100,000 keys. HashTable runs twice: with
// its default 1,024 buckets (long chains at 100,000 keys) and with as many buckets as keys.
// The summary at the end gives each CPU time (steadier than wall time on a shared machine)
// as a ratio to unordered_map's in this same run, next to the mean number of keys a hit
// compares: for the keys measured (cmp/hit) and for "K" + number keys (K+num).
#include "storage/HashTable.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

const std::vector<int> kSizes = {1000, 10000, 100000};

struct KeySet {
    std::vector<std::string> present; // in the order they are added
    std::vector<std::string> asked;   // the same keys shuffled: lookup and remove order
    std::vector<std::string> absent;  // drawn alike, never added
};

// Symbol-like keys of 6 to 8 letters and digits, as an order or account id might be. All
// bytes are below 128, so no key has a negative hash. Keys of one prefix and a decimal
// number would crowd far fewer buckets: the summary shows their chain cost too.
KeySet MakeKeys(int n) {
    static constexpr char kChars[] =
        "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::mt19937 rng(20261122);
    std::uniform_int_distribution<size_t> pick(0, sizeof kChars - 2);
    std::uniform_int_distribution<size_t> length(6, 8);
    std::unordered_set<std::string> seen;
    std::vector<std::string> keys;
    while (keys.size() < 2 * static_cast<size_t>(n)) {
        std::string k(length(rng), ' ');
        for (char& c : k) {
            c = kChars[pick(rng)];
        }
        if (seen.insert(k).second) {
            keys.push_back(std::move(k));
        }
    }
    KeySet set;
    set.present.assign(keys.begin(), keys.begin() + n);
    set.absent.assign(keys.begin() + n, keys.end());
    set.asked = set.present;
    std::shuffle(set.asked.begin(), set.asked.end(), rng);
    return set;
}

// "K" and a decimal number: only the low four bits of a byte vary.
std::vector<std::string> NumberedKeys(int n) {
    std::vector<std::string> keys;
    for (int i = 0; i < n; ++i) {
        keys.push_back("K" + std::to_string(i * 7919 % 1000003));
    }
    return keys;
}

class StdMap {
public:
    explicit StdMap(size_t) {}
    void Add(const std::string& k, int64_t v) { m_map.emplace(k, v); }
    bool Exists(const std::string& k) const { return m_map.count(k) != 0; }
    void Remove(const std::string& k) { m_map.erase(k); }

private:
    std::unordered_map<std::string, int64_t> m_map;
};

class TableDefault {
public:
    explicit TableDefault(size_t) {}
    void Add(const std::string& k, int64_t v) { m_table.Add(k, v); }
    bool Exists(const std::string& k) const { return m_table.Exists(k); }
    void Remove(const std::string& k) { m_table.Remove(k); }

protected:
    wicker::HashTable m_table;
};

class TableSized : public TableDefault {
public:
    explicit TableSized(size_t n) : TableDefault(n) {
        const auto size = static_cast<int32_t>(n);
        m_table.SetSize(size, size, 1024);
    }
};

template <class Store> std::unique_ptr<Store> Filled(const std::vector<std::string>& keys) {
    auto store = std::make_unique<Store>(keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        store->Add(keys[i], static_cast<int64_t>(i));
    }
    return store;
}

template <class Store> void BM_Add(benchmark::State& state, int n) {
    const auto keys = MakeKeys(n).present;
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<Store>(keys.size());
        state.ResumeTiming();
        for (size_t i = 0; i < keys.size(); ++i) {
            store->Add(keys[i], static_cast<int64_t>(i));
        }
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * n);
}

template <class Store> void Lookups(benchmark::State& state, int n, bool hit) {
    const KeySet keys = MakeKeys(n);
    const auto store = Filled<Store>(keys.present);
    const auto& asked = hit ? keys.asked : keys.absent;
    for (auto _ : state) {
        size_t found = 0;
        for (const auto& k : asked) {
            found += store->Exists(k) ? 1 : 0;
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

template <class Store> void BM_Hit(benchmark::State& state, int n) {
    Lookups<Store>(state, n, true);
}

template <class Store> void BM_Miss(benchmark::State& state, int n) {
    Lookups<Store>(state, n, false);
}

template <class Store> void BM_Remove(benchmark::State& state, int n) {
    const KeySet keys = MakeKeys(n);
    for (auto _ : state) {
        state.PauseTiming();
        auto store = Filled<Store>(keys.present);
        state.ResumeTiming();
        for (const auto& k : keys.asked) {
            store->Remove(k);
        }
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * n);
}

const char* const kOps[] = {"add", "hit", "miss", "remove"};

std::string Name(const char* op, const char* store, int n) {
    return std::string(op) + "/" + store + "/" + std::to_string(n);
}

template <class Store> void RegisterStore(const char* store) {
    using Fn = void (*)(benchmark::State&, int);
    const Fn fns[] = {BM_Add<Store>, BM_Hit<Store>, BM_Miss<Store>, BM_Remove<Store>};
    for (int n : kSizes) {
        for (size_t op = 0; op < std::size(kOps); ++op) {
            benchmark::RegisterBenchmark(Name(kOps[op], store, n).c_str(), fns[op], n)
                ->Unit(benchmark::kMicrosecond)
                ->MinTime(0.1);
        }
    }
}

// Keys compared per successful lookup, on average: the cost the chains add.
double ComparesPerHit(const std::vector<std::string>& keys, int32_t buckets) {
    std::vector<int64_t> length(static_cast<size_t>(buckets), 0);
    for (const auto& k : keys) {
        ++length[static_cast<size_t>(wicker::HashTable::HashCode(k) % buckets)];
    }
    double total = 0;
    for (int64_t l : length) {
        total += static_cast<double>(l * (l + 1) / 2);
    }
    return total / static_cast<double>(keys.size());
}

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            // One time per benchmark: the run itself, or the median of repetitions.
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (!run.error_occurred && (run.run_type == Run::RT_Iteration || median)) {
                m_times[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Time of one run, or 0 when it was filtered out.
    double Time(const std::string& name) const {
        const auto it = m_times.find(name);
        return it == m_times.end() ? 0 : it->second;
    }

private:
    std::map<std::string, double> m_times;
};

void PrintSummary(const SummaryReporter& r) {
    std::printf("\nHashTable time / std::unordered_map time, same run "
                "(ns per operation: HashTable / unordered_map)\n");
    std::printf("%7s %8s %8s %8s", "keys", "buckets", "cmp/hit", "K+num");
    for (const char* op : kOps) {
        std::printf("  %-22s", op);
    }
    std::printf("\n");
    for (int n : kSizes) {
        for (const bool sized : {false, true}) {
            const char* store = sized ? "tableSized" : "table1024";
            const int32_t buckets = sized ? n : 1024;
            std::printf("%7d %8d %8.1f %8.1f", n, buckets,
                        ComparesPerHit(MakeKeys(n).present, buckets),
                        ComparesPerHit(NumberedKeys(n), buckets));
            for (const char* op : kOps) {
                const double t = r.Time(Name(op, store, n));
                const double base = r.Time(Name(op, "map", n));
                if (t > 0 && base > 0) {
                    char cell[64];
                    std::snprintf(cell, sizeof cell, "%6.2fx (%.0f/%.0f)", t / base, t * 1e3 / n,
                                  base * 1e3 / n);
                    std::printf("  %-22s", cell);
                } else {
                    std::printf("  %-22s", "-");
                }
            }
            std::printf("\n");
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    RegisterStore<StdMap>("map");
    RegisterStore<TableDefault>("table1024");
    RegisterStore<TableSized>("tableSized");
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintSummary(reporter);
    benchmark::Shutdown();
    return 0;
}
