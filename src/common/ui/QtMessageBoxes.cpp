#include "common/ui/QtMessageBoxes.h"

#include <QMessageBox>
#include <QPushButton>

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
    QMessageBox::StandardButton third = QMessageBox::NoButton;
};

ButtonPair ButtonsOf(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::OkCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case MsgButtons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case MsgButtons::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
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
    box.setStandardButtons(pair.first | pair.second | pair.third);
    const bool second =
        request.defaultButton == MsgDefault::Second && pair.second != QMessageBox::NoButton;
    box.setDefaultButton(second ? pair.second : pair.first);
    // Escape answers as the old boxes did: Cancel or No when there is one, else OK.
    const QMessageBox::StandardButton escape = pair.third != QMessageBox::NoButton    ? pair.third
                                               : pair.second != QMessageBox::NoButton ? pair.second
                                                                                      : pair.first;
    box.setEscapeButton(escape);
    box.exec();
    QAbstractButton* clicked = box.clickedButton();
    if (clicked == nullptr) {
        return AnswerOf(escape);
    }
    return AnswerOf(box.standardButton(clicked));
}

} // namespace wicker
