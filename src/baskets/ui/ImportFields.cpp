#include "baskets/ui/ImportFields.h"

#include "baskets/Destinations.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace wicker {

ImportFields::ImportFields(QWidget* parent)
    : name(new QLineEdit(parent)), button(new QLineEdit(parent)), fileName(new QLineEdit(parent)),
      listed(new QComboBox(parent)), otc(new QComboBox(parent)),
      open(new QPushButton(QStringLiteral("..."), parent)) {
    name->setObjectName(QStringLiteral("txtBasketName"));
    button->setObjectName(QStringLiteral("txtButtonName"));
    fileName->setObjectName(QStringLiteral("txtFileName"));
    fileName->setMinimumWidth(360);
    listed->setObjectName(QStringLiteral("cboListed"));
    otc->setObjectName(QStringLiteral("cboOTC"));
    open->setObjectName(QStringLiteral("cmdOpenFile"));
    open->setAccessibleName(QStringLiteral("Choose file"));
    open->setAutoDefault(false);
}

QHBoxLayout* ImportFields::ButtonRow(QDialog& dialog, QPushButton* import) {
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), &dialog);
    cancel->setObjectName(QStringLiteral("cndCancel"));
    for (auto* b : {import, cancel}) {
        b->setAutoDefault(false);
    }
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(import);
    row->addWidget(cancel);
    return row;
}

QFormLayout* ImportFields::form() const {
    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(fileName);
    fileRow->addWidget(open);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Basket Name:"), name);
    form->addRow(QStringLiteral("Button Name:"), button);
    form->addRow(QStringLiteral("File:"), fileRow);
    form->addRow(QStringLiteral("Default Listed Destination:"), listed);
    form->addRow(QStringLiteral("Default OTC Destination:"), otc);
    return form;
}

std::vector<std::string> ImportFields::fillDestinations(Database& db, MessageBoxes& boxes,
                                                        const ImportDefaults& defaults) const {
    std::vector<std::string> destinations;
    try {
        destinations = EnabledDestinations(db, true);
    } catch (const std::exception& e) {
        ShowOrdinaryError(boxes, e);
    }
    for (const auto& [combo, chosen] : {std::pair{listed, defaults.listed}, {otc, defaults.otc}}) {
        combo->addItem(QString::fromLatin1(kNoDestination));
        FillCombo(*combo, destinations);
        const int at = combo->findText(ToQ(chosen), Qt::MatchExactly);
        combo->setCurrentIndex(at < 0 ? 0 : at);
    }
    return destinations;
}

std::string ImportFields::DefaultText(const QComboBox& combo) {
    return combo.currentIndex() <= 0 ? std::string() : ToStd(combo.currentText());
}

} // namespace wicker
