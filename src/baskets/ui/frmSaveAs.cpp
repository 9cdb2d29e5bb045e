#include "baskets/ui/frmSaveAs.h"

#include "baskets/OrdinaryError.h"
#include "baskets/SaveBasketAs.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

frmSaveAs::frmSaveAs(Database& db, MessageBoxes& boxes, std::vector<BasketLine> lines,
                     QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_lines(std::move(lines)),
      m_name(new QLineEdit(this)), m_button(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmSaveAs"));
    setWindowTitle(QStringLiteral("Save As"));
    m_name->setObjectName(QStringLiteral("txtBasketName"));
    m_button->setObjectName(QStringLiteral("txtButtonName"));

    auto* save = new QPushButton(QStringLiteral("Save"), this);
    save->setObjectName(QStringLiteral("buttonSave"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("buttonCancel"));
    for (auto* b : {save, cancel}) {
        b->setAutoDefault(false);
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Basket Name:"), m_name);
    form->addRow(QStringLiteral("Button Name:"), m_button);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* enter = new EnterPressesButton(save, this);
    enter->watch(m_name);
    enter->watch(m_button);
    connect(save, &QPushButton::clicked, this, &frmSaveAs::save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
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
