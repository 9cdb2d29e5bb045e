#pragma once

#include "common/Clock.h"
#include "storage/Database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// One row of the order journal (tblOrders): an order as it is sent in its new terms.
struct JournalEntry {
    LocalDateTime sent;    ///< dtDate and dtTime
    std::string clOrderId; ///< the id the order is sent under
    int16_t basketSeq = 0; ///< send number of its basket
    std::string account;
    std::string symbol;
    std::string side; ///< one letter, as the platform reports it
    std::string destination;
    double price = 0;     ///< limit price; 0 for a market order
    int32_t quantity = 0; ///< new order quantity, fills included
    int32_t leaves = 0;   ///< what stays open of it
    std::string basketName;
    std::string tif; ///< one-letter TIF code
};

/// The journal insert. Dates go in as 'yyyy-mm-dd' and times as 'hh:mm:ss' (24 hours), the
/// forms the engine's date functions read; the executed quantity is always 0 and the status
/// 'Sending-N'. Without `withTifColumns` (an old file whose tblOrders lacks chTif) strDest,
/// strBasketName and chTif are left out and the other columns keep their order. A value
/// that cannot go into the statement (an apostrophe, a number that is none) throws DbError.
std::string JournalInsertSql(const JournalEntry& entry, bool withTifColumns);

/// The order journal of one database: writes rows, and reads back the ids it holds.
class OrderJournal {
public:
    explicit OrderJournal(Database& db);

    /// Whether tblOrders has the columns of a 4013 file (IsDbVersion4013), asked once.
    bool WithTifColumns();
    /// Runs the statement; DbError when the database refuses it.
    void Execute(const std::string& insertSql);
    /// Client order ids journalled for orders of basket send `basketSeq`.
    std::vector<std::string> ClOrderIds(int16_t basketSeq);

private:
    Database& m_db;
    std::optional<bool> m_withTifColumns;
};

} // namespace wicker
