#include "trading/orders/SendRecord.h"

#include "common/ShortestDecimal.h"
#include "platform/TicketOrder.h"
#include "storage/SqliteFile.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <typeinfo>

namespace wicker {

using namespace send_record;

namespace {

constexpr size_t kLongestNumber = 32;

bool IsSpecial(char c) {
    return c == FieldEnd || c == RecordEnd || c == Ditto || c == Escape;
}

/// Whether a text holds a character below a space, eight at a time: every field of every
/// order of a send is checked.
bool HasControlCharacter(std::string_view text) {
    constexpr uint64_t spaces = 0x2020202020202020;
    constexpr uint64_t highBits = 0x8080808080808080;
    size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        uint64_t word;
        std::memcpy(&word, text.data() + i, 8);
        if (((word - spaces) & ~word & highBits) != 0) {
            return true;
        }
    }
    for (; i < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) < 0x20) {
            return true;
        }
    }
    return false;
}

/// A number the same as the order before (bit for bit: -0 is not 0) is not written out.
template <class N> char* Number(char* out, N value, const N* previous) {
    if (previous != nullptr && std::memcmp(&value, previous, sizeof value) == 0) {
        *out++ = Ditto;
    } else {
        if constexpr (std::is_same_v<N, double>) {
            out = ShortestDecimal(out, out + kLongestNumber, value).ptr; // a limit price
        } else {
            out = std::to_chars(out, out + kLongestNumber, value).ptr;
        }
    }
    *out++ = FieldEnd;
    return out;
}

char* Text(char* out, const std::string& field, const std::string* previous) {
    if (!field.empty() && previous != nullptr && field == *previous) {
        *out++ = Ditto;
    } else if (!HasControlCharacter(field)) {
        std::memcpy(out, field.data(), field.size()); // nearly every field
        out += field.size();
    } else {
        for (const char c : field) {
            if (IsSpecial(c)) {
                *out++ = Escape;
            }
            *out++ = c;
        }
    }
    *out++ = FieldEnd;
    return out;
}

/// A client order id: the part after the last '-' of the id before, when the rest is the same.
char* Id(char* out, const std::string& id, const std::string* previous) {
    if (previous != nullptr) {
        const size_t kept = previous->rfind('-') + 1; // 0 without a '-'
        if (kept > 0 && id.size() > kept && id.compare(0, kept, *previous, 0, kept) == 0) {
            const std::string_view rest = std::string_view(id).substr(kept);
            if (rest.find('-') == std::string_view::npos && !HasControlCharacter(rest)) {
                *out++ = Ditto;
                std::memcpy(out, rest.data(), rest.size());
                out += rest.size();
                *out++ = FieldEnd;
                return out;
            }
        }
    }
    return Text(out, id, previous);
}

} // namespace

SendRecord::SendRecord() = default;
SendRecord::~SendRecord() = default;

void SendRecord::Restart() {
    m_copies.clear();
    m_previous = nullptr;
}

std::string_view SendRecord::Append(std::span<const QVXOrder* const> orders) {
    size_t used = 0;
    for (const QVXOrder* o : orders) {
        const OrderTicket& t = TicketOf(*o);
        // Every character escaped, the numbers at their longest, and the separators.
        const size_t most =
            2 * (t.clOrderID.size() + t.account.size() + t.side.size() + t.symbol.size() +
                 t.tif.size() + t.destination.size() + t.memo.size()) +
            4 * kLongestNumber + OrderFields + 1;
        if (m_size - used < most) {
            Grow(used, used + most);
        }
        used = static_cast<size_t>(Append(m_text.get() + used, t) - m_text.get());
    }
    return {m_text.get(), used};
}

void SendRecord::Grow(size_t used, size_t needed) {
    // Twice the room at least: a send of thousands of orders grows it a few times, once.
    const size_t size = std::max(needed, 2 * m_size);
    auto text = std::make_unique_for_overwrite<char[]>(size);
    if (used > 0) {
        std::memcpy(text.get(), m_text.get(), used);
    }
    m_text = std::move(text);
    m_size = size;
}

const OrderTicket& SendRecord::TicketOf(const QVXOrder& o) {
    if (typeid(o) == typeid(TicketOrder)) {
        return static_cast<const TicketOrder&>(o).ticket();
    }
    return m_copies.emplace_back(OrderTicket{o.Account(), o.Side(), o.Symbol(), o.Quantity(),
                                             o.LmtPrice(), o.PriceType(), o.ClOrderID(), o.Tif(),
                                             o.Destination(), o.MaxFloor(), o.Memo()});
}

char* SendRecord::Append(char* out, const OrderTicket& t) {
    const OrderTicket* p = m_previous;
    out = Id(out, t.clOrderID, p ? &p->clOrderID : nullptr);
    out = Text(out, t.account, p ? &p->account : nullptr);
    out = Text(out, t.side, p ? &p->side : nullptr);
    out = Text(out, t.symbol, p ? &p->symbol : nullptr);
    out = Number(out, t.quantity, p ? &p->quantity : nullptr);
    out = Number(out, t.priceType, p ? &p->priceType : nullptr);
    out = Text(out, t.tif, p ? &p->tif : nullptr);
    out = Text(out, t.destination, p ? &p->destination : nullptr);
    out = Number(out, t.maxFloor, p ? &p->maxFloor : nullptr);
    out = Text(out, t.memo, p ? &p->memo : nullptr);
    // The limit price exactly, as it went out: the shortest text that reads back the same.
    out = Number(out, t.lmtPrice, p ? &p->lmtPrice : nullptr);
    *out++ = RecordEnd;
    m_previous = &t;
    return out;
}

std::vector<std::string> SplitSendRecords(std::string_view text, char end) {
    std::vector<std::string> records;
    std::string current;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == Escape && i + 1 < text.size()) {
            current += text[i];
            current += text[++i];
        } else if (text[i] == end) {
            records.push_back(std::move(current));
            current.clear();
        } else {
            current += text[i];
        }
    }
    return records;
}

const std::vector<std::string>& SendRecordFields(std::string_view record,
                                                 std::vector<std::string>& previous) {
    std::vector<std::string> fields(1);
    bool escaped = false; // the field so far holds an escaped character
    const auto fieldEnds = [&] {
        const size_t i = fields.size() - 1;
        if (!escaped && !fields[i].empty() && fields[i][0] == Ditto) {
            const std::string& before = i < previous.size() ? previous[i] : std::string();
            if (fields[i].size() == 1) {
                fields[i] = before;
            } else {
                // The field before up to its last '-', then the rest.
                const size_t kept = before.rfind('-');
                if (kept == std::string::npos) {
                    throw SqliteError("The order journal holds a send it cannot read.");
                }
                fields[i] = before.substr(0, kept + 1) + fields[i].substr(1);
            }
        }
        escaped = false;
    };
    for (size_t i = 0; i < record.size(); ++i) {
        if (record[i] == Escape && i + 1 < record.size()) {
            fields.back() += record[++i];
            escaped = true;
        } else if (record[i] == FieldEnd) {
            fieldEnds();
            fields.emplace_back();
        } else {
            fields.back() += record[i];
        }
    }
    fieldEnds();
    previous = std::move(fields);
    return previous;
}

} // namespace wicker
