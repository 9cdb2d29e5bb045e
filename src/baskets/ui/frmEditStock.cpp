#include "baskets/ui/frmEditStock.h"

#include "baskets/Destinations.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

frmEditStock::frmEditStock(Database& db, MessageBoxes& boxes, StockLineKey old,
                           std::function<void(const StockRow&)> onSaved, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_old(std::move(old)),
      m_onSaved(std::move(onSaved)), m_symbol(new QLineEdit(this)), m_qty(new QLineEdit(this)),
      m_dest(new QComboBox(this)), m_indexShares(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmEditStock"));
    setWindowTitle(QStringLiteral("Edit Stock"));
    m_symbol->setObjectName(QStringLiteral("txtSymbol"));
    m_qty->setObjectName(QStringLiteral("txtQty"));
    m_dest->setObjectName(QStringLiteral("txtDest"));
    m_dest->setEditable(true);
    m_dest->setInsertPolicy(QComboBox::NoInsert);
    m_indexShares->setObjectName(QStringLiteral("txtIndexShares"));

    auto* save = new QPushButton(QStringLiteral("Save"), this);
    save->setObjectName(QStringLiteral("cmdSave"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {save, cancel}) {
        b->setAutoDefault(false);
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Symbol:"), m_symbol);
    form->addRow(QStringLiteral("Quantity:"), m_qty);
    form->addRow(QStringLiteral("Destination:"), m_dest);
    form->addRow(QStringLiteral("Index Shares:"), m_indexShares);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* symbolKeys = new SymbolBoxKeys(this);
    symbolKeys->watch(m_symbol);
    auto* enter = new EnterPressesButton(save, this);
    for (QWidget* w : std::initializer_list<QWidget*>{m_symbol, m_qty, m_dest, m_indexShares}) {
        enter->watch(w);
    }
    connect(save, &QPushButton::clicked, this, &frmEditStock::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    try {
        FillCombo(*m_dest, EnabledDestinations(m_db, false));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    m_symbol->setText(ToQ(m_old.symbol));
    m_qty->setText(QString::number(m_old.quantity));
    m_dest->setEditText(ToQ(m_old.destination));
    m_indexShares->setText(QString::number(m_old.indexShares));
}

void frmEditStock::save() {
    StockEntry entry{ToStd(m_symbol->text()), ToStd(m_qty->text()), ToStd(m_dest->currentText()),
                     ToStd(m_indexShares->text())};
    const auto row = UpdateStockLine(m_db, m_boxes, m_old, entry);
    m_qty->setText(ToQ(entry.quantity));
    m_indexShares->setText(ToQ(entry.indexShares));
    if (!row) {
        m_symbol->setFocus();
        return;
    }
    if (m_onSaved) {
        m_onSaved(*row);
    }
    accept();
}

} // namespace wicker
