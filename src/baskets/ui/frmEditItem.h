#pragma once

#include "baskets/ui/StockEntryFields.h"
#include "trading/basket/MainLineEntry.h"

#include <functional>

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace wicker {

class Database;
class MessageBoxes;
class UpDown;

/// "Edit Item": changes one line of the basket loaded on the main screen, with its own
/// modifier and time in force.
class frmEditItem : public QDialog {
    Q_OBJECT

public:
    /// `current` fills the boxes; `save` takes the changed entry (it may fill in empty
    /// boxes) and says whether the line was changed; the dialog closes when it was.
    frmEditItem(Database& db, MessageBoxes& boxes, const MainLineEntry& current,
                std::function<bool(MainLineEntry&)> save, QWidget* parent = nullptr);

private:
    void save();

    std::function<bool(MainLineEntry&)> m_save;
    StockEntryFields m_fields;
    QLineEdit* m_mod;
    UpDown* m_upDown;
    QComboBox* m_tif;
};

} // namespace wicker
