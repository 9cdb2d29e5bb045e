#include "baskets/ui/frmEditItem.h"

#include "baskets/MainLineEdits.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/FormButtons.h"
#include "baskets/ui/UiText.h"
#include "trading/ui/UpDown.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {
namespace {

/// Selects the entry equal to `text`; a text the list lacks is shown as typed.
void ShowChoice(QComboBox& combo, const std::string& text) {
    const int at = combo.findText(ToQ(text), Qt::MatchExactly);
    combo.setCurrentIndex(at);
    combo.setEditText(ToQ(text));
}

} // namespace

frmEditItem::frmEditItem(Database& db, MessageBoxes& boxes, const MainLineEntry& current,
                         std::function<bool(MainLineEntry&)> save, QWidget* parent)
    : QDialog(parent), m_save(std::move(save)), m_fields(this, {"txtSym", "txtQty", "cbDest"}),
      m_mod(new QLineEdit(this)), m_upDown(new UpDown(QStringLiteral("UpDown1"), this)),
      m_tif(EditableCombo(this, QStringLiteral("cbTif"))) {
    setObjectName(QStringLiteral("frmEditItem"));
    setWindowTitle(QStringLiteral("Edit Item"));
    m_mod->setObjectName(QStringLiteral("txtMod"));

    auto* modRow = new QHBoxLayout;
    modRow->addWidget(m_mod, 1);
    modRow->addWidget(m_upDown);
    auto* form = new QFormLayout;
    m_fields.addRows(*form);
    form->addRow(QStringLiteral("Modifier:"), modRow);
    form->addRow(QStringLiteral("TIF:"), m_tif);
    std::vector<QWidget*> enterBoxes = m_fields.boxes();
    enterBoxes.insert(enterBoxes.end(), {m_mod, m_tif});
    auto* ok = AddFormButtons(*this, form, {"OK", "cmdOk", "cmdCancel"}, enterBoxes);
    connect(ok, &QPushButton::clicked, this, &frmEditItem::save);
    connect(m_upDown, &UpDown::stepped, this,
            [this](bool up) { m_mod->setText(ToQ(StepModifier(ToStd(m_mod->text()), up))); });

    m_fields.fillDestinations(db, boxes, true);
    FillCombo(*m_tif, EditItemTifs());
    m_fields.symbol()->setText(ToQ(current.symbol));
    m_fields.quantity()->setText(ToQ(current.quantity));
    m_mod->setText(ToQ(current.modifier));
    ShowChoice(*m_fields.destination(), current.destination);
    ShowChoice(*m_tif, current.tif);
}

void frmEditItem::save() {
    MainLineEntry entry = m_fields.mainLine();
    entry.modifier = ToStd(m_mod->text());
    entry.tif = ToStd(m_tif->currentText());
    const bool saved = m_fields.handOver(entry, m_save);
    m_mod->setText(ToQ(entry.modifier));
    if (saved) {
        accept();
    }
}

} // namespace wicker
