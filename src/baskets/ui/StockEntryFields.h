#pragma once

#include "baskets/StockEntry.h"
#include "trading/basket/MainLineEntry.h"

#include <functional>
#include <vector>

class QComboBox;
class QFormLayout;
class QLineEdit;
class QWidget;

namespace wicker {

class Database;
class MessageBoxes;

/// The boxes a stock line is typed into: symbol, quantity, destination and, where the
/// dialog has it, index shares. They belong to the dialog given to the constructor and
/// are created there in this order, which is the order Tab walks them.
class StockEntryFields {
public:
    /// Object names of the boxes; `indexShares` null leaves that box out.
    struct Names {
        const char* symbol;
        const char* quantity;
        const char* destination;
        const char* indexShares = nullptr;
    };

    /// Creates the boxes; the symbol box types upper case (SymbolBoxKeys), the
    /// destination box takes typed names it does not list.
    StockEntryFields(QWidget* dialog, const Names& names);
    StockEntryFields(const StockEntryFields&) = delete;
    StockEntryFields& operator=(const StockEntryFields&) = delete;

    QLineEdit* symbol() const { return m_symbol; }
    QLineEdit* quantity() const { return m_quantity; }
    QComboBox* destination() const { return m_destination; }
    /// Null when the dialog has no index-shares box.
    QLineEdit* indexShares() const { return m_indexShares; }

    /// The boxes in Tab order.
    std::vector<QWidget*> boxes() const;
    /// Adds the rows "Symbol:", "Quantity:", "Destination:" and "Index Shares:".
    void addRows(QFormLayout& form) const;
    /// Lists the enabled destinations (by name when `sorted`); a list that cannot be
    /// read is reported and stays empty, and the dialog still opens.
    void fillDestinations(Database& db, MessageBoxes& boxes, bool sorted);

    /// The texts as typed (index shares empty without its box).
    StockEntry entry() const;
    /// Shows the quantity and index shares as the logic filled them in.
    void showFilledIn(const StockEntry& entry);

    /// Symbol, quantity and destination as typed, for the main screen's basket.
    MainLineEntry mainLine() const;
    /// Hands `entry` to `take` and shows the quantity it filled in. When the line is
    /// refused and has no symbol, the symbol box gets the focus. Returns what `take` said.
    bool handOver(MainLineEntry& entry, const std::function<bool(MainLineEntry&)>& take);

private:
    QLineEdit* m_symbol;
    QLineEdit* m_quantity;
    QComboBox* m_destination;
    QLineEdit* m_indexShares;
};

} // namespace wicker
