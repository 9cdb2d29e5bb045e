#include "baskets/ui/frmAddStockMain.h"

#include "baskets/ui/FormButtons.h"

#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>

namespace wicker {

frmAddStockMain::frmAddStockMain(Database& db, MessageBoxes& boxes,
                                 std::function<bool(MainLineEntry&)> add, QWidget* parent)
    : QDialog(parent), m_add(std::move(add)),
      m_fields(this, {"txtSymbol", "txtQuantity", "cboDest"}) {
    setObjectName(QStringLiteral("frmAddStockMain"));
    setWindowTitle(QStringLiteral("Add Stock"));

    auto* form = new QFormLayout;
    m_fields.addRows(*form);
    auto* addButton = AddFormButtons(*this, form, {"Add Stock", "buttonAddStock", "buttonCancel"},
                                     m_fields.boxes());
    connect(addButton, &QPushButton::clicked, this, &frmAddStockMain::addStock);

    m_fields.fillDestinations(db, boxes, false);
    m_fields.destination()->setCurrentIndex(-1);
}

void frmAddStockMain::addStock() {
    MainLineEntry entry = m_fields.mainLine();
    if (m_fields.handOver(entry, m_add)) {
        accept();
    }
}

} // namespace wicker
