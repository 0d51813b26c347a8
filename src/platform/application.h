#pragma once

#include <QStringList>

#include <cstdint>

namespace tamsel {

class AppWindow;

/// Whether the application has a place among the others (windows, an entry in the task bar) or
/// stands in the background, with its icon in the menu bar alone.
enum class ActivationPolicy : std::uint8_t { regular, accessory };

enum class TerminateReply : std::uint8_t { cancel, now };

/// What the platform tells the application and asks it. Main thread.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// Before the first turn of the main loop.
    virtual void applicationDidFinishLaunching() = 0;
    /// Somebody wants the application to end; `cancel` leaves it running.
    virtual TerminateReply applicationShouldTerminate() = 0;
    /// The last call, after the main loop.
    virtual void applicationWillTerminate() = 0;
    virtual bool applicationShouldTerminateAfterLastWindowClosed() const = 0;
    /// It was started a second time, or called up by its icon. False: the platform does nothing
    /// more.
    virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
    /// URLs that the desktop hands over, in the words of whoever wrote them: anything may come.
    virtual void applicationOpenURLs(const QStringList& urls) = 0;
    /// The user closes the window; false leaves it open.
    virtual bool windowShouldClose(const AppWindow& window) = 0;
};

/// The running application. Main thread.
class Application {
public:
    virtual ~Application() = default;

    /// Asks the delegate, and ends the application on a later turn of the main loop if it may.
    virtual void terminate() = 0;

    virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Makes it the one that the user works with, ignoring other applications. A desktop may refuse
    /// that to a program that no user has called up.
    virtual void activate() = 0;

    /// The main window, not shown yet; the application keeps it. Null when it can't be made.
    virtual AppWindow* makeMainWindow() = 0;
    /// Of any window but panels: popups, menus, tool tips.
    virtual bool hasVisibleWindows() const = 0;
    /// Hides these windows. Where no icon in the menu bar would bring the main window back, it
    /// keeps its entry in the task bar and counts as not visible.
    virtual void orderOutWindows() = 0;
};

} // namespace tamsel
