#include "baskets/ui/frmAddStock.h"

#include "baskets/Destinations.h"
#include "baskets/OrdinaryError.h"
#include "baskets/StockEntry.h"
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

frmAddStock::frmAddStock(Database& db, MessageBoxes& boxes, int32_t basketNum,
                         std::function<void(const StockRow&)> onAdded, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_basketNum(basketNum),
      m_onAdded(std::move(onAdded)), m_symbol(new QLineEdit(this)), m_qty(new QLineEdit(this)),
      m_dest(new QComboBox(this)), m_indexShares(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmAddStock"));
    setWindowTitle(QStringLiteral("Add Stock"));
    m_symbol->setObjectName(QStringLiteral("txtSymbol"));
    m_qty->setObjectName(QStringLiteral("txtQty"));
    m_dest->setObjectName(QStringLiteral("cboDest"));
    m_dest->setEditable(true);
    m_dest->setInsertPolicy(QComboBox::NoInsert);
    m_indexShares->setObjectName(QStringLiteral("txtIndexShares"));

    auto* add = new QPushButton(QStringLiteral("Add Stock"), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {add, cancel}) {
        b->setAutoDefault(false);
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Symbol:"), m_symbol);
    form->addRow(QStringLiteral("Quantity:"), m_qty);
    form->addRow(QStringLiteral("Destination:"), m_dest);
    form->addRow(QStringLiteral("Index Shares:"), m_indexShares);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(add);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* symbolKeys = new SymbolBoxKeys(this);
    symbolKeys->watch(m_symbol);
    auto* enter = new EnterPressesButton(add, this);
    for (QWidget* w : std::initializer_list<QWidget*>{m_symbol, m_qty, m_dest, m_indexShares}) {
        enter->watch(w);
    }
    connect(add, &QPushButton::clicked, this, &frmAddStock::addStock);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    try {
        FillCombo(*m_dest, EnabledDestinations(m_db, false));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    m_dest->setCurrentIndex(-1);
}

void frmAddStock::addStock() {
    StockEntry entry{ToStd(m_symbol->text()), ToStd(m_qty->text()), ToStd(m_dest->currentText()),
                     ToStd(m_indexShares->text())};
    StockField focus = StockField::None;
    try {
        const auto row = AddStockToBasket(m_db, m_boxes, m_basketNum, entry, focus);
        m_qty->setText(ToQ(entry.quantity));
        m_indexShares->setText(ToQ(entry.indexShares));
        if (!row) {
            (focus == StockField::Destination ? static_cast<QWidget*>(m_dest) : m_symbol)
                ->setFocus();
            return;
        }
        if (m_onAdded) {
            m_onAdded(*row);
        }
        m_symbol->clear();
        m_qty->clear();
        m_indexShares->clear();
        m_symbol->setFocus();
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
}

} // namespace wicker
