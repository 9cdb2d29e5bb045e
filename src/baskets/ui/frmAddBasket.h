#pragma once

#include "baskets/ui/BasketUiContext.h"

#include <functional>

#include <QDialog>

class QComboBox;
class QLineEdit;
class QTableView;

namespace wicker {

class TextTableModel;

/// "Add New Basket": a new basket with its names, divisor, index type and first lines.
class frmAddBasket : public QDialog {
    Q_OBJECT

public:
    /// `onSaved` runs after the basket is stored, before the dialog closes (the setup
    /// screen reloads its basket list there).
    frmAddBasket(Database& db, MessageBoxes& boxes, BasketIndexStore& index,
                 std::function<void()> onSaved, QWidget* parent = nullptr);

private:
    void addLine();
    void removeSelected();
    void save();

    Database& m_db;
    MessageBoxes& m_boxes;
    BasketIndexStore& m_index;
    std::function<void()> m_onSaved;
    QLineEdit* m_name;
    QLineEdit* m_button;
    QLineEdit* m_divisor;
    QComboBox* m_indexType;
    QLineEdit* m_symbol;
    QLineEdit* m_qty;
    QComboBox* m_dest;
    QTableView* m_list;
    TextTableModel* m_lines;
};

} // namespace wicker
