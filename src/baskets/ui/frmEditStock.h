#pragma once

#include "baskets/BasketSetupStore.h"
#include "baskets/StockEntry.h"
#include "baskets/ui/StockEntryFields.h"

#include <functional>

#include <QDialog>

namespace wicker {

class Database;
class MessageBoxes;

/// "Edit Stock": changes one stored line, found by its old values.
class frmEditStock : public QDialog {
    Q_OBJECT

public:
    /// `onSaved` receives the changed row's texts for the setup screen's list.
    frmEditStock(Database& db, MessageBoxes& boxes, StockLineKey old,
                 std::function<void(const StockRow&)> onSaved, QWidget* parent = nullptr);

private:
    void save();

    Database& m_db;
    MessageBoxes& m_boxes;
    StockLineKey m_old;
    std::function<void(const StockRow&)> m_onSaved;
    StockEntryFields m_fields;
};

} // namespace wicker
