#pragma once

#include "base/error.h"

namespace tamsel {

/// Runs the agent until SIGTERM or SIGINT; the commands it started go on running. Fails when it
/// cannot start or another one of this user is running.
Result<void> runAgent();

} // namespace tamsel
