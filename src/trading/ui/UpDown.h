#pragma once

#include <QWidget>

class QToolButton;

namespace wicker {

/// An up/down spinner beside a text box: two small arrow buttons that repeat while held.
/// It holds no value; the screen asks the logic for the box's next text.
class UpDown final : public QWidget {
    Q_OBJECT

public:
    explicit UpDown(const QString& name, QWidget* parent = nullptr);

    QToolButton* upButton() const { return m_up; }
    QToolButton* downButton() const { return m_down; }

signals:
    /// One click (or one repeat) of either arrow.
    void stepped(bool up);

private:
    QToolButton* m_up;
    QToolButton* m_down;
};

} // namespace wicker
