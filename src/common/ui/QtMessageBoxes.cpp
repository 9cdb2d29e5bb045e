#include "common/ui/QtMessageBoxes.h"

#include <algorithm>
#include <optional>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSpacerItem>
#include <QStyle>
#include <QVBoxLayout>

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

/// A message box grows with its text: past this many lines an OK-only message shows in a
/// scrolling list instead, so a storm of rejects never pushes the OK button off the screen.
constexpr int kMaxBoxLines = 20;

std::optional<QStyle::StandardPixmap> PixmapOf(QMessageBox::Icon icon) {
    switch (icon) {
    case QMessageBox::Critical:
        return QStyle::SP_MessageBoxCritical;
    case QMessageBox::Question:
        return QStyle::SP_MessageBoxQuestion;
    case QMessageBox::Warning:
        return QStyle::SP_MessageBoxWarning;
    case QMessageBox::Information:
        return QStyle::SP_MessageBoxInformation;
    case QMessageBox::NoIcon:
        break;
    }
    return std::nullopt;
}

/// The long message as a list window: the text selectable and copyable, one OK.
void ShowAsList(QWidget* parent, const QString& title, const QString& text,
                QMessageBox::Icon icon) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("MessageList"));
    dialog.setWindowTitle(title);
    auto* column = new QVBoxLayout(&dialog);
    auto* top = new QHBoxLayout();
    if (const auto pixmap = PixmapOf(icon)) {
        auto* iconLabel = new QLabel(&dialog);
        const int size = dialog.style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
        iconLabel->setPixmap(dialog.style()->standardIcon(*pixmap).pixmap(size, size));
        top->addWidget(iconLabel, 0, Qt::AlignTop);
    }
    top->addWidget(
        new QLabel(QString::number(text.count(QLatin1Char('\n')) + 1) + QStringLiteral(" lines:"),
                   &dialog),
        1);
    column->addLayout(top);
    auto* list = new QPlainTextEdit(&dialog);
    list->setObjectName(QStringLiteral("txtMessageList"));
    list->setReadOnly(true);
    list->setLineWrapMode(QPlainTextEdit::NoWrap);
    list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    list->setPlainText(text);
    column->addWidget(list, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    column->addWidget(buttons);
    // Fits whatever screen it opens on, with room to spare.
    const QScreen* screen = parent != nullptr && parent->screen() != nullptr
                                ? parent->screen()
                                : QGuiApplication::primaryScreen();
    const QRect area = screen != nullptr ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    dialog.resize(std::min(area.width() * 3 / 4, 900), std::min(area.height() * 3 / 4, 600));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    dialog.exec();
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
    if (pair.second == QMessageBox::NoButton && text.count(QLatin1Char('\n')) >= kMaxBoxLines) {
        ShowAsList(m_parent, box.windowTitle(), text.trimmed(), IconOf(request.icon));
        return MsgAnswer::Ok;
    }
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
    WidenForTitle(box);
    box.exec();
    QAbstractButton* clicked = box.clickedButton();
    if (clicked == nullptr) {
        return AnswerOf(escape);
    }
    return AnswerOf(box.standardButton(clicked));
}

} // namespace wicker
