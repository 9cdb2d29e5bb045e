#pragma once

#include "common/MessageBox.h"

#include <QString>

class QWidget;

namespace wicker {

/// The program's message boxes: one modal QMessageBox per request, over `parent`.
/// An empty title shows the program's own name, as the old runtime did.
class QtMessageBoxes final : public MessageBoxes {
public:
    explicit QtMessageBoxes(QWidget* parent = nullptr,
                            QString defaultTitle = QStringLiteral("Wicker"));

    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& request) override;

    void setParent(QWidget* parent) { m_parent = parent; }

private:
    QWidget* m_parent;
    QString m_defaultTitle;
};

} // namespace wicker
