#pragma once

#include "base/error.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace tamsel {

/// Starts `program` (looked up in PATH) as a session of its own, with a clean signal mask and
/// without the desktop's activation tokens. Its standard output goes to the descriptor, which stays
/// the caller's; nowhere without one, as the other streams. Fails when the program can't be
/// started; gives its process id otherwise, which the caller has to reap. Any thread.
Result<qint64> spawnChild(const QString& program, const QStringList& arguments,
                          int standardOutput = -1);

/// Waits for a child of this process: its exit status, 128 + N after signal N, -1 when it is none.
int reapChild(qint64 pid);

/// Starts `program` (looked up in PATH) as a session of its own, without standard streams, with a
/// clean signal mask and without the desktop's activation tokens, so that it raises nothing and
/// outlives this process. `done` runs later on the main thread with the exit status, 128 + N after
/// signal N, unless `context` is gone by then. Fails when the program can't be started; gives its
/// process id otherwise.
Result<qint64> startDetachedChild(const QString& program, const QStringList& arguments,
                                  QObject* context, std::function<void(int status)> done);

} // namespace tamsel
