#pragma once

#include "base/process.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace tamsel {

/// `program` (looked up in PATH) as a child that raises nothing: without the desktop's activation
/// tokens. Any thread.
ChildProgram backgroundChild(const QString& program, const QStringList& arguments);

/// Starts such a child, which outlives this process. `done` runs later on the main thread with the
/// exit status as reap() tells it, unless `context` is gone by then. Fails when the program can't
/// be started; gives its process id otherwise.
Result<pid_t> startDetachedChild(const QString& program, const QStringList& arguments,
                                 QObject* context, std::function<void(int status)> done);

} // namespace tamsel
