#include "baskets/ui/frmAddBasket.h"

#include "baskets/Destinations.h"
#include "baskets/NewBasket.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/TextTableModel.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {

frmAddBasket::frmAddBasket(Database& db, MessageBoxes& boxes, BasketIndexStore& index,
                           std::function<void()> onSaved, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_index(index), m_onSaved(std::move(onSaved)),
      m_name(new QLineEdit(this)), m_button(new QLineEdit(this)), m_divisor(new QLineEdit(this)),
      m_indexType(new QComboBox(this)), m_symbol(new QLineEdit(this)), m_qty(new QLineEdit(this)),
      m_dest(new QComboBox(this)), m_list(new QTableView(this)),
      m_lines(new TextTableModel(
          {QStringLiteral("Symbol"), QStringLiteral("Quantity"), QStringLiteral("Destination")},
          false, this)) {
    setObjectName(QStringLiteral("frmAddBasket"));
    setWindowTitle(QStringLiteral("Add New Basket"));
    m_name->setObjectName(QStringLiteral("txtBasketName"));
    m_button->setObjectName(QStringLiteral("txtButtonName"));
    m_divisor->setObjectName(QStringLiteral("txtDivisor"));
    // A new basket starts with the neutral divisor; the box is converted as it stands.
    m_divisor->setText(QStringLiteral("1"));
    m_indexType->setObjectName(QStringLiteral("cbIndex"));
    m_symbol->setObjectName(QStringLiteral("txtSymbol"));
    m_qty->setObjectName(QStringLiteral("txtQty"));
    m_dest->setObjectName(QStringLiteral("txtDest"));
    m_dest->setEditable(true);
    m_dest->setInsertPolicy(QComboBox::NoInsert);
    m_list->setObjectName(QStringLiteral("lvStocks"));
    m_list->setModel(m_lines);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->verticalHeader()->hide();
    m_list->horizontalHeader()->setStretchLastSection(true);

    // Shown as the form always showed it; what is stored does not depend on it.
    auto* typeFrame = new QGroupBox(QStringLiteral("Basket Type"), this);
    auto* optIndex = new QRadioButton(QStringLiteral("Index"), typeFrame);
    optIndex->setObjectName(QStringLiteral("Option1"));
    optIndex->setChecked(true);
    auto* optLs = new QRadioButton(QStringLiteral("Long/Short"), typeFrame);
    optLs->setObjectName(QStringLiteral("optLsBasket"));
    auto* optOs = new QRadioButton(QStringLiteral("One Sided"), typeFrame);
    optOs->setObjectName(QStringLiteral("optOsBasket"));
    auto* typeLayout = new QVBoxLayout(typeFrame);
    typeLayout->addWidget(optIndex);
    typeLayout->addWidget(optLs);
    typeLayout->addWidget(optOs);

    auto* add = new QPushButton(QStringLiteral("&Add"), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto* remove = new QPushButton(QStringLiteral("&Remove Selected"), this);
    remove->setObjectName(QStringLiteral("cmdRemove"));
    auto* save = new QPushButton(QStringLiteral("&Save"), this);
    save->setObjectName(QStringLiteral("cmdSave"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {add, remove, save, cancel}) {
        b->setAutoDefault(false);
    }

    auto* names = new QFormLayout;
    names->addRow(QStringLiteral("Basket Name:"), m_name);
    names->addRow(QStringLiteral("Button Name:"), m_button);
    names->addRow(QStringLiteral("Divisor:"), m_divisor);
    names->addRow(QStringLiteral("Index:"), m_indexType);
    auto* top = new QHBoxLayout;
    top->addLayout(names);
    top->addWidget(typeFrame);

    auto* entry = new QGridLayout;
    entry->addWidget(new QLabel(QStringLiteral("Symbol"), this), 0, 0);
    entry->addWidget(new QLabel(QStringLiteral("Quantity"), this), 0, 1);
    entry->addWidget(new QLabel(QStringLiteral("Destination"), this), 0, 2);
    entry->addWidget(m_symbol, 1, 0);
    entry->addWidget(m_qty, 1, 1);
    entry->addWidget(m_dest, 1, 2);
    entry->addWidget(add, 1, 3);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(remove);
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(entry);
    layout->addWidget(m_list);
    layout->addLayout(buttons);

    auto* symbolKeys = new SymbolBoxKeys(this);
    symbolKeys->watch(m_symbol);
    // Enter in the line entry adds the line; the basket is saved only by its button.
    auto* enter = new EnterPressesButton(add, this);
    for (QWidget* w : std::initializer_list<QWidget*>{m_symbol, m_qty, m_dest}) {
        enter->watch(w);
    }
    connect(add, &QPushButton::clicked, this, &frmAddBasket::addLine);
    connect(remove, &QPushButton::clicked, this, &frmAddBasket::removeSelected);
    connect(save, &QPushButton::clicked, this, &frmAddBasket::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    FillCombo(*m_indexType, IndexTypes());
    m_indexType->setCurrentText(QStringLiteral("Price Weighted"));
    try {
        FillCombo(*m_dest, EnabledDestinations(m_db, true));
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    m_dest->setCurrentIndex(-1);
}

void frmAddBasket::addLine() {
    const std::string qty = ToStd(m_qty->text());
    const std::string dest = ToStd(m_dest->currentText());
    switch (CheckNewBasketLine(m_boxes, qty, dest)) {
    case NewBasketField::Quantity:
        m_qty->setFocus();
        return;
    case NewBasketField::Destination:
        m_dest->setFocus();
        return;
    default:
        break;
    }
    const BasketLine line = MakeNewBasketLine(ToStd(m_symbol->text()), qty, dest);
    m_lines->appendRow(
        {{ToQ(line.symbol), ToQ(line.quantity), ToQ(line.destination)}, QString(), false});
    m_symbol->clear();
    m_qty->clear();
    m_dest->setCurrentIndex(-1);
    m_dest->clearEditText();
    m_symbol->setFocus();
}

void frmAddBasket::removeSelected() {
    const QModelIndex current = m_list->currentIndex();
    if (current.isValid()) {
        m_lines->removeRowAt(current.row());
    }
}

void frmAddBasket::save() {
    NewBasket basket{ToStd(m_name->text()),
                     ToStd(m_button->text()),
                     ToStd(m_divisor->text()),
                     ToStd(m_indexType->currentText()),
                     {}};
    for (const auto& row : m_lines->rows()) {
        basket.lines.push_back(
            {ToStd(row.cells.at(0)), ToStd(row.cells.at(1)), ToStd(row.cells.at(2))});
    }
    NewBasketField focus = NewBasketField::None;
    try {
        if (!SaveNewBasket(m_db, m_boxes, m_index, basket, focus)) {
            (focus == NewBasketField::ButtonName ? m_button : m_name)->setFocus();
            return;
        }
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        return;
    }
    if (m_onSaved) {
        m_onSaved();
    }
    accept();
}

} // namespace wicker
