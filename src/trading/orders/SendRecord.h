#pragma once

#include "platform/OrderTicket.h"
#include "platform/QVXOrder.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wicker {

// A send's orders as text: one record per order, fields apart. The separators are control
// characters no order field holds; one that did would be escaped, never lost. A field the
// same as in the order before is one ditto mark: a send of one account, side and memo costs
// little more than its ids and symbols. A client order id the same as the one before up to
// its last '-' is the ditto mark and what follows that '-': the ids of a send differ only
// in their order numbers.
namespace send_record {
constexpr char FieldEnd = '\x1f';
constexpr char RecordEnd = '\x1e';
constexpr char Ditto = '\x1d';
constexpr char Escape = '\x1b';
constexpr size_t OrderFields = 11;
} // namespace send_record

/// Writes a send's orders as that text, part by part as the send makes them: each field
/// against the same field of the order before, also across parts. It reads each order's
/// fields where they are, once, and writes through a pointer into room kept from the parts
/// and sends before.
class SendRecord {
public:
    SendRecord();
    ~SendRecord();
    SendRecord(const SendRecord&) = delete;
    SendRecord& operator=(const SendRecord&) = delete;

    /// A new send: its first order is written against none.
    void Restart();
    /// The records of `orders`, which follow the orders of the calls since Restart. The
    /// text lasts until the next call; the orders must last until the next Restart.
    std::string_view Append(std::span<const QVXOrder* const> orders);

private:
    const OrderTicket& TicketOf(const QVXOrder& o);
    char* Append(char* out, const OrderTicket& t);
    void Grow(size_t used, size_t needed);

    std::unique_ptr<char[]> m_text;
    size_t m_size = 0;
    std::deque<OrderTicket> m_copies; // orders of another kind, read through their getters
    const OrderTicket* m_previous = nullptr;
};

/// The records of a text, split at unescaped record ends (escapes kept for the fields).
std::vector<std::string> SplitSendRecords(std::string_view text, char end);

/// The fields of one record, escapes undone and ditto marks replaced by the field of the
/// record before (`previous`, which then holds this record's fields). SqliteError when the
/// record cannot be read.
const std::vector<std::string>& SendRecordFields(std::string_view record,
                                                 std::vector<std::string>& previous);

} // namespace wicker
