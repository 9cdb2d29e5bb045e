#pragma once

#include "baskets/BasketSetupStore.h"
#include "baskets/ui/StockEntryFields.h"

#include <functional>

#include <QDialog>

namespace wicker {

class Database;
class MessageBoxes;

/// "Add Stock": adds lines to a stored basket, one after another; the dialog stays open.
class frmAddStock : public QDialog {
    Q_OBJECT

public:
    /// `onAdded` receives each stored line for the setup screen's list.
    frmAddStock(Database& db, MessageBoxes& boxes, int32_t basketNum,
                std::function<void(const StockRow&)> onAdded, QWidget* parent = nullptr);

private:
    void addStock();

    Database& m_db;
    MessageBoxes& m_boxes;
    int32_t m_basketNum;
    std::function<void(const StockRow&)> m_onAdded;
    StockEntryFields m_fields;
};

} // namespace wicker
