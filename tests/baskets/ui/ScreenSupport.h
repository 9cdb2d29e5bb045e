#pragma once

#include "baskets/FileChooser.h"
#include "baskets/MainScreenLink.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

namespace wicker::test {

/// Records what the basket screens ask of the main screen.
class RecordingMainLink : public MainScreenLink {
public:
    void ReloadCurrentBasket() override { calls.push_back("ReloadCurrentBasket"); }
    void LoadBasketList() override { calls.push_back("LoadBasketList"); }
    void LoadButtonValues() override { calls.push_back("LoadButtonValues"); }
    void LoadButtonDisplay() override { calls.push_back("LoadButtonDisplay"); }
    void RecordIndexShares(int32_t basketNum, const std::string& symbol, int32_t shares) override {
        indexShares[{basketNum, symbol}] = shares;
    }

    std::vector<std::string> calls;
    std::map<std::pair<int32_t, std::string>, int32_t> indexShares;
};

/// A file chooser that answers from a script and records each request.
class ScriptedFileChooser : public FileChooser {
public:
    struct Request {
        std::string kind; ///< "open" or "save"
        std::string title;
        std::string filter;
        std::string startPath;
    };

    std::optional<std::string> openFile(const std::string& title, const std::string& filter,
                                        const std::string& startPath) override {
        return answer({"open", title, filter, startPath});
    }
    std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                        const std::string& startPath) override {
        return answer({"save", title, filter, startPath});
    }

    std::deque<std::optional<std::string>> answers;
    std::vector<Request> requests;

private:
    std::optional<std::string> answer(Request r) {
        requests.push_back(std::move(r));
        if (answers.empty()) {
            return std::nullopt;
        }
        auto a = answers.front();
        answers.pop_front();
        return a;
    }
};

/// Acts on the first modal dialog of type D that opens while this object lives. A
/// dialog that never opens is a test failure; any other modal dialog that opens is
/// closed so that a wrong dialog can never hang the test.
template <class D> class WhenOpens {
public:
    explicit WhenOpens(std::function<void(D&)> act) : m_act(std::move(act)) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { poll(); });
        m_timer.start(5);
    }
    ~WhenOpens() {
        m_timer.stop();
        EXPECT_TRUE(m_done) << "the expected dialog did not open";
    }

private:
    void poll() {
        if (m_busy) {
            return; // the action itself runs an event loop (a progress dialog, say)
        }
        auto* modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (modal == nullptr) {
            return;
        }
        if (auto* d = qobject_cast<D*>(modal); d != nullptr && !m_done) {
            m_done = true;
            m_busy = true;
            m_act(*d);
            m_busy = false;
            if (d->isVisible()) {
                d->reject();
            }
            return;
        }
        ADD_FAILURE() << "unexpected dialog " << modal->objectName().toStdString();
        modal->reject();
    }

    std::function<void(D&)> m_act;
    QTimer m_timer;
    bool m_done = false;
    bool m_busy = false;
};

/// Finds a named child or fails the test.
template <class W> W& Child(const QWidget& parent, const char* name) {
    auto* w = parent.findChild<W*>(QString::fromLatin1(name));
    if (w == nullptr) {
        throw std::runtime_error(std::string("no child ") + name);
    }
    return *w;
}

inline void Click(const QWidget& parent, const char* name) {
    Child<QAbstractButton>(parent, name).click();
}

/// Sends one key press as the keyboard would (text is what the key types).
inline void Key(QWidget& w, int key, Qt::KeyboardModifiers mods = Qt::NoModifier,
                const QString& text = QString()) {
    QKeyEvent press(QEvent::KeyPress, key, mods, text);
    QApplication::sendEvent(&w, &press);
    QKeyEvent release(QEvent::KeyRelease, key, mods, text);
    QApplication::sendEvent(&w, &release);
}

inline void PressEnter(QWidget& w) {
    Key(w, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
}

/// Types letters one by one; with `shift` held Qt reports them upper case.
inline void Type(QWidget& w, const QString& letters, bool shift = false) {
    for (QChar c : letters) {
        const QString text = shift ? QString(c).toUpper() : QString(c);
        Key(w, c.toUpper().unicode(), shift ? Qt::ShiftModifier : Qt::NoModifier, text);
    }
}

/// The widgets Tab stops at, in order, starting after the dialog itself. A widget without
/// a name (a combo box's edit line, say) is shown by its owner's name.
inline std::vector<std::string> TabOrder(const QWidget& dialog) {
    std::vector<std::string> out;
    for (QWidget* w = dialog.nextInFocusChain(); w != &dialog; w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) == 0 || w->focusProxy() != nullptr) {
            continue;
        }
        const QObject* named = w;
        while (named != nullptr && named->objectName().isEmpty()) {
            named = named->parent();
        }
        out.push_back(named == nullptr ? "?" : named->objectName().toStdString());
    }
    return out;
}

/// Each push button as "name:caption" in Tab order; "*" marks one that Enter presses
/// by itself (auto default).
inline std::vector<std::string> TabButtons(const QWidget& dialog) {
    std::vector<std::string> out;
    for (const std::string& name : TabOrder(dialog)) {
        if (auto* b = dialog.findChild<QPushButton*>(QString::fromStdString(name))) {
            out.push_back(name + ":" + b->text().toStdString() + (b->autoDefault() ? "*" : ""));
        }
    }
    return out;
}

/// Text of one cell of a list view.
inline std::string Cell(const QAbstractItemView& view, int row, int column) {
    return view.model()->index(row, column).data().toString().toStdString();
}

inline int Rows(const QAbstractItemView& view) {
    return view.model()->rowCount();
}

} // namespace wicker::test
