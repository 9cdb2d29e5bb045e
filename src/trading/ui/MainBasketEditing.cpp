#include "trading/ui/MainBasketEditing.h"

#include "baskets/ui/frmAddStockMain.h"
#include "baskets/ui/frmEditItem.h"
#include "baskets/ui/frmSaveAs.h"
#include "trading/TradingDesk.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QSignalBlocker>
#include <QTableView>

namespace wicker {
namespace {

QAction* AddItem(QMenu& menu, const char* name, const char* caption) {
    QAction* a = menu.addAction(QString::fromLatin1(caption));
    a->setObjectName(QString::fromLatin1(name));
    return a;
}

QAction* FindAction(QMainWindow& window, const char* name) {
    return window.findChild<QAction*>(QString::fromLatin1(name));
}

bool IsPasteKey(const QKeyEvent& key) {
    return key.matches(QKeySequence::Paste) ||
           (key.key() == Qt::Key_V && (key.modifiers() & Qt::ControlModifier));
}

} // namespace

MainBasketEditing::MainBasketEditing(TradingDesk& desk, MessageBoxes& boxes, QTableView& lvStocks,
                                     QListWidget& lstBaskets, QMainWindow& window)
    : QObject(&window), m_desk(desk), m_boxes(boxes), m_lvStocks(lvStocks),
      m_lstBaskets(lstBaskets), m_owner(window) {
    setObjectName(QStringLiteral("MainBasketEditing"));
    BuildPopups();
    ConnectMenus(window);

    m_lvStocks.installEventFilter(this);
    m_viewport = m_lvStocks.viewport();
    m_viewport->setAcceptDrops(true);
    m_viewport->installEventFilter(this);
    connect(&m_lvStocks, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { EditLine(index.row()); });
}

void MainBasketEditing::BuildPopups() {
    m_stockOptions = new QMenu(QStringLiteral("Stock Options"), &m_owner);
    m_stockOptions->setObjectName(QStringLiteral("mnuStockOptions"));
    QAction* paste = AddItem(*m_stockOptions, "mnuPaste", "Paste");
    QAction* edit = AddItem(*m_stockOptions, "mnuEditSelected", "Edit Selected...");
    QAction* add = AddItem(*m_stockOptions, "mnuAddStock", "Add Stock...");
    m_stockOptions->addSeparator();
    QAction* removeLine = AddItem(*m_stockOptions, "mnuRemoveSelected", "Remove Selected");
    QAction* removeAll = AddItem(*m_stockOptions, "mnuRemoveAll", "Remove All");
    connect(paste, &QAction::triggered, this, [this] { PasteClipboard(); });
    connect(edit, &QAction::triggered, this, [this] { EditLine(CurrentRow()); });
    connect(add, &QAction::triggered, this, &MainBasketEditing::AddStock);
    connect(removeLine, &QAction::triggered, this, &MainBasketEditing::RemoveSelectedLine);
    connect(removeAll, &QAction::triggered, this, [this] { m_desk.RemoveAllLines(); });
    m_lvStocks.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&m_lvStocks, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        m_stockOptions->popup(m_lvStocks.viewport()->mapToGlobal(pos));
    });

    m_basketListOptions = new QMenu(QStringLiteral("Basket List Options"), &m_owner);
    m_basketListOptions->setObjectName(QStringLiteral("mnuBasketListOptions"));
    QAction* removeBasket =
        AddItem(*m_basketListOptions, "mnuRemoveSelectedBasket", "Remove Selected Basket");
    connect(removeBasket, &QAction::triggered, this, &MainBasketEditing::RemoveSelectedBasket);
    m_lstBaskets.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&m_lstBaskets, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        m_basketListOptions->popup(m_lstBaskets.viewport()->mapToGlobal(pos));
    });
}

void MainBasketEditing::ConnectMenus(QMainWindow& window) {
    if (auto* file = window.findChild<QMenu*>(QStringLiteral("mnuFile"))) {
        connect(file, &QMenu::aboutToShow, this, &MainBasketEditing::FileMenuOpening);
    }
    if (auto* edit = window.findChild<QMenu*>(QStringLiteral("mnuEdit"))) {
        connect(edit, &QMenu::aboutToShow, this, &MainBasketEditing::EditMenuOpening);
    }
    if (QAction* fileNew = FindAction(window, "mnuFileNew")) {
        fileNew->setEnabled(true);
        connect(fileNew, &QAction::triggered, this, [this] { m_desk.NewBasket(); });
    }
    m_fileSave = FindAction(window, "mnuFileSave");
    if (m_fileSave != nullptr) {
        connect(m_fileSave, &QAction::triggered, this, [this] {
            // Every edit of a stored basket is written at once: only an unsaved one is saved.
            if (m_desk.CurrentBasketNum() == -1) {
                SaveAs();
            }
        });
        FileMenuOpening();
    }
    if (QAction* saveAs = FindAction(window, "mnuFileSaveAs")) {
        saveAs->setEnabled(true);
        connect(saveAs, &QAction::triggered, this, &MainBasketEditing::SaveAs);
    }
    m_editPaste = FindAction(window, "mnuEditPaste");
    if (m_editPaste != nullptr) {
        m_editPaste->setEnabled(false);
        connect(m_editPaste, &QAction::triggered, this, [this] { PasteClipboard(); });
    }
}

void MainBasketEditing::FileMenuOpening() {
    if (m_fileSave != nullptr) {
        m_fileSave->setEnabled(m_desk.CurrentBasketNum() == -1);
    }
}

void MainBasketEditing::EditMenuOpening() {
    if (m_editPaste != nullptr) {
        const QString text = QGuiApplication::clipboard()->text();
        m_editPaste->setEnabled(TradingDesk::ParsePasteText(text.toStdString()).has_value());
    }
}

bool MainBasketEditing::PasteText(const QString& text) {
    const std::optional<PasteTable> table = TradingDesk::ParsePasteText(text.toStdString());
    if (!table) {
        return false;
    }
    m_desk.PasteLines(*table);
    return true;
}

bool MainBasketEditing::PasteClipboard() {
    return PasteText(QGuiApplication::clipboard()->text());
}

bool MainBasketEditing::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_lvStocks && event->type() == QEvent::KeyPress &&
        IsPasteKey(*static_cast<QKeyEvent*>(event))) {
        PasteClipboard();
        return true;
    }
    if (m_viewport != nullptr && watched == m_viewport.data()) {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDragMoveEvent*>(event);
            if (drag->mimeData() != nullptr && drag->mimeData()->hasText()) {
                drag->acceptProposedAction();
            } else {
                drag->ignore();
            }
            return true;
        }
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            if (drop->mimeData() != nullptr && drop->mimeData()->hasText()) {
                drop->acceptProposedAction();
                PasteText(drop->mimeData()->text());
            }
            return true;
        }
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

int MainBasketEditing::CurrentRow() const {
    const QModelIndex current = m_lvStocks.currentIndex();
    return current.isValid() ? current.row() : -1;
}

void MainBasketEditing::SaveAs() {
    if (!m_desk.Loaded()) {
        return;
    }
    frmSaveAs dialog(m_desk.db(), m_boxes, m_desk.LinesToSave(), &m_owner);
    dialog.exec();
    if (const std::optional<int16_t> saved = dialog.savedBasketNum()) {
        m_desk.BasketSavedAs(*saved);
    }
}

void MainBasketEditing::RemoveSelectedLine() {
    const int row = CurrentRow();
    if (row >= 0) {
        m_desk.RemoveSelectedLine(row);
    }
}

void MainBasketEditing::RemoveSelectedBasket() {
    QListWidgetItem* item = m_lstBaskets.currentItem();
    if (item == nullptr || !m_desk.Loaded()) {
        return;
    }
    const int row = m_lstBaskets.currentRow();
    if (!m_desk.RemoveBasket(item->text().toStdString())) {
        return;
    }
    // The neighbour takes the removed entry's place in the list; it is only selected, not
    // loaded: the basket on the screen stays as it is.
    if (m_lstBaskets.count() > 0) {
        const QSignalBlocker block(&m_lstBaskets);
        m_lstBaskets.setCurrentRow(std::min(row, m_lstBaskets.count() - 1));
    }
}

void MainBasketEditing::AddStock() {
    if (!m_desk.Loaded()) {
        return;
    }
    frmAddStockMain dialog(
        m_desk.db(), m_boxes, [this](MainLineEntry& entry) { return m_desk.AddMainLine(entry); },
        &m_owner);
    dialog.exec();
}

void MainBasketEditing::EditLine(int row) {
    if (!m_desk.Loaded() || row < 0 || row >= m_desk.Stocks().Count()) {
        return;
    }
    frmEditItem dialog(
        m_desk.db(), m_boxes, m_desk.LineEntry(row),
        [this, row](MainLineEntry& entry) { return m_desk.EditMainLine(row, entry); }, &m_owner);
    dialog.exec();
}

} // namespace wicker
