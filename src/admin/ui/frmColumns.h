#pragma once

#include "admin/ColumnLayoutSettings.h"

#include <vector>

#include <QDialog>

class QListWidget;

namespace wicker {

class MessageBoxes;

/// "Columns": which columns of the stock list and the basket totals list are shown, and in
/// which order. Each list shows the columns left to right from top to bottom; a tick shows
/// a column, dragging a name or Up / Down moves it.
class frmColumns : public QDialog {
    Q_OBJECT

public:
    frmColumns(const std::vector<ColumnEntry>& stock, const std::vector<ColumnEntry>& basket,
               MessageBoxes& boxes, QWidget* parent = nullptr);

    /// The arrangement as the lists show it now.
    std::vector<ColumnEntry> stockEntries() const;
    std::vector<ColumnEntry> basketEntries() const;

private:
    QWidget* BuildList(QListWidget*& list, const char* name, const char* caption,
                       const char* prefix);
    void Fill(QListWidget& list, const std::vector<ColumnEntry>& entries, bool stock);
    void Move(QListWidget& list, int by);
    void Reset();
    void Accept();

    MessageBoxes& m_boxes;
    QListWidget* m_stock = nullptr;
    QListWidget* m_basket = nullptr;
};

} // namespace wicker
