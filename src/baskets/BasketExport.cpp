#include "baskets/BasketExport.h"

#include "storage/TextFile.h"

#include <system_error>

namespace wicker {

std::string ProposedExportFileName(std::string_view basketName) {
    std::string out;
    for (char c : basketName) {
        if (c != ' ') {
            out += c;
        }
    }
    return out + ".txt";
}

std::filesystem::path ProposedExportPath(const std::filesystem::path& appFolder,
                                         std::string_view basketName) {
    return appFolder / "Baskets" / ProposedExportFileName(basketName);
}

std::vector<std::string> BasketExportLines(const std::vector<BasketLine>& lines) {
    std::vector<std::string> out;
    out.reserve(lines.size());
    for (const auto& l : lines) {
        out.push_back(l.symbol + "," + l.quantity + "," + l.destination);
    }
    return out;
}

void ExportBasketFile(const std::filesystem::path& path, const std::vector<BasketLine>& lines) {
    if (path.has_parent_path()) {
        std::error_code ec;
        std::filesystem::create_directories(path.parent_path(), ec);
    }
    WriteTextLines(path, BasketExportLines(lines));
}

} // namespace wicker
