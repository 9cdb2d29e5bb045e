#include "baskets/ui/frmEditDivisor.h"

#include "baskets/BasketDivisor.h"
#include "baskets/NewBasket.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/FormButtons.h"
#include "baskets/ui/UiText.h"
#include "common/Conversions.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {

frmEditDivisor::frmEditDivisor(MessageBoxes& boxes, BasketIndexStore& index, std::string basketName,
                               const std::string& buttonName, double divisor,
                               const std::string& indexType,
                               std::function<void(double, const std::string&)> onSaved,
                               QWidget* parent)
    : QDialog(parent), m_boxes(boxes), m_index(index), m_basketName(std::move(basketName)),
      m_onSaved(std::move(onSaved)), m_divisor(new QLineEdit(this)),
      m_indexType(new QComboBox(this)) {
    setObjectName(QStringLiteral("frmEditDivisor"));
    setWindowTitle(QStringLiteral("Edit Basket"));
    // The names are shown only; they are never read back.
    auto* name = new QLineEdit(ToQ(m_basketName), this);
    name->setObjectName(QStringLiteral("txtBasketName"));
    name->setReadOnly(true);
    auto* button = new QLineEdit(ToQ(buttonName), this);
    button->setObjectName(QStringLiteral("txtButtonName"));
    button->setReadOnly(true);
    m_divisor->setObjectName(QStringLiteral("txtDivisor"));
    m_indexType->setObjectName(QStringLiteral("cbIndex"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Basket Name:"), name);
    form->addRow(QStringLiteral("Button Name:"), button);
    form->addRow(QStringLiteral("Divisor:"), m_divisor);
    form->addRow(QStringLiteral("Index:"), m_indexType);
    auto* ok =
        AddFormButtons(*this, form, {"Save", "butOK", "butCancel"}, {m_divisor, m_indexType});
    connect(ok, &QPushButton::clicked, this, &frmEditDivisor::save);

    FillCombo(*m_indexType, IndexTypes());
    SelectOrAdd(*m_indexType, ToQ(indexType));
    m_divisor->setText(ToQ(NumberText(divisor)));
}

void frmEditDivisor::save() {
    const std::string indexType = ToStd(m_indexType->currentText());
    double divisor = 0;
    try {
        divisor = StoreEditedDivisor(m_index, m_basketName, ToStd(m_divisor->text()), indexType);
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        m_divisor->setFocus();
        return;
    }
    if (m_onSaved) {
        m_onSaved(divisor, indexType);
    }
    accept();
}

} // namespace wicker
