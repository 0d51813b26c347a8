#pragma once

#include <QStringView>

namespace tamsel {

/// The panes of the system's settings, by the addresses that the system gives them.
namespace settingsPane {
inline constexpr QStringView inputMonitoring =
    u"x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";
/// Where driver extensions are allowed: since version 15 of the system, and before.
inline constexpr QStringView extensions =
    u"x-apple.systempreferences:com.apple.LoginItems-Settings.extension";
inline constexpr QStringView extensionsBefore15 =
    u"x-apple.systempreferences:com.apple.preference.security?General";
} // namespace settingsPane

/// Opens the system's settings. Main thread.
class SettingsPanes {
public:
    virtual ~SettingsPanes() = default;

    /// Which generation of panes there is: the system's major version.
    virtual int systemVersion() const = 0;

    /// Shows the pane with this address; an address that names none shows nothing.
    virtual void open(QStringView pane) = 0;
    /// Shows where background services are allowed.
    virtual void openLoginItems() = 0;
};

} // namespace tamsel
