#include "baskets/ui/frmAddStockMain.h"

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

frmAddStockMain::frmAddStockMain(Database& db, MessageBoxes& boxes,
                                 std::function<bool(MainLineEntry&)> add, QWidget* parent)
    : QDialog(parent), m_add(std::move(add)), m_symbol(new QLineEdit(this)),
      m_quantity(new QLineEdit(this)), m_dest(new QComboBox(this)) {
    setObjectName(QStringLiteral("frmAddStockMain"));
    setWindowTitle(QStringLiteral("Add Stock"));
    m_symbol->setObjectName(QStringLiteral("txtSymbol"));
    m_quantity->setObjectName(QStringLiteral("txtQuantity"));
    m_dest->setObjectName(QStringLiteral("cboDest"));
    m_dest->setEditable(true);
    m_dest->setInsertPolicy(QComboBox::NoInsert);

    auto* addButton = new QPushButton(QStringLiteral("Add Stock"), this);
    addButton->setObjectName(QStringLiteral("buttonAddStock"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("buttonCancel"));
    for (auto* b : {addButton, cancel}) {
        b->setAutoDefault(false);
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Symbol:"), m_symbol);
    form->addRow(QStringLiteral("Quantity:"), m_quantity);
    form->addRow(QStringLiteral("Destination:"), m_dest);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(addButton);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* symbolKeys = new SymbolBoxKeys(this);
    symbolKeys->watch(m_symbol);
    auto* enter = new EnterPressesButton(addButton, this);
    for (QWidget* w : std::initializer_list<QWidget*>{m_symbol, m_quantity, m_dest}) {
        enter->watch(w);
    }
    connect(addButton, &QPushButton::clicked, this, &frmAddStockMain::addStock);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    try {
        FillCombo(*m_dest, EnabledDestinations(db, false));
    } catch (const std::exception& e) {
        ShowOrdinaryError(boxes, e);
    }
    m_dest->setCurrentIndex(-1);
}

void frmAddStockMain::addStock() {
    MainLineEntry entry;
    entry.symbol = ToStd(m_symbol->text());
    entry.quantity = ToStd(m_quantity->text());
    entry.destination = ToStd(m_dest->currentText());
    const bool added = m_add(entry);
    m_quantity->setText(ToQ(entry.quantity));
    if (added) {
        accept();
    } else if (entry.symbol.empty()) {
        m_symbol->setFocus();
    }
}

} // namespace wicker
