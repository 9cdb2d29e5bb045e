#pragma once

namespace wicker {

enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

struct Rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Rect&) const = default;
};

/// What SaveFormPosition / LoadFormPosition need of a window, so that the settings
/// code never includes a widget header. Screens adapt their QWidget to it.
class WindowGeometry {
public:
    virtual ~WindowGeometry() = default;
    virtual WindowState state() const = 0;
    virtual void setState(WindowState state) = 0;
    /// Normal-state placement in pixels.
    virtual Rect rect() const = 0;
    virtual void move(const Rect& r) = 0;
    /// Available area of the screen the window is on.
    virtual Rect screen() const = 0;
};

} // namespace wicker
