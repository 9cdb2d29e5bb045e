#pragma once

#include "common/Result.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace wicker {

/// The memo of every order sent over FIX, by ClOrdID, appended to a file as it is sent:
/// brokers seldom echo a memo, so after a restart this is how reports of earlier orders
/// are recognised as basket orders. One "ClOrdID<TAB>memo" line per order.
class MemoJournal {
public:
    /// Opens (creating) the journal for appending.
    static Result<MemoJournal> Open(const std::filesystem::path& file);
    /// Every entry of a journal file; a missing file has none, broken lines are skipped.
    static std::vector<std::pair<std::string, std::string>> Read(const std::filesystem::path& file);

    /// Appends one entry (buffered: flush() before the order leaves).
    void append(const std::string& clOrdID, const std::string& memo);
    /// Hands what was appended to the file; false when it did not reach it.
    bool flush();

private:
    explicit MemoJournal(std::ofstream out) : m_out(std::move(out)) {}
    std::ofstream m_out;
    std::string m_line;
};

} // namespace wicker
