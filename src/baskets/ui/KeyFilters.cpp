#include "baskets/ui/KeyFilters.h"

#include "baskets/SymbolKey.h"
#include "baskets/ui/UiText.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace wicker {

EnterPressesButton::EnterPressesButton(QAbstractButton* button, QObject* parent)
    : QObject(parent), m_button(button) {}

void EnterPressesButton::watch(QWidget* box) {
    box->installEventFilter(this);
    if (auto* combo = qobject_cast<QComboBox*>(box); combo && combo->lineEdit()) {
        combo->lineEdit()->installEventFilter(this);
    }
}

bool EnterPressesButton::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_button->click();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void SymbolBoxKeys::watch(QWidget* lineEdit) {
    lineEdit->installEventFilter(this);
}

bool SymbolBoxKeys::eventFilter(QObject* watched, QEvent* event) {
    auto* edit = qobject_cast<QLineEdit*>(watched);
    if (edit == nullptr || event->type() != QEvent::KeyPress) {
        return QObject::eventFilter(watched, event);
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    const QString text = key->text();
    // Control characters (Ctrl+C, Enter, Backspace) keep their ordinary meaning.
    if (text.size() != 1 || !text.at(0).isPrint()) {
        return QObject::eventFilter(watched, event);
    }
    const bool held =
        (key->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) != 0;
    edit->insert(ToQ(SymbolKeyText(ToStd(text), held)));
    return true;
}

} // namespace wicker
