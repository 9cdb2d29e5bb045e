#pragma once

#include "baskets/ui/StockEntryFields.h"
#include "trading/basket/MainLineEntry.h"

#include <functional>

#include <QDialog>

namespace wicker {

class Database;
class MessageBoxes;

/// "Add Stock" of the main screen: adds one line to the basket loaded there, stored or
/// unsaved.
class frmAddStockMain : public QDialog {
    Q_OBJECT

public:
    /// `add` takes the entry to the loaded basket (it may fill in empty boxes) and says
    /// whether the line was added; the dialog closes when it was.
    frmAddStockMain(Database& db, MessageBoxes& boxes, std::function<bool(MainLineEntry&)> add,
                    QWidget* parent = nullptr);

private:
    void addStock();

    std::function<bool(MainLineEntry&)> m_add;
    StockEntryFields m_fields;
};

} // namespace wicker
