#pragma once

#include <string>

namespace tamsel::protocol {

/// The D-Bus address on which the daemon listens and everybody else connects:
/// TAMSEL_DAEMON_ADDRESS when set and not empty, else the system socket when the system unit is
/// installed, else userDaemonAddress().
std::string daemonAddress();

/// The daemon's systemd unit stands in one of the system's unit folders.
bool systemUnitInstalled();

/// The address of a per-user daemon, tamsel/daemon.sock in userRuntimeFolder(); "" without one.
std::string userDaemonAddress();

/// $XDG_RUNTIME_DIR, else "/tmp/tamsel-runtime-UID"; "" when that one exists but is not a folder
/// of this user's alone. The folder need not exist.
std::string userRuntimeFolder();

/// The file of a "unix:path=..." address with its escapes undone; "" for any other address.
std::string socketFile(const std::string& address);

} // namespace tamsel::protocol
