// libFuzzer harness for basket text files: any bytes must import line by line into a
// fresh basket or stop at a reported line, never crash; the scanner must split a line
// the same whether it is fed whole or a character at a time. Build: see fuzz/README.md
// (sources: src/common, src/storage and src/baskets without ImportDefaults.cpp).
#include "baskets/BasketImport.h"
#include "baskets/BasketLineScanner.h"
#include "common/MessageBox.h"
#include "storage/BasketDatabase.h"
#include "storage/Database.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

class SilentBoxes : public wicker::MessageBoxes {
public:
    using wicker::MessageBoxes::show;
    wicker::MsgAnswer show(const wicker::MessageRequest&) override { return wicker::MsgAnswer::Ok; }
};

std::filesystem::path Scratch() {
    static const std::filesystem::path dir = [] {
        auto d = std::filesystem::temp_directory_path() /
                 ("fuzz_basket_file_" + std::to_string(::getpid()));
        std::filesystem::create_directories(d);
        return d;
    }();
    return dir;
}

wicker::Database& Db() {
    static std::unique_ptr<wicker::Database> db = [] {
        const auto path = Scratch() / "baskets.mdb";
        std::filesystem::remove(path);
        wicker::CreateBasketDatabase(path);
        auto d = wicker::Database::Open(path);
        wicker::CreateInitialData(*d);
        wicker::RunVersionLadder(*d, "1.2.0");
        return d;
    }();
    return *db;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    // The scanner alone: whole-line and character-by-character feeding agree.
    wicker::BasketLineScanner scanner;
    for (char c : bytes) {
        scanner.feed(c);
    }
    if (!(scanner.take() == wicker::ScanBasketLine(bytes))) {
        __builtin_trap();
    }

    // The whole import, in small steps, into a basket that is removed afterwards.
    const auto file = Scratch() / "in.txt";
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << bytes;
    }
    wicker::Database& db = Db();
    SilentBoxes boxes;
    wicker::ImportFocus focus;
    auto import =
        wicker::StartBasketImport(db, boxes, {"Fuzz", "FZ", file.string(), "NYSE", "ARCA"}, focus);
    if (import) {
        while (import->step(7)) {
        }
        wicker::ReportBasketImport(boxes, *import);
        db.ExecuteSql("DELETE FROM tblBasketDetails WHERE intBasketNum = " +
                      std::to_string(import->basketNum()));
        db.ExecuteSql("DELETE FROM tblBaskets WHERE intBasketNum = " +
                      std::to_string(import->basketNum()));
    }
    return 0;
}
