#include "baskets/ui/frmAddStock.h"

#include "baskets/OrdinaryError.h"
#include "baskets/StockEntry.h"
#include "baskets/ui/FormButtons.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {

frmAddStock::frmAddStock(Database& db, MessageBoxes& boxes, int32_t basketNum,
                         std::function<void(const StockRow&)> onAdded, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_basketNum(basketNum),
      m_onAdded(std::move(onAdded)),
      m_fields(this, {"txtSymbol", "txtQty", "cboDest", "txtIndexShares"}) {
    setObjectName(QStringLiteral("frmAddStock"));
    setWindowTitle(QStringLiteral("Add Stock"));

    auto* form = new QFormLayout;
    m_fields.addRows(*form);
    auto* add = AddFormButtons(*this, form, {"Add Stock", "cmdAdd", "cmdCancel"}, m_fields.boxes());
    connect(add, &QPushButton::clicked, this, &frmAddStock::addStock);

    m_fields.fillDestinations(m_db, m_boxes, false);
    m_fields.destination()->setCurrentIndex(-1);
}

void frmAddStock::addStock() {
    StockEntry entry = m_fields.entry();
    StockField focus = StockField::None;
    try {
        const auto row = AddStockToBasket(m_db, m_boxes, m_basketNum, entry, focus);
        m_fields.showFilledIn(entry);
        if (!row) {
            (focus == StockField::Destination ? static_cast<QWidget*>(m_fields.destination())
                                              : m_fields.symbol())
                ->setFocus();
            return;
        }
        if (m_onAdded) {
            m_onAdded(*row);
        }
        m_fields.symbol()->clear();
        m_fields.quantity()->clear();
        m_fields.indexShares()->clear();
        m_fields.symbol()->setFocus();
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
}

} // namespace wicker
