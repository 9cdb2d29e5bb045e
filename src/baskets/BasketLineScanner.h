#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace wicker {

/// The four fields of one line of a basket text file, as written: nothing trimmed or
/// upper-cased. An empty destination or index-shares field means "not given".
struct BasketFileFields {
    std::string symbol;
    std::string quantity;
    std::string destination;
    std::string indexShares;
    bool operator==(const BasketFileFields&) const = default;
};

/// Splits a line the way basket files always were read: characters left to right, a
/// comma moves to the next field, other characters go to the current field while it is
/// one of the first four and are dropped after that. Fed one character at a time so a
/// huge line never has to be held whole; a field that grows past `maxFieldBytes` keeps
/// its first `maxFieldBytes` characters and marks the line overlong.
class BasketLineScanner {
public:
    explicit BasketLineScanner(size_t maxFieldBytes = std::numeric_limits<size_t>::max())
        : m_maxFieldBytes(maxFieldBytes) {}

    void feed(char c) {
        if (c == ',') {
            ++m_field;
            return;
        }
        std::string* f = field();
        if (f == nullptr) {
            return;
        }
        if (f->size() < m_maxFieldBytes) {
            f->push_back(c);
        } else {
            m_overlong = true;
        }
    }
    void feed(std::string_view text) {
        for (char c : text) {
            feed(c);
        }
    }
    /// True when some field was cut at the limit.
    bool overlong() const { return m_overlong; }
    /// The fields of the line fed so far; the scanner starts a new line.
    BasketFileFields take();

private:
    std::string* field();

    BasketFileFields m_fields;
    size_t m_field = 0;
    size_t m_maxFieldBytes;
    bool m_overlong = false;
};

/// Fields of one whole line.
BasketFileFields ScanBasketLine(std::string_view line);

} // namespace wicker
