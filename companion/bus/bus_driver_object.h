#pragma once

#include "base/error.h"

#include <systemd/sd-bus.h>

namespace tamsel {

/// Serves as much of org.freedesktop.DBus on a connection as tools made for a message bus ask of it
/// (Hello, match rules, who owns a name), so that busctl and gdbus can talk to the daemon. The
/// peer is ":1.1"; the daemon is ":1.0" and app.tamsel.daemon. Match rules are taken and ignored.
Result<void> addBusDriverObject(sd_bus* bus);

} // namespace tamsel
