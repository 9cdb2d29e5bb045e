#include "baskets/ui/FormButtons.h"

#include "baskets/ui/KeyFilters.h"

#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

QPushButton* AddFormButtons(QDialog& dialog, QFormLayout* form, const FormButtonNames& names,
                            const std::vector<QWidget*>& enterBoxes) {
    auto* main = new QPushButton(QString::fromLatin1(names.caption), &dialog);
    main->setObjectName(QString::fromLatin1(names.name));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), &dialog);
    cancel->setObjectName(QString::fromLatin1(names.cancelName));
    // Enter is routed to the main button by EnterPressesButton, never by a default button.
    for (auto* b : {main, cancel}) {
        b->setAutoDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(main);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* enter = new EnterPressesButton(main, &dialog);
    for (QWidget* w : enterBoxes) {
        enter->watch(w);
    }
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    return main;
}

} // namespace wicker
