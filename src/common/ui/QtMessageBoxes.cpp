#include "common/ui/QtMessageBoxes.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>

namespace wicker {
namespace {

QMessageBox::Icon IconOf(MsgIcon icon) {
    switch (icon) {
    case MsgIcon::Critical:
        return QMessageBox::Critical;
    case MsgIcon::Question:
        return QMessageBox::Question;
    case MsgIcon::Exclamation:
        return QMessageBox::Warning;
    case MsgIcon::Information:
        return QMessageBox::Information;
    case MsgIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

struct ButtonPair {
    QMessageBox::StandardButton first;
    QMessageBox::StandardButton second; ///< NoButton when there is only one
};

ButtonPair ButtonsOf(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::OkCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case MsgButtons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case MsgButtons::Ok:
        break;
    }
    return {QMessageBox::Ok, QMessageBox::NoButton};
}

MsgAnswer AnswerOf(QMessageBox::StandardButton button) {
    switch (button) {
    case QMessageBox::Yes:
        return MsgAnswer::Yes;
    case QMessageBox::No:
        return MsgAnswer::No;
    case QMessageBox::Cancel:
        return MsgAnswer::Cancel;
    default:
        return MsgAnswer::Ok;
    }
}

// A short text makes a narrow box whose title the window manager cuts ("Some
// Order...ere Not Sent"): the box is kept as wide as its title plus the title bar's
// buttons and the room a window manager's title font takes beyond the dialog font.
void WidenForTitle(QMessageBox& box) {
    constexpr int kTitleBarButtons = 150;
    const int width =
        QFontMetrics(box.font()).horizontalAdvance(box.windowTitle()) * 5 / 4 + kTitleBarButtons;
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                      grid->rowCount(), 0, 1, grid->columnCount());
    }
}

} // namespace

QtMessageBoxes::QtMessageBoxes(QWidget* parent, QString defaultTitle)
    : m_parent(parent), m_defaultTitle(std::move(defaultTitle)) {}

MsgAnswer QtMessageBoxes::show(const MessageRequest& request) {
    const ButtonPair pair = ButtonsOf(request.buttons);
    QMessageBox box(m_parent);
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setIcon(IconOf(request.icon));
    box.setWindowTitle(request.title.empty() ? m_defaultTitle
                                             : QString::fromStdString(request.title));
    // Texts are the program's own: never let Qt guess rich text from a "<" in a symbol.
    box.setTextFormat(Qt::PlainText);
    // The old texts end lines with CR LF; Qt shows a CR as a blank box.
    QString text = QString::fromStdString(request.text);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    box.setText(text);
    box.setStandardButtons(pair.first | pair.second);
    const bool second =
        request.defaultButton == MsgDefault::Second && pair.second != QMessageBox::NoButton;
    box.setDefaultButton(second ? pair.second : pair.first);
    // Escape answers as the old boxes did: Cancel or No when there is one, else OK.
    box.setEscapeButton(pair.second != QMessageBox::NoButton ? pair.second : pair.first);
    WidenForTitle(box);
    box.exec();
    QAbstractButton* clicked = box.clickedButton();
    if (clicked == nullptr) {
        return pair.second != QMessageBox::NoButton ? AnswerOf(pair.second) : MsgAnswer::Ok;
    }
    return AnswerOf(box.standardButton(clicked));
}

} // namespace wicker
