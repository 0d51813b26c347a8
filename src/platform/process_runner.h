#pragma once

#include "base/error.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tamsel {

struct ProcessResult {
    int exitStatus = 0; ///< as its parent sees it; 128 + N after signal N
    QByteArray standardOutput;
};

/// Runs other programs to their end.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Runs the program at this absolute path and waits for it, however long that takes (a program
    /// may ask the user something). Blocks: for background threads only, several may call at a
    /// time. Fails when the program could not be started or its end could not be awaited.
    virtual Result<ProcessResult> run(const QString& program, const QStringList& arguments) = 0;
};

} // namespace tamsel
