#pragma once

#include <limits>
#include <string>

namespace wicker {

/// What a send reads of one lvStocks line: its check box and the sub-item texts.
struct ExecutionLine {
    bool checked = false;
    std::string symbol;      ///< item text
    std::string bid;         ///< sub-item 1
    std::string ask;         ///< sub-item 2
    std::string last;        ///< sub-item 3
    std::string quantity;    ///< sub-item 5, the quantity to send
    std::string destination; ///< sub-item 6
    std::string modifier;    ///< sub-item 7
    std::string tif;         ///< sub-item 8
    std::string price;       ///< sub-item 19, the line's own price
    /// The quote's own values behind the rounded cells; NaN where the desk has none, and
    /// the cell is read instead.
    double bidValue = std::numeric_limits<double>::quiet_NaN();
    double askValue = std::numeric_limits<double>::quiet_NaN();
    double lastValue = std::numeric_limits<double>::quiet_NaN();
    double priceValue = std::numeric_limits<double>::quiet_NaN();
};

/// The quote's own values behind a line's bid, ask, last and price cells; NaN where none.
struct ExecutionQuoteValues {
    double bid = std::numeric_limits<double>::quiet_NaN();
    double ask = std::numeric_limits<double>::quiet_NaN();
    double last = std::numeric_limits<double>::quiet_NaN();
    double price = std::numeric_limits<double>::quiet_NaN();
};

} // namespace wicker
