#include "admin/ui/AddNameDialog.h"

#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

AddNameDialog::AddNameDialog(const Names& names, std::function<void(const std::string&)> add,
                             QWidget* parent)
    : QDialog(parent), m_add(std::move(add)), m_name(new QLineEdit(this)) {
    setObjectName(QString::fromLatin1(names.form));
    setWindowTitle(QString::fromLatin1(names.caption));
    m_name->setObjectName(QString::fromLatin1(names.box));

    auto* addButton = new QPushButton(QStringLiteral("&Add"), this);
    addButton->setObjectName(QStringLiteral("cmdAdd"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* b : {addButton, cancel}) {
        b->setAutoDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(addButton);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QString::fromLatin1(names.label), this));
    layout->addWidget(m_name);
    layout->addLayout(buttons);

    auto* enter = new EnterPressesButton(addButton, this);
    enter->watch(m_name);
    connect(addButton, &QPushButton::clicked, this, &AddNameDialog::addName);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void AddNameDialog::addName() {
    if (m_add) {
        m_add(ToStd(m_name->text()));
    }
    accept();
}

} // namespace wicker
