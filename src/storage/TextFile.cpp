#include "storage/TextFile.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace wicker {
namespace {

constexpr int kPathFileAccess = 75;
const char* const kPathFileAccessText = "Path/File access error";

} // namespace

std::vector<std::string> ReadTextLines(const std::filesystem::path& path, std::uintmax_t maxBytes) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) {
        throw RuntimeError(err::FileNotFound, err::FileNotFoundText);
    }
    // A device or pipe never ends (/dev/zero would fill the memory): regular files only.
    if (!std::filesystem::is_regular_file(path, ec)) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    // Read in chunks and stop past the limit, so a file that grows meanwhile is caught too.
    std::string bytes;
    char chunk[64 * 1024];
    while (in.read(chunk, sizeof chunk) || in.gcount() > 0) {
        bytes.append(chunk, static_cast<size_t>(in.gcount()));
        if (bytes.size() > maxBytes) {
            throw RuntimeError(kPathFileAccess, kPathFileAccessText);
        }
    }
    if (in.bad()) {
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find('\n', start);
        const size_t next = end == std::string::npos ? bytes.size() : end + 1;
        if (end == std::string::npos) {
            end = bytes.size();
        }
        size_t len = end - start;
        if (len > 0 && bytes[start + len - 1] == '\r' && end < bytes.size()) {
            --len;
        }
        lines.push_back(Cp1252ToUtf8(std::string_view(bytes).substr(start, len)));
        start = next;
    }
    return lines;
}

bool IsFileInside(const std::filesystem::path& path, const std::filesystem::path& folder) {
    std::error_code ec;
    const auto file = std::filesystem::weakly_canonical(path, ec);
    if (ec || !std::filesystem::is_regular_file(file, ec)) {
        return false;
    }
    const auto root = std::filesystem::weakly_canonical(folder, ec);
    if (ec) {
        return false;
    }
    const auto rel = file.lexically_relative(root);
    return !rel.empty() && *rel.begin() != "..";
}

void WriteTextLines(const std::filesystem::path& path, const std::vector<std::string>& lines) {
    const std::filesystem::path tmp = path.string() + ".tmp";
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        for (const auto& line : lines) {
            out << Utf8ToCp1252(line) << "\r\n";
        }
        out.flush();
        if (!out) {
            std::error_code ec;
            std::filesystem::remove(tmp, ec);
            throw RuntimeError(kPathFileAccess, kPathFileAccessText);
        }
    }
    std::error_code ec;
    std::filesystem::rename(tmp, path, ec);
    if (ec) {
        std::filesystem::remove(tmp, ec);
        throw RuntimeError(kPathFileAccess, kPathFileAccessText);
    }
}

} // namespace wicker
