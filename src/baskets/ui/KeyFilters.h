#pragma once

#include <QObject>

class QAbstractButton;
class QWidget;

namespace wicker {

/// Enter (either key) in any watched box clicks the dialog's main button.
class EnterPressesButton : public QObject {
    Q_OBJECT

public:
    EnterPressesButton(QAbstractButton* button, QObject* parent);
    /// Watches a line edit or a combo box (and the combo's own edit line).
    void watch(QWidget* box);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAbstractButton* m_button;
};

/// Makes a line edit a symbol box: typed letters come out upper case, or lower case
/// while Shift, Ctrl or Alt is held.
class SymbolBoxKeys : public QObject {
    Q_OBJECT

public:
    explicit SymbolBoxKeys(QObject* parent) : QObject(parent) {}
    void watch(QWidget* lineEdit);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace wicker
