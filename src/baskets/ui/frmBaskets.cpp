#include "baskets/ui/frmBaskets.h"

#include "baskets/BasketExport.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/TextTableModel.h"
#include "baskets/ui/UiText.h"
#include "baskets/ui/frmAddBasket.h"
#include "baskets/ui/frmAddStock.h"
#include "baskets/ui/frmEditDivisor.h"
#include "baskets/ui/frmEditStock.h"
#include "baskets/ui/frmExportBasket.h"
#include "baskets/ui/frmImportBasket.h"
#include "baskets/ui/frmImportSpreadsheet.h"
#include "common/Conversions.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {
namespace {

const char* const kSelectFirst = "Please select a basket first.";

QTableView* MakeListView(QWidget* parent, const char* name, QAbstractItemModel* model) {
    auto* view = new QTableView(parent);
    view->setObjectName(QString::fromLatin1(name));
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    return view;
}

// Each column as wide as its caption or its widest usual value, whichever is wider, so
// every column reads at the screen's first size.
void FitColumns(QTableView& view, std::initializer_list<std::pair<int, const char*>> widest) {
    const QFontMetrics metrics = view.fontMetrics();
    constexpr int kPadding = 16;
    constexpr int kCheckBox = 24;
    for (const auto& [column, sample] : widest) {
        const QString caption =
            view.model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        const int width = std::max(metrics.horizontalAdvance(caption),
                                   metrics.horizontalAdvance(QString::fromLatin1(sample))) +
                          kPadding + (column == 0 ? kCheckBox : 0);
        view.setColumnWidth(column, width);
    }
}

QPushButton* MakeButton(QWidget* parent, const char* name, const char* caption) {
    auto* b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

// The row the trader selected; a view that merely got the focus has a current row
// without a selection, and that is no choice.
int SelectedRow(const QTableView& view) {
    const QModelIndexList rows = view.selectionModel()->selectedRows();
    return rows.size() == 1 ? rows.front().row() : -1;
}

} // namespace

frmBaskets::frmBaskets(BasketUiContext context, QWidget* parent)
    : QDialog(parent), m_ctx(std::move(context)),
      m_baskets(new TextTableModel({QStringLiteral("Basket"), QStringLiteral("Button"),
                                    QStringLiteral("Type"), QStringLiteral("Divisor"),
                                    QStringLiteral("Index")},
                                   true, this)),
      m_stocks(new TextTableModel({QStringLiteral("Symbol"), QStringLiteral("Qty"),
                                   QStringLiteral("Destination"), QStringLiteral("Index Shares")},
                                  false, this)) {
    setObjectName(QStringLiteral("frmBaskets"));
    setWindowTitle(QStringLiteral("Basket Setup"));

    m_basketView = MakeListView(this, "lvBaskets", m_baskets);
    m_basketView->setColumnHidden(ColButton, true);
    m_stockView = MakeListView(this, "lvBasketStocks", m_stocks);
    FitColumns(*m_basketView, {{ColBasket, "Basket Name 12"},
                               {ColType, "B"},
                               {ColDivisor, "0.000000"},
                               {ColIndex, "Mkt Cap Weighted"}});
    FitColumns(*m_stockView, {{ColSymbol, "WWWWWW"},
                              {ColQty, "1000000"},
                              {ColDestination, "NASDAQ"},
                              {ColIndexShares, "1000000"}});
    m_basketLabel = new QLabel(this);
    m_basketLabel->setObjectName(QStringLiteral("lblBasket"));

    auto* menuBar = new QMenuBar(this);
    auto* fileMenu = menuBar->addMenu(QStringLiteral("&File"));
    fileMenu->setObjectName(QStringLiteral("mnuSetupFile"));
    QAction* importAction = fileMenu->addAction(QStringLiteral("&Import Basket..."));
    importAction->setObjectName(QStringLiteral("mnuImport"));
    QAction* spreadsheetAction = fileMenu->addAction(QStringLiteral("Import from &Spreadsheet..."));
    spreadsheetAction->setObjectName(QStringLiteral("mnuImportSpreadsheet"));
    QAction* exportAction = fileMenu->addAction(QStringLiteral("&Export Basket..."));
    exportAction->setObjectName(QStringLiteral("mnuExport"));

    auto* newBasket = MakeButton(this, "cmdNewBasket", "Add Basket");
    auto* deleteBasket = MakeButton(this, "cmdDeleteBasket", "Delete Basket");
    auto* addStock = MakeButton(this, "cmdAddStock", "Add Stock");
    auto* deleteStock = MakeButton(this, "cmdDeleteStock", "Delete Stock");
    auto* save = MakeButton(this, "cmdSaveBasketChanges", "Save Changes");
    auto* close = MakeButton(this, "cmdCancel", "Close");

    auto* lists = new QGridLayout;
    lists->addWidget(new QLabel(QStringLiteral("Available Baskets:"), this), 0, 0);
    lists->addWidget(m_basketLabel, 0, 1);
    lists->addWidget(m_basketView, 1, 0);
    lists->addWidget(m_stockView, 1, 1);
    auto* basketButtons = new QHBoxLayout;
    basketButtons->addWidget(newBasket);
    basketButtons->addWidget(deleteBasket);
    lists->addLayout(basketButtons, 2, 0);
    auto* stockButtons = new QHBoxLayout;
    stockButtons->addWidget(addStock);
    stockButtons->addWidget(deleteStock);
    lists->addLayout(stockButtons, 2, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(save);
    bottom->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menuBar);
    layout->addLayout(lists);
    layout->addLayout(bottom);
    resize(860, 440);

    connect(m_basketView->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (const int row = SelectedRow(*m_basketView); row >= 0) {
            basketClicked(row);
        }
    });
    connect(m_basketView, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { editDivisor(index.row()); });
    connect(m_stockView, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { editStock(index.row()); });
    connect(newBasket, &QPushButton::clicked, this, &frmBaskets::addBasket);
    connect(deleteBasket, &QPushButton::clicked, this, &frmBaskets::deleteBasket);
    connect(addStock, &QPushButton::clicked, this, &frmBaskets::addStock);
    connect(deleteStock, &QPushButton::clicked, this, &frmBaskets::deleteStock);
    connect(save, &QPushButton::clicked, this, &frmBaskets::saveChanges);
    connect(close, &QPushButton::clicked, this, &frmBaskets::reject);
    connect(importAction, &QAction::triggered, this, &frmBaskets::importBasket);
    connect(spreadsheetAction, &QAction::triggered, this, &frmBaskets::importSpreadsheet);
    connect(exportAction, &QAction::triggered, this, &frmBaskets::exportBasket);

    loadBasketList();
}

void frmBaskets::loadBasketList() {
    std::vector<TextTableModel::Row> rows;
    try {
        for (const auto& b : LoadBasketRows(m_ctx.db, m_ctx.index)) {
            rows.push_back(
                {{ToQ(b.name), ToQ(b.button), ToQ(b.type), ToQ(b.divisor), ToQ(b.indexType)},
                 ToQ(BasketRowKey(b.basketNum)),
                 b.onButton});
        }
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
    }
    m_baskets->setRows(std::move(rows));
}

void frmBaskets::loadLines(int32_t basketNum) {
    std::vector<TextTableModel::Row> rows;
    try {
        for (const auto& s : LoadStockRows(m_ctx.db, basketNum)) {
            rows.push_back(
                {{ToQ(s.symbol), ToQ(s.quantity), ToQ(s.destination), ToQ(s.indexShares)},
                 QString::number(s.recordNum),
                 false});
        }
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
    }
    m_stocks->setRows(std::move(rows));
}

void frmBaskets::basketClicked(int row) {
    if (m_baskets->rowCount() == 0 || row < 0 || row >= m_baskets->rowCount()) {
        return;
    }
    const auto& r = m_baskets->rowAt(row);
    m_basketLabel->setText(r.cells.at(ColBasket));
    try {
        m_currentBasketNum = BasketNumFromKey(ToStd(r.key));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    loadLines(m_currentBasketNum);
}

void frmBaskets::selectBasketRow(int row) {
    m_basketView->selectionModel()->setCurrentIndex(m_baskets->index(row, ColBasket),
                                                    QItemSelectionModel::ClearAndSelect |
                                                        QItemSelectionModel::Rows);
    // As if the trader had clicked it, also when the selection model kept the row selected.
    if (m_currentBasketNum == 0) {
        basketClicked(row);
    }
}

std::vector<BasketRow> frmBaskets::basketRows() const {
    std::vector<BasketRow> out;
    for (const auto& r : m_baskets->rows()) {
        BasketRow b;
        b.name = ToStd(r.cells.at(ColBasket));
        b.button = ToStd(r.cells.at(ColButton));
        b.type = ToStd(r.cells.at(ColType));
        b.divisor = ToStd(r.cells.at(ColDivisor));
        b.indexType = ToStd(r.cells.at(ColIndex));
        b.onButton = r.checked;
        out.push_back(std::move(b));
    }
    return out;
}

std::vector<StockRow> frmBaskets::stockRows() const {
    std::vector<StockRow> out;
    for (const auto& r : m_stocks->rows()) {
        out.push_back({r.key.toInt(), ToStd(r.cells.at(ColSymbol)), ToStd(r.cells.at(ColQty)),
                       ToStd(r.cells.at(ColDestination)), ToStd(r.cells.at(ColIndexShares))});
    }
    return out;
}

void frmBaskets::placeAndRun(QDialog& dialog) {
    PlaceBelowRight(dialog, *this);
    dialog.exec();
}

void frmBaskets::editDivisor(int row) {
    if (row < 0 || row >= m_baskets->rowCount()) {
        return;
    }
    const auto& r = m_baskets->rowAt(row);
    double divisor = 0;
    try {
        divisor = CDbl(ToStd(r.cells.at(ColDivisor)));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    frmEditDivisor dialog(
        m_ctx.boxes, m_ctx.index, ToStd(r.cells.at(ColBasket)), ToStd(r.cells.at(ColButton)),
        divisor, ToStd(r.cells.at(ColIndex)),
        [this, row](double stored, const std::string& indexType) {
            m_baskets->setCell(row, ColDivisor, ToQ(NumberText(stored)));
            m_baskets->setCell(row, ColIndex, ToQ(indexType));
        },
        this);
    placeAndRun(dialog);
}

void frmBaskets::editStock(int row) {
    if (row < 0 || row >= m_stocks->rowCount()) {
        return;
    }
    const auto& r = m_stocks->rowAt(row);
    StockLineKey old;
    try {
        old = StockLineKey{m_currentBasketNum, ToStd(r.cells.at(ColSymbol)),
                           CLng(ToStd(r.cells.at(ColQty))), ToStd(r.cells.at(ColDestination)),
                           CLng(ToStd(r.cells.at(ColIndexShares)))};
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    frmEditStock dialog(
        m_ctx.db, m_ctx.boxes, old,
        [this, row](const StockRow& changed) {
            m_stocks->setCell(row, ColSymbol, ToQ(changed.symbol));
            m_stocks->setCell(row, ColQty, ToQ(changed.quantity));
            m_stocks->setCell(row, ColDestination, ToQ(changed.destination));
            m_stocks->setCell(row, ColIndexShares, ToQ(changed.indexShares));
        },
        this);
    placeAndRun(dialog);
}

void frmBaskets::addBasket() {
    frmAddBasket dialog(
        m_ctx.db, m_ctx.boxes, m_ctx.index, [this] { loadBasketList(); }, this);
    placeAndRun(dialog);
}

void frmBaskets::deleteBasket() {
    const int row = SelectedRow(*m_basketView);
    if (row < 0) {
        return;
    }
    try {
        DeleteBasket(m_ctx.db, BasketNumFromKey(ToStd(m_baskets->rowAt(row).key)));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    {
        // The view would move its current row by itself; the rule below decides instead.
        const QSignalBlocker block(m_basketView->selectionModel());
        m_baskets->removeRowAt(row);
        m_basketView->selectionModel()->clearCurrentIndex();
    }
    m_stocks->clear();
    m_basketLabel->clear();
    m_currentBasketNum = 0;
    if (const auto next =
            RowAfterDelete(static_cast<size_t>(row), static_cast<size_t>(m_baskets->rowCount()))) {
        selectBasketRow(static_cast<int>(*next));
    }
}

void frmBaskets::addStock() {
    if (m_currentBasketNum == 0) {
        m_ctx.boxes.show(kSelectFirst, 0, "");
        return;
    }
    frmAddStock dialog(
        m_ctx.db, m_ctx.boxes, m_currentBasketNum,
        [this](const StockRow& added) {
            m_stocks->appendRow({{ToQ(added.symbol), ToQ(added.quantity), ToQ(added.destination),
                                  ToQ(added.indexShares)},
                                 QString::number(added.recordNum),
                                 false});
        },
        this);
    placeAndRun(dialog);
    loadLines(m_currentBasketNum);
}

void frmBaskets::deleteStock() {
    const int row = SelectedRow(*m_stockView);
    if (row < 0) {
        return;
    }
    try {
        DeleteStockLine(m_ctx.db, m_stocks->rowAt(row).key.toInt());
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    m_stocks->removeRowAt(row);
}

void frmBaskets::saveChanges() {
    try {
        SaveBasketChanges(m_ctx.db, m_ctx.index, m_currentBasketNum, stockRows(), basketRows());
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
        return;
    }
    m_ctx.main.LoadBasketList();
    m_ctx.main.LoadButtonValues();
    // The main screen's lines stay as the trader set them (ticks, modifiers, TIFs).
    QDialog::accept();
}

void frmBaskets::reject() {
    try {
        WriteButtonFlags(m_ctx.db, basketRows());
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_ctx.boxes, e);
    }
    m_ctx.main.LoadBasketList();
    m_ctx.main.LoadButtonValues();
    m_ctx.main.LoadButtonDisplay();
    QDialog::reject();
}

void frmBaskets::importBasket() {
    frmImportBasket dialog(
        m_ctx.db, m_ctx.boxes, m_ctx.files, m_ctx.main,
        m_ctx.importDefaults ? m_ctx.importDefaults() : ImportDefaults{"NYSE", "ARCA"}, this);
    runImport(dialog);
}

void frmBaskets::importSpreadsheet() {
    frmImportSpreadsheet dialog(
        m_ctx.db, m_ctx.boxes, m_ctx.files, m_ctx.main,
        m_ctx.importDefaults ? m_ctx.importDefaults() : ImportDefaults{"NYSE", "ARCA"}, this);
    runImport(dialog);
}

void frmBaskets::runImport(QDialog& dialog) {
    placeAndRun(dialog);
    // Reload without losing which basket's lines are shown.
    const int16_t current = m_currentBasketNum;
    {
        const QSignalBlocker block(m_basketView->selectionModel());
        loadBasketList();
        for (int i = 0; i < m_baskets->rowCount(); ++i) {
            if (m_baskets->rowAt(i).key == ToQ(BasketRowKey(current))) {
                m_basketView->setCurrentIndex(m_baskets->index(i, ColBasket));
            }
        }
    }
}

void frmBaskets::exportBasket() {
    if (m_currentBasketNum == 0) {
        m_ctx.boxes.show(kSelectFirst, 0, "");
        return;
    }
    std::vector<BasketLine> lines;
    for (const auto& s : stockRows()) {
        lines.push_back({s.symbol, s.quantity, s.destination});
    }
    frmExportBasket dialog(m_ctx.boxes, m_ctx.files, std::move(lines),
                           ProposedExportPath(m_ctx.appFolder, ToStd(m_basketLabel->text())), this);
    placeAndRun(dialog);
}

} // namespace wicker
