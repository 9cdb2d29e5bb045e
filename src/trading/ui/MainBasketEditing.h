#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

class QAbstractItemView;
class QAction;
class QListWidget;
class QMainWindow;
class QMenu;
class QPoint;
class QTableView;

namespace wicker {

class MessageBoxes;
class TradingDesk;

/// The main screen's own basket editing: paste (Ctrl+V, drop, the Edit menu and the
/// list's pop-up), the File menu's New, Save and Save As, removal of lines and baskets,
/// and the add-stock and edit-item dialogs. It works through the desk; the window only
/// creates it. Its menus are the window's "mnuFile" and "mnuEdit" and two pop-ups of its
/// own, "mnuStockOptions" over lvStocks and "mnuBasketListOptions" over lstBaskets.
class MainBasketEditing final : public QObject {
    Q_OBJECT

public:
    MainBasketEditing(TradingDesk& desk, MessageBoxes& boxes, QTableView& lvStocks,
                      QListWidget& lstBaskets, QMainWindow& window);

    /// Parses clipboard or dropped text and, when it parses, loads it as the basket.
    /// False when the text was refused by the parser (nothing happens then).
    bool PasteText(const QString& text);
    bool PasteClipboard();

    QMenu& stockOptionsMenu() const { return *m_stockOptions; }
    QMenu& basketListOptionsMenu() const { return *m_basketListOptions; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildPopups();
    void ConnectMenus(QMainWindow& window);
    void EditMenuOpening();
    void FileMenuOpening();
    void SaveAs();
    void RemoveSelectedLine();
    void RemoveSelectedBasket();
    void AddStock();
    void EditLine(int row);
    int CurrentRow() const;

    TradingDesk& m_desk;
    MessageBoxes& m_boxes;
    QTableView& m_lvStocks;
    QListWidget& m_lstBaskets;
    QWidget& m_owner;
    /// Kept apart: while the window is torn down, the list may no longer answer for it.
    QPointer<QWidget> m_viewport;
    QAction* m_editPaste = nullptr;
    QAction* m_fileSave = nullptr;
    QMenu* m_stockOptions = nullptr;
    QMenu* m_basketListOptions = nullptr;
};

} // namespace wicker
