// The program's message boxes: the classic flag values become the right QMessageBox, and
// the trader's button comes back as the answer.

#include "common/ui/QtMessageBoxes.h"

#include <functional>
#include <string>

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <gtest/gtest.h>

namespace wicker {
namespace {

/// Runs `act` on the first message box that opens; closes it if the act did not.
class OnBox {
public:
    explicit OnBox(std::function<void(QMessageBox&)> act) : m_act(std::move(act)) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr || m_done) {
                return;
            }
            m_done = true;
            m_act(*box);
            if (box->isVisible()) {
                box->reject();
            }
        });
        m_timer.start(5);
    }
    bool done() const { return m_done; }

private:
    std::function<void(QMessageBox&)> m_act;
    QTimer m_timer;
    bool m_done = false;
};

TEST(QtMessageBoxes, FlagsGiveButtonsIconDefaultAndTheAnswerClicked) {
    struct Row {
        const char* name;
        int flags;
        QMessageBox::StandardButtons buttons;
        QMessageBox::Icon icon;
        QMessageBox::StandardButton defaultButton;
        QMessageBox::StandardButton click;
        MsgAnswer answer;
    };
    const Row rows[] = {
        {"0: OK only", 0, QMessageBox::Ok, QMessageBox::NoIcon, QMessageBox::Ok, QMessageBox::Ok,
         MsgAnswer::Ok},
        {"1: OK and Cancel", 1, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::NoIcon,
         QMessageBox::Ok, QMessageBox::Cancel, MsgAnswer::Cancel},
        {"48: exclamation", 48, QMessageBox::Ok, QMessageBox::Warning, QMessageBox::Ok,
         QMessageBox::Ok, MsgAnswer::Ok},
        {"64: information", 64, QMessageBox::Ok, QMessageBox::Information, QMessageBox::Ok,
         QMessageBox::Ok, MsgAnswer::Ok},
        {"292: Yes/No, No default, answered Yes", 292, QMessageBox::Yes | QMessageBox::No,
         QMessageBox::Question, QMessageBox::No, QMessageBox::Yes, MsgAnswer::Yes},
        {"292: answered No", 292, QMessageBox::Yes | QMessageBox::No, QMessageBox::Question,
         QMessageBox::No, QMessageBox::No, MsgAnswer::No},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        QtMessageBoxes boxes;
        OnBox on([&](QMessageBox& box) {
            EXPECT_EQ(box.standardButtons(), r.buttons);
            EXPECT_EQ(box.icon(), r.icon);
            ASSERT_NE(box.defaultButton(), nullptr);
            EXPECT_EQ(box.standardButton(box.defaultButton()), r.defaultButton);
            EXPECT_EQ(box.windowTitle().toStdString(), "Basket Confirmation");
            EXPECT_EQ(box.text().toStdString(), "line one\nline two");
            box.button(r.click)->click();
        });
        EXPECT_EQ(boxes.show("line one\r\nline two", r.flags, "Basket Confirmation"), r.answer);
        EXPECT_TRUE(on.done());
    }
}

TEST(QtMessageBoxes, EmptyTitleShowsTheProgramsNameAndEscapeAnswersNo) {
    QtMessageBoxes boxes;
    OnBox on([](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle().toStdString(), "Wicker");
        EXPECT_EQ(box.textFormat(), Qt::PlainText); // a "<" in a symbol stays text
        box.reject();                               // Escape / window close
    });
    EXPECT_EQ(boxes.show("Basket multiple must be greater than 0 <b>", 292, ""), MsgAnswer::No);
    EXPECT_TRUE(on.done());
}

TEST(QtMessageBoxes, ABoxWithAShortTextIsWideEnoughForItsTitle) {
    QtMessageBoxes boxes;
    OnBox on([](QMessageBox& box) {
        const int title = box.fontMetrics().horizontalAdvance(box.windowTitle());
        EXPECT_GT(box.width(), title + 100);
    });
    boxes.show("AAPL 100 NASDAQ", 48, "Some Orders Were Not Sent");
    EXPECT_TRUE(on.done());
}

} // namespace
} // namespace wicker

namespace wicker {
namespace {

// A reject storm must not make a box taller than the screen: past twenty lines an OK-only
// message opens as a list window that fits the screen and keeps every line.
TEST(QtMessageBoxes, ALongMessageOpensAsAListThatFitsTheScreen) {
    std::string text;
    for (int i = 1; i <= 500; ++i) {
        text += "Order: S 100 IBM" + std::to_string(i) + " was rejected. Code:  5\r\n";
    }
    QString shown;
    QSize size;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || dialog->objectName() != QStringLiteral("MessageList")) {
            return;
        }
        shown = dialog->findChild<QPlainTextEdit*>(QStringLiteral("txtMessageList"))->toPlainText();
        size = dialog->size();
        dialog->accept();
    });
    timer.start(5);
    QtMessageBoxes boxes;
    EXPECT_EQ(boxes.show(text, 48, "Rejection Notification"), MsgAnswer::Ok);
    EXPECT_EQ(shown.count(QLatin1Char('\n')), 499);
    EXPECT_TRUE(shown.endsWith(QStringLiteral("IBM500 was rejected. Code:  5")));
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_LE(size.height(), screen.height());
    EXPECT_LE(size.width(), screen.width());
}

} // namespace
} // namespace wicker
