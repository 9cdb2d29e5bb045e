#include "platform/fix/MemoJournal.h"

namespace wicker {
namespace {

// Tabs and line ends would break the line format; they never occur in the program's own
// ids and memos, so they are replaced rather than escaped.
void AppendClean(std::string& line, const std::string& text) {
    const size_t from = line.size();
    line += text;
    for (size_t i = from; i < line.size(); ++i) {
        if (line[i] == '\t' || line[i] == '\n' || line[i] == '\r') {
            line[i] = ' ';
        }
    }
}

// Cuts a last line that a crash left without its line end: the entry was never whole, and
// the next entry appended to it would be lost inside it.
void DropTornLine(const std::filesystem::path& file) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(file, ec);
    std::ifstream in(file, std::ios::binary);
    if (ec || size == 0 || !in) {
        return;
    }
    // The length up to and including the last line end, searched from the back.
    std::uintmax_t keep = 0;
    char chunk[4096];
    for (std::uintmax_t end = size; end > 0 && keep == 0;) {
        const std::uintmax_t from = end > sizeof chunk ? end - sizeof chunk : 0;
        in.seekg(static_cast<std::streamoff>(from));
        if (!in.read(chunk, static_cast<std::streamsize>(end - from))) {
            return;
        }
        for (std::uintmax_t at = end - from; at > 0; --at) {
            if (chunk[at - 1] == '\n') {
                keep = from + at;
                break;
            }
        }
        end = from;
    }
    if (keep < size) {
        in.close();
        std::filesystem::resize_file(file, keep, ec);
    }
}

} // namespace

Result<MemoJournal> MemoJournal::Open(const std::filesystem::path& file) {
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
    DropTornLine(file);
    std::ofstream out(file, std::ios::binary | std::ios::app);
    if (!out) {
        return Error{"Cannot open the order memo journal " + file.string() + "."};
    }
    return MemoJournal(std::move(out));
}

std::vector<std::pair<std::string, std::string>>
MemoJournal::Read(const std::filesystem::path& file) {
    std::vector<std::pair<std::string, std::string>> out;
    std::ifstream in(file, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (in.eof()) {
            break; // no line end: the write was cut short by a crash
        }
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const size_t tab = line.find('\t');
        if (tab == std::string::npos || tab == 0) {
            continue; // not a line of ours
        }
        out.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return out;
}

void MemoJournal::append(const std::string& clOrdID, const std::string& memo) {
    // One write of a line built in a reused buffer: a basket appends thousands at once.
    m_line.clear();
    AppendClean(m_line, clOrdID);
    m_line += '\t';
    AppendClean(m_line, memo);
    m_line += '\n';
    m_out.write(m_line.data(), static_cast<std::streamsize>(m_line.size()));
}

bool MemoJournal::flush() {
    m_out.flush();
    return static_cast<bool>(m_out);
}

} // namespace wicker
