#pragma once

#include "platform/OrderTicket.h"
#include "storage/FolderLock.h"
#include "storage/SqliteFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// The book's file in the data folder.
inline constexpr const char* kSimBookFileName = "simbook.db";

/// One order of the simulated broker as its book keeps it.
struct SimKeptOrder {
    OrderTicket ticket;
    std::vector<std::string> formerIds; ///< client order ids before its replaces
    int32_t recordId = 0;
    int32_t status = 0;
    int32_t cum = 0;
    int64_t notional = 0; ///< simulator units x shares filled
    int32_t updates = 0;
    int32_t replaces = 0;
    bool resting = false;
    std::string orderTime;
    std::string lastFill;
};

/// The simulated broker's book of the day on disk (simbook.db in the data folder, SQLite in
/// WAL mode), so its orders outlive the program as a broker's outlive a trader's terminal.
/// Day orders end with their day: rows of earlier days are dropped at opening.
/// Unsynced writes: the book survives the program's death, not a power cut of the machine.
class SimBookFile {
public:
    /// Opens or creates the file; SqliteError when it cannot be used (it is then left as it is).
    SimBookFile(const std::filesystem::path& file, std::string today);
    ~SimBookFile();
    SimBookFile(const SimBookFile&) = delete;
    SimBookFile& operator=(const SimBookFile&) = delete;

    /// The day's orders by record id.
    std::vector<SimKeptOrder> Load();
    /// Writes the orders' states in one transaction; with `replaceAll`, the day's rows are
    /// replaced by them. SqliteError when that fails (nothing of it is then kept).
    void Save(const std::vector<SimKeptOrder>& orders, bool replaceAll = false);

private:
    struct Statements;
    std::optional<FolderLock> m_lock; // none when the program holds the folder already
    SqliteFile m_file;
    std::string m_today;
    std::unique_ptr<Statements> m_stmts;
};

} // namespace wicker
