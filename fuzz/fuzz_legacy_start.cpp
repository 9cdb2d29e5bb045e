// Legacy account and basket files through the first start of the program in a new data
// folder. The input holds account.txt, Baskets/basket.txt and two basket files, split at
// 0x1E bytes. Property: the first start always succeeds (legacy files can only cost a
// message), never a crash or a read outside the folder; every imported account is a line
// of account.txt and every imported basket line a line of a basket file.
#include "FuzzSupport.h"
#include "storage/Database.h"
#include "storage/TextFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace {

void Write(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

std::vector<std::string> LinesOf(const std::filesystem::path& path) {
    try {
        return wicker::ReadTextLines(path);
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace wicker;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> parts;
    size_t start = 0;
    for (size_t at; parts.size() < 3 && (at = bytes.find('\x1e', start)) != std::string::npos;
         start = at + 1) {
        parts.push_back(bytes.substr(start, at - start));
    }
    parts.push_back(bytes.substr(start));
    parts.resize(4);

    const auto folder = fuzz::FreshFolder("legacy") / "data";
    Write(folder / "account.txt", parts[0]);
    Write(folder / "Baskets" / "basket.txt", parts[1]);
    Write(folder / "Baskets" / "a.txt", parts[2]);
    Write(folder / "Baskets" / "b.txt", parts[3]);

    fuzz::SimDesk run(folder);
    fuzz::Check(run.loaded);
    Database& db = run.desk.db();
    const auto accounts = LinesOf(folder / "account.txt");
    for (Recordset rs = db.OpenRecordset("SELECT strAcct FROM tblAccount"); !rs.IsEOF();
         rs.MoveNext()) {
        fuzz::Check(Contains(accounts, rs.Field("strAcct").text()));
    }
    // A list that names other files of the folder (the database itself is one) may
    // import their lines too; only lists that stay among the four are checked line by line.
    if (parts[1].find_first_of("/\\") != std::string::npos ||
        parts[1].find("..") != std::string::npos) {
        return 0;
    }
    const auto a = LinesOf(folder / "Baskets" / "a.txt");
    const auto b = LinesOf(folder / "Baskets" / "b.txt");
    const auto list = LinesOf(folder / "Baskets" / "basket.txt");
    for (Recordset rs = db.OpenRecordset("SELECT strSym, strDest FROM tblBasketDetails");
         !rs.IsEOF(); rs.MoveNext()) {
        const std::string sym = rs.Field("strSym").text();
        const auto starts = [&](const std::vector<std::string>& lines) {
            return std::any_of(lines.begin(), lines.end(),
                               [&](const std::string& l) { return l.rfind(sym + ",", 0) == 0; });
        };
        fuzz::Check(starts(a) || starts(b) || starts(list));
    }
    return 0;
}
