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

Rect WidgetGeometry::rect() const {
    // The normal-state placement, also while maximised, so a restart restores it.
    const QRect r = m_widget.isMaximized() || m_widget.isMinimized() ? m_widget.normalGeometry()
                                                                     : m_widget.geometry();
    return {r.x(), r.y(), r.width(), r.height()};
}

void WidgetGeometry::move(const Rect& r) {
    m_widget.setGeometry(r.left, r.top, r.width, r.height);
}

Rect WidgetGeometry::screen() const {
    const QScreen* s = m_widget.screen();
    if (s == nullptr) {
        s = QGuiApplication::primaryScreen();
    }
    if (s == nullptr) {
        return {};
    }
    const QRect a = s->availableGeometry();
    return {a.x(), a.y(), a.width(), a.height()};
}

} // namespace wicker
