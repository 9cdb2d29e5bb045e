// The FIX memo journal (fix/memos.txt): any file is read without a crash, and an entry
// appended to it by the next run reads back as written, whatever the file ended with
// (a line cut short by a crash included). The input is the journal file; its last bytes
// after a 0x1E byte give the id and memo to append.
#include "FuzzSupport.h"
#include "platform/fix/MemoJournal.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

namespace {

std::string Clean(std::string text) {
    for (char& c : text) {
        if (c == '\t' || c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace wicker;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const size_t cut = bytes.rfind('\x1e');
    const std::string file = bytes.substr(0, cut);
    const std::string tail =
        cut == std::string::npos ? "FUZZ-1\tBasket-1-/bskt" : bytes.substr(cut + 1);
    const size_t tab = tail.find('\t');
    const std::string id = "ID" + tail.substr(0, tab);
    const std::string memo = tab == std::string::npos ? "" : tail.substr(tab + 1);

    static const auto folder = fuzz::FreshFolder("memo");
    const auto path = folder / "memos.txt";
    std::ofstream(path, std::ios::binary | std::ios::trunc) << file;
    const auto before = MemoJournal::Read(path);
    {
        auto journal = MemoJournal::Open(path);
        fuzz::Check(journal.ok());
        journal.value().append(id, memo);
        fuzz::Check(journal.value().flush());
    }
    auto expected = before;
    expected.emplace_back(Clean(id), Clean(memo));
    fuzz::Check(MemoJournal::Read(path) == expected);
    return 0;
}
