#pragma once

#include "platform/linux/driver/uinput_state.h"
#include "platform/linux/services/linux_service_management.h"
#include "platform/linux/store/folder_bundle.h"

#include <QString>

namespace tamsel {

/// Where the daemon is and whose it is: settled once, at start, for everything that depends on it.
struct Deployment {
    using Daemon = ServicePlaces::Kind;

    Daemon daemon = Daemon::embedded;
    QString daemonAddress; ///< D-Bus address that the application connects to
    QString programFolder; ///< of the application's program
    QString bundleFolder;

    /// What the environment and the installed units call for: TAMSEL_DAEMON_ADDRESS names a daemon
    /// that is somebody else's; else the unit is the system's, where it is installed; else the
    /// daemon is this user's own. TAMSEL_BUNDLE names the bundle's folder, else it is
    /// ../share/tamsel/ beside the program's.
    static Deployment here(const QString& programFolder);

    FolderBundle bundle() const;
    /// Of the services; `application` is the absolute path of what the login item starts.
    ServicePlaces services(const Bundle& bundle, const QString& application) const;
    /// Of the driver: with a daemon of the system it is for that one's account to open.
    UinputPlaces driver(const Bundle& bundle) const;
};

} // namespace tamsel
