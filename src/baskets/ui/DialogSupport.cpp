#include "baskets/ui/DialogSupport.h"

#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QDialog>

namespace wicker {

void PlaceBelowRight(QDialog& dialog, const QWidget& owner) {
    // 100 twips at the classic 15 twips per pixel.
    constexpr int kOffset = 7;
    dialog.move(owner.pos() + QPoint(kOffset, kOffset));
}

QComboBox* EditableCombo(QWidget* parent, const QString& name) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    return combo;
}

void FillCombo(QComboBox& combo, const std::vector<std::string>& texts) {
    for (const auto& t : texts) {
        combo.addItem(ToQ(t));
    }
}

void SelectOrAdd(QComboBox& combo, const QString& text) {
    int at = combo.findText(text, Qt::MatchExactly);
    if (at < 0) {
        combo.addItem(text);
        at = combo.count() - 1;
    }
    combo.setCurrentIndex(at);
}

} // namespace wicker
