#pragma once

#include <QString>

#include <optional>
#include <sys/types.h>

namespace tamsel {

/// Who listens on a unix socket: this user's process that answers there, if any. Never blocks.
std::optional<pid_t> socketHolder(const QString& socketFile);

/// Who holds a lock file: the process whose number stands in it, as long as it keeps the file
/// locked and runs a program of that name.
std::optional<pid_t> lockHolder(const QString& lockFile, const QString& programName);

/// Removes the socket that a process has left behind which was killed, unless one serves it or is
/// about to.
void removeForgottenSocket(const QString& socketFile);

} // namespace tamsel
