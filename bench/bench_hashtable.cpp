// HashTable against std::unordered_map on the same keys: add, lookup hit, lookup miss,
// remove, at 1,000 / 10,000 / 100,000 keys, with the default 1,024 buckets and with as
// many buckets as keys. Prints each operation's time ratio (HashTable / unordered_map).
#include "storage/HashTable.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

std::vector<std::string> MakeKeys(int n, const char* prefix) {
    std::vector<std::string> keys;
    keys.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        keys.push_back(prefix + std::to_string(i * 7919 % 1000003));
    }
    return keys;
}

template <class F> double NsPerOp(size_t ops, F&& f) {
    const auto t0 = std::chrono::steady_clock::now();
    f();
    const auto t1 = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::nano>(t1 - t0).count() / static_cast<double>(ops);
}

struct Times {
    double add, hit, miss, remove;
};

Times RunHashTable(const std::vector<std::string>& keys, const std::vector<std::string>& absent,
                   int32_t buckets) {
    wicker::HashTable t;
    t.SetSize(buckets, static_cast<int32_t>(keys.size()), 1024);
    Times r{};
    r.add = NsPerOp(keys.size(), [&] {
        for (size_t i = 0; i < keys.size(); ++i) {
            t.Add(keys[i], static_cast<int64_t>(i));
        }
    });
    int64_t found = 0;
    r.hit = NsPerOp(keys.size(), [&] {
        for (const auto& k : keys) {
            found += t.Exists(k);
        }
    });
    r.miss = NsPerOp(absent.size(), [&] {
        for (const auto& k : absent) {
            found += t.Exists(k);
        }
    });
    r.remove = NsPerOp(keys.size(), [&] {
        for (const auto& k : keys) {
            t.Remove(k);
        }
    });
    benchmark::DoNotOptimize(found);
    return r;
}

Times RunStd(const std::vector<std::string>& keys, const std::vector<std::string>& absent) {
    std::unordered_map<std::string, int64_t> m;
    Times r{};
    r.add = NsPerOp(keys.size(), [&] {
        for (size_t i = 0; i < keys.size(); ++i) {
            m.emplace(keys[i], static_cast<int64_t>(i));
        }
    });
    int64_t found = 0;
    r.hit = NsPerOp(keys.size(), [&] {
        for (const auto& k : keys) {
            found += static_cast<int64_t>(m.count(k));
        }
    });
    r.miss = NsPerOp(absent.size(), [&] {
        for (const auto& k : absent) {
            found += static_cast<int64_t>(m.count(k));
        }
    });
    r.remove = NsPerOp(keys.size(), [&] {
        for (const auto& k : keys) {
            m.erase(k);
        }
    });
    benchmark::DoNotOptimize(found);
    return r;
}

void BM_HashTableLookup(benchmark::State& state) {
    const auto keys = MakeKeys(static_cast<int>(state.range(0)), "K");
    wicker::HashTable t;
    t.SetSize(static_cast<int32_t>(keys.size()), static_cast<int32_t>(keys.size()), 1024);
    for (const auto& k : keys) {
        t.Add(k, int64_t{1});
    }
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(t.Exists(keys[i++ % keys.size()]));
    }
}
BENCHMARK(BM_HashTableLookup)->Arg(1000)->Arg(100000);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::printf("\nns per operation, HashTable / std::unordered_map (ratio)\n");
    std::printf("%8s %8s %22s %22s %22s %22s\n", "keys", "buckets", "add", "hit", "miss", "remove");
    for (int n : {1000, 10000, 100000}) {
        const auto keys = MakeKeys(n, "K");
        const auto absent = MakeKeys(n, "Z");
        const Times base = RunStd(keys, absent);
        for (int32_t buckets : {1024, n}) {
            const Times t = RunHashTable(keys, absent, buckets);
            auto cell = [](double a, double b) {
                static char buf[4][40];
                static int k = 0;
                char* out = buf[k++ % 4];
                std::snprintf(out, 40, "%7.0f/%-6.0f(%5.1fx)", a, b, a / b);
                return out;
            };
            std::printf("%8d %8d %22s %22s %22s %22s\n", n, buckets, cell(t.add, base.add),
                        cell(t.hit, base.hit), cell(t.miss, base.miss),
                        cell(t.remove, base.remove));
        }
    }
    benchmark::Shutdown();
    return 0;
}
