#pragma once

#include "base/error.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace tamsel {

/// Starts `program` (looked up in PATH) as a session of its own, without standard streams, with a
/// clean signal mask and without the desktop's activation tokens, so that it raises nothing and
/// outlives this process. `done` runs later on the main thread with the exit status, 128 + N after
/// signal N, unless `context` is gone by then. Fails when the program can't be started; gives its
/// process id otherwise.
Result<qint64> startDetachedChild(const QString& program, const QStringList& arguments,
                                  QObject* context, std::function<void(int status)> done);

} // namespace tamsel
