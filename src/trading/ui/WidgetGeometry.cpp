#include "trading/ui/WidgetGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace wicker {

WindowState WidgetGeometry::state() const {
    if (m_widget.isMinimized()) {
        return WindowState::Minimised;
    }
    if (m_widget.isMaximized()) {
        return WindowState::Maximised;
    }
    return WindowState::Normal;
}

void WidgetGeometry::setState(WindowState state) {
    switch (state) {
    case WindowState::Maximised:
        m_widget.setWindowState(m_widget.windowState() | Qt::WindowMaximized);
        break;
    case WindowState::Minimised:
        m_widget.setWindowState(m_widget.windowState() | Qt::WindowMinimized);
        break;
    case WindowState::Normal:
        m_widget.setWindowState(Qt::WindowNoState);
        break;
    }
}

// Placement counts from the corner of the window's frame, so a window put at the top of
// the screen keeps its title bar on it.
Rect WidgetGeometry::rect() const {
    // The normal-state placement, also while maximised, so a restart restores it.
    const QRect r = m_widget.isMaximized() || m_widget.isMinimized() ? m_widget.normalGeometry()
                                                                     : m_widget.geometry();
    const QPoint frame = m_widget.geometry().topLeft() - m_widget.frameGeometry().topLeft();
    return {r.x() - frame.x(), r.y() - frame.y(), r.width(), r.height()};
}

void WidgetGeometry::move(const Rect& r) {
    m_widget.resize(r.width, r.height);
    m_widget.move(r.left, r.top); // a window's position is that of its frame
}

Rect WidgetGeometry::screen() const {
    const QScreen* s = m_widget.screen();
    if (s == nullptr) {
        s = QGuiApplication::primaryScreen();
    }
    if (s == nullptr) {
        return {};
    }
    // The room left for the window's own area once its frame is drawn; before the window
    // manager has framed it, a title bar's height is kept free.
    constexpr int kTitleBarAllowance = 32;
    const QRect a = s->availableGeometry();
    const QRect frame = m_widget.frameGeometry();
    const QRect inner = m_widget.geometry();
    const bool framed = frame != inner;
    const int extraWidth = framed ? frame.width() - inner.width() : 0;
    const int extraHeight = framed ? frame.height() - inner.height() : kTitleBarAllowance;
    return {a.x(), a.y(), a.width() - extraWidth, a.height() - extraHeight};
}

} // namespace wicker
