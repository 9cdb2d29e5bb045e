#include "baskets/ui/frmEditItem.h"

#include "baskets/Destinations.h"
#include "baskets/MainLineEdits.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"
#include "trading/ui/UpDown.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

QComboBox* EditableCombo(QWidget* parent, const QString& name) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    return combo;
}

/// Selects the entry equal to `text`; a text the list lacks is shown as typed.
void ShowChoice(QComboBox& combo, const std::string& text) {
    const int at = combo.findText(ToQ(text), Qt::MatchExactly);
    combo.setCurrentIndex(at);
    combo.setEditText(ToQ(text));
}

} // namespace

frmEditItem::frmEditItem(Database& db, MessageBoxes& boxes, const MainLineEntry& current,
                         std::function<bool(MainLineEntry&)> save, QWidget* parent)
    : QDialog(parent), m_save(std::move(save)), m_symbol(new QLineEdit(this)),
      m_qty(new QLineEdit(this)), m_dest(EditableCombo(this, QStringLiteral("cbDest"))),
      m_mod(new QLineEdit(this)), m_upDown(new UpDown(QStringLiteral("UpDown1"), this)),
      m_tif(EditableCombo(this, QStringLiteral("cbTif"))) {
    setObjectName(QStringLiteral("frmEditItem"));
    setWindowTitle(QStringLiteral("Edit Item"));
    m_symbol->setObjectName(QStringLiteral("txtSym"));
    m_qty->setObjectName(QStringLiteral("txtQty"));
    m_mod->setObjectName(QStringLiteral("txtMod"));

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOk"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {ok, cancel}) {
        b->setAutoDefault(false);
    }

    auto* modRow = new QHBoxLayout;
    modRow->addWidget(m_mod, 1);
    modRow->addWidget(m_upDown);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Symbol:"), m_symbol);
    form->addRow(QStringLiteral("Quantity:"), m_qty);
    form->addRow(QStringLiteral("Destination:"), m_dest);
    form->addRow(QStringLiteral("Modifier:"), modRow);
    form->addRow(QStringLiteral("TIF:"), m_tif);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* symbolKeys = new SymbolBoxKeys(this);
    symbolKeys->watch(m_symbol);
    auto* enter = new EnterPressesButton(ok, this);
    for (QWidget* w : std::initializer_list<QWidget*>{m_symbol, m_qty, m_dest, m_mod, m_tif}) {
        enter->watch(w);
    }
    connect(ok, &QPushButton::clicked, this, &frmEditItem::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_upDown, &UpDown::stepped, this,
            [this](bool up) { m_mod->setText(ToQ(StepModifier(ToStd(m_mod->text()), up))); });

    try {
        FillCombo(*m_dest, EnabledDestinations(db, true));
    } catch (const std::exception& e) {
        ShowOrdinaryError(boxes, e);
    }
    FillCombo(*m_tif, EditItemTifs());
    m_symbol->setText(ToQ(current.symbol));
    m_qty->setText(ToQ(current.quantity));
    m_mod->setText(ToQ(current.modifier));
    ShowChoice(*m_dest, current.destination);
    ShowChoice(*m_tif, current.tif);
}

void frmEditItem::save() {
    MainLineEntry entry;
    entry.symbol = ToStd(m_symbol->text());
    entry.quantity = ToStd(m_qty->text());
    entry.destination = ToStd(m_dest->currentText());
    entry.modifier = ToStd(m_mod->text());
    entry.tif = ToStd(m_tif->currentText());
    const bool saved = m_save(entry);
    m_qty->setText(ToQ(entry.quantity));
    m_mod->setText(ToQ(entry.modifier));
    if (saved) {
        accept();
    } else if (entry.symbol.empty()) {
        m_symbol->setFocus();
    }
}

} // namespace wicker
