#pragma once

#include <QString>

#include <optional>

namespace tamsel {

/// Where the uinput driver's things are.
struct UinputPlaces {
    QString helper; ///< the privileged helper's program; empty when it is missing
    std::optional<QString> daemonGroup =
        {}; ///< of a system daemon; without one, the daemon is ours
    QString authorize = QStringLiteral("/usr/bin/pkexec");
    QString root = {}; ///< of the system: "" but in tests
};

/// What the machine says about the uinput driver.
struct UinputState {
    bool hasNode = false;
    bool isInKernel = false;                 ///< a module of the running kernel, or built in
    bool hasAccess = false;                  ///< for whom the daemon runs as
    std::optional<QString> installedVersion; ///< of the access rule that is in force
};

/// Reads files of several hundred kilobytes and may ask a directory service: background threads.
UinputState readUinputState(const UinputPlaces& places);

/// The running kernel's release, as in the names of its module folders.
QString kernelRelease();

} // namespace tamsel
