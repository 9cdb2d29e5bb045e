// A 10,000-line spreadsheet export (UTF-8 with a byte-order mark, CR LF, a header row,
// quoted cells): the preview (read, split, check every line) and the store (one
// transaction), each against the exact basket file path over the same 10,000 lines in the
// same run: the reader for the preview, the stepwise import for the store.
#include "baskets/BasketFileReader.h"
#include "baskets/BasketImport.h"
#include "baskets/SpreadsheetImport.h"
#include "common/MessageBox.h"
#include "storage/BasketDatabase.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

namespace {

using namespace wicker;
namespace fs = std::filesystem;

constexpr int kLines = 10000;

class SilentBoxes : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest&) override { return MsgAnswer::Ok; }
};

// A folder of its own, removed at the end.
struct BenchFolder {
    fs::path path;
    BenchFolder() {
        std::random_device seed;
        path = fs::temp_directory_path() / ("wicker-bench-" + std::to_string(seed()));
        fs::create_directories(path);
        std::ofstream(path / "sheet.csv", std::ios::binary) << Sheet();
        std::ofstream(path / "basket.txt", std::ios::binary) << BasketFile();
    }
    ~BenchFolder() {
        std::error_code ec;
        fs::remove_all(path, ec);
    }
    static std::string Sheet() {
        std::string text = "\xEF\xBB\xBF\"Ticker\",\"Order Qty\",\"Route\",\"Description\"\r\n";
        for (int i = 0; i < kLines; ++i) {
            text += "S" + std::to_string(i) + ",\"" + std::to_string(1 + i % 9) + ",000\",NYSE," +
                    "\"Stock " + std::to_string(i) + ", Inc.\"\r\n";
        }
        return text + "\r\n";
    }
    static std::string BasketFile() {
        std::string text;
        for (int i = 0; i < kLines; ++i) {
            text += "S" + std::to_string(i) + "," + std::to_string(1 + i % 9) + "000,NYSE\r\n";
        }
        return text;
    }
};

BenchFolder& Folder() {
    static BenchFolder folder;
    return folder;
}

std::unique_ptr<Database> FreshDatabase(const fs::path& path) {
    fs::remove(path);
    CreateBasketDatabase(path);
    auto db = Database::Open(path);
    CreateInitialData(*db);
    RunVersionLadder(*db, "1.2.0");
    return db;
}

const SpreadsheetDefaults kDefaults{"NYSE", "ARCA", {"ARCA", "NYSE"}};

void BM_PreviewSpreadsheet(benchmark::State& state) {
    for (auto _ : state) {
        const auto basket = LoadSpreadsheetBasket(Folder().path / "sheet.csv", kDefaults);
        if (!basket.storable() || basket.lines.size() != kLines) {
            state.SkipWithError("the sheet did not read as 10,000 good lines");
        }
        benchmark::DoNotOptimize(basket);
    }
}
BENCHMARK(BM_PreviewSpreadsheet)->Unit(benchmark::kMillisecond);

void BM_BaselineReadBasketFile(benchmark::State& state) {
    for (auto _ : state) {
        BasketFileReader reader(Folder().path / "basket.txt");
        BasketFileLine line;
        int lines = 0;
        while (reader.next(line)) {
            ++lines;
        }
        benchmark::DoNotOptimize(lines);
    }
}
BENCHMARK(BM_BaselineReadBasketFile)->Unit(benchmark::kMillisecond);

void BM_StoreSpreadsheet(benchmark::State& state) {
    const auto basket = LoadSpreadsheetBasket(Folder().path / "sheet.csv", kDefaults);
    for (auto _ : state) {
        state.PauseTiming();
        auto db = FreshDatabase(Folder().path / "store.mdb");
        state.ResumeTiming();
        if (StoreSpreadsheetBasket(*db, basket, "Sheet", "S").basketNum == 0) {
            state.SkipWithError("the basket was not stored");
        }
    }
}
BENCHMARK(BM_StoreSpreadsheet)->Unit(benchmark::kMillisecond);

void BM_BaselineExactImport(benchmark::State& state) {
    SilentBoxes boxes;
    for (auto _ : state) {
        state.PauseTiming();
        auto db = FreshDatabase(Folder().path / "exact.mdb");
        state.ResumeTiming();
        ImportFocus focus = ImportFocus::None;
        auto import = StartBasketImport(
            *db, boxes, {"File", "F", (Folder().path / "basket.txt").string(), "NYSE", "ARCA"},
            focus);
        while (import && import->step(500)) {
        }
        if (!import || import->linesImported() != kLines) {
            state.SkipWithError("the basket file was not imported");
        }
    }
}
BENCHMARK(BM_BaselineExactImport)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
