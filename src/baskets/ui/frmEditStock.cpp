#include "baskets/ui/frmEditStock.h"

#include "baskets/ui/FormButtons.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {

frmEditStock::frmEditStock(Database& db, MessageBoxes& boxes, StockLineKey old,
                           std::function<void(const StockRow&)> onSaved, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_old(std::move(old)),
      m_onSaved(std::move(onSaved)),
      m_fields(this, {"txtSymbol", "txtQty", "txtDest", "txtIndexShares"}) {
    setObjectName(QStringLiteral("frmEditStock"));
    setWindowTitle(QStringLiteral("Edit Stock"));

    auto* form = new QFormLayout;
    m_fields.addRows(*form);
    auto* save = AddFormButtons(*this, form, {"Save", "cmdSave", "cmdCancel"}, m_fields.boxes());
    connect(save, &QPushButton::clicked, this, &frmEditStock::save);

    m_fields.fillDestinations(m_db, m_boxes, false);
    m_fields.symbol()->setText(ToQ(m_old.symbol));
    m_fields.quantity()->setText(QString::number(m_old.quantity));
    m_fields.destination()->setEditText(ToQ(m_old.destination));
    m_fields.indexShares()->setText(QString::number(m_old.indexShares));
}

void frmEditStock::save() {
    StockEntry entry = m_fields.entry();
    const auto row = UpdateStockLine(m_db, m_boxes, m_old, entry);
    m_fields.showFilledIn(entry);
    if (!row) {
        m_fields.symbol()->setFocus();
        return;
    }
    if (m_onSaved) {
        m_onSaved(*row);
    }
    accept();
}

} // namespace wicker
