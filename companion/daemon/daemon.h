#pragma once

#include "base/error.h"
#include "daemon/options.h"

namespace tamsel {

/// Runs the daemon until SIGTERM or SIGINT, then releases what is held and removes the socket.
/// Fails when it cannot start or its input breaks.
Result<void> runDaemon(const Options& options);

} // namespace tamsel
