#pragma once

#include "storage/WindowGeometry.h"

class QWidget;

namespace wicker {

/// A top-level widget as the settings code sees a window: state, normal placement and the
/// available area of its screen, so SaveFormPosition / LoadFormPosition can work on it.
class WidgetGeometry final : public WindowGeometry {
public:
    explicit WidgetGeometry(QWidget& widget) : m_widget(widget) {}

    WindowState state() const override;
    void setState(WindowState state) override;
    Rect rect() const override;
    void move(const Rect& r) override;
    Rect screen() const override;

private:
    QWidget& m_widget;
};

} // namespace wicker
