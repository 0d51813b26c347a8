#pragma once

namespace tamsel {

/// A window of the application. Main thread.
class AppWindow {
public:
    virtual ~AppWindow() = default;

    /// False also for one that is minimised.
    virtual bool isVisible() const = 0;
    /// Shows it, in front of the others and with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

} // namespace tamsel
