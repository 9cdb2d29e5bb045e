#include "admin/ui/frmColumns.h"

#include "common/MessageBox.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

constexpr int kColumnRole = Qt::UserRole;

QString L(const char* s) {
    return QString::fromLatin1(s);
}

std::vector<ColumnEntry> Natural(int count) {
    std::vector<ColumnEntry> entries;
    for (int c = 0; c < count; ++c) {
        entries.push_back({c, true});
    }
    return entries;
}

std::vector<ColumnEntry> EntriesOf(const QListWidget& list) {
    std::vector<ColumnEntry> entries;
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem* item = list.item(row);
        entries.push_back({item->data(kColumnRole).toInt(), item->checkState() == Qt::Checked});
    }
    return entries;
}

bool AnyShown(const std::vector<ColumnEntry>& entries) {
    for (const ColumnEntry& e : entries) {
        if (e.shown) {
            return true;
        }
    }
    return false;
}

} // namespace

frmColumns::frmColumns(const std::vector<ColumnEntry>& stock,
                       const std::vector<ColumnEntry>& basket, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_boxes(boxes) {
    setObjectName(QStringLiteral("frmColumns"));
    setWindowTitle(QStringLiteral("Columns"));

    auto* lists = new QHBoxLayout;
    lists->addWidget(BuildList(m_stock, "lstStockColumns", "Stock list", "cmdStock"));
    lists->addWidget(BuildList(m_basket, "lstBasketColumns", "Basket totals list", "cmdBasket"));
    Fill(*m_stock, stock, true);
    Fill(*m_basket, basket, false);

    auto* reset = new QPushButton(QStringLiteral("Reset"), this);
    reset->setObjectName(QStringLiteral("cmdReset"));
    reset->setToolTip(QStringLiteral("Every column shown, in the original order"));
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (QPushButton* b : {reset, cancel}) {
        b->setAutoDefault(false);
    }
    connect(reset, &QPushButton::clicked, this, &frmColumns::Reset);
    connect(ok, &QPushButton::clicked, this, &frmColumns::Accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(reset);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Tick the columns to show; drag them or use Up and "
                                                "Down to order them (top = leftmost)."),
                                 this));
    layout->addLayout(lists);
    layout->addLayout(buttons);
}

QWidget* frmColumns::BuildList(QListWidget*& list, const char* name, const char* caption,
                               const char* prefix) {
    auto* box = new QWidget(this);
    auto* v = new QVBoxLayout(box);
    v->setContentsMargins(0, 0, 0, 0);
    v->addWidget(new QLabel(L(caption), box));
    list = new QListWidget(box);
    list->setObjectName(L(name));
    list->setDragDropMode(QAbstractItemView::InternalMove);
    list->setDefaultDropAction(Qt::MoveAction);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    v->addWidget(list, 1);
    auto* row = new QHBoxLayout;
    auto* up = new QPushButton(QStringLiteral("Up"), box);
    up->setObjectName(L(prefix) + QStringLiteral("Up"));
    auto* down = new QPushButton(QStringLiteral("Down"), box);
    down->setObjectName(L(prefix) + QStringLiteral("Down"));
    for (QPushButton* b : {up, down}) {
        b->setAutoDefault(false);
        row->addWidget(b);
    }
    QListWidget* target = list;
    connect(up, &QPushButton::clicked, this, [this, target] { Move(*target, -1); });
    connect(down, &QPushButton::clicked, this, [this, target] { Move(*target, 1); });
    v->addLayout(row);
    return box;
}

void frmColumns::Fill(QListWidget& list, const std::vector<ColumnEntry>& entries, bool stock) {
    list.clear();
    for (const ColumnEntry& e : entries) {
        const char* caption = stock ? StockListCaptions[static_cast<size_t>(e.column)]
                                    : BasketListCaptions[static_cast<size_t>(e.column)];
        auto* item = new QListWidgetItem(L(caption), &list);
        item->setData(kColumnRole, e.column);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                       Qt::ItemIsDragEnabled);
        item->setCheckState(e.shown ? Qt::Checked : Qt::Unchecked);
    }
}

void frmColumns::Move(QListWidget& list, int by) {
    const int row = list.currentRow();
    const int to = row + by;
    if (row < 0 || to < 0 || to >= list.count()) {
        return;
    }
    QListWidgetItem* item = list.takeItem(row);
    list.insertItem(to, item);
    list.setCurrentRow(to);
}

void frmColumns::Reset() {
    Fill(*m_stock, Natural(StockColumnCount), true);
    Fill(*m_basket, Natural(BasketListColumnCount), false);
}

void frmColumns::Accept() {
    for (QListWidget* list : {m_stock, m_basket}) {
        if (!AnyShown(EntriesOf(*list))) {
            m_boxes.show("Please leave at least one column of each list shown.", 48, "Columns");
            list->setFocus();
            return;
        }
    }
    accept();
}

std::vector<ColumnEntry> frmColumns::stockEntries() const {
    return EntriesOf(*m_stock);
}

std::vector<ColumnEntry> frmColumns::basketEntries() const {
    return EntriesOf(*m_basket);
}

} // namespace wicker
