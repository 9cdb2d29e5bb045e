#include "baskets/ui/frmSaveAs.h"

#include "baskets/OrdinaryError.h"
#include "baskets/SaveBasketAs.h"
#include "baskets/ui/FormButtons.h"
#include "baskets/ui/UiText.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {

frmSaveAs::frmSaveAs(Database& db, MessageBoxes& boxes, std::vector<BasketLine> lines,
                     QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_lines(std::move(lines)),
      m_name(new QLineEdit(this)), m_button(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmSaveAs"));
    setWindowTitle(QStringLiteral("Save As"));
    m_name->setObjectName(QStringLiteral("txtBasketName"));
    m_button->setObjectName(QStringLiteral("txtButtonName"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Basket Name:"), m_name);
    form->addRow(QStringLiteral("Button Name:"), m_button);
    auto* save =
        AddFormButtons(*this, form, {"Save", "buttonSave", "buttonCancel"}, {m_name, m_button});
    connect(save, &QPushButton::clicked, this, &frmSaveAs::save);
}

void frmSaveAs::save() {
    try {
        m_saved =
            SaveBasketAs(m_db, m_boxes, ToStd(m_name->text()), ToStd(m_button->text()), m_lines);
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        return;
    }
    if (!m_saved) {
        (m_name->text().isEmpty() ? m_name : m_button)->setFocus();
        return;
    }
    accept();
}

} // namespace wicker
