#pragma once

#include "base/error.h"

#include <QString>

#include <optional>

namespace tamsel {

/// What the relauncher tells a copy that it starts, by the program's arguments:
/// `--report-to FD` and `--update-failed VERSION`.
struct RelaunchOrder {
    /// A pipe of the relauncher's that waits for word that this version has started.
    std::optional<int> reportTo;
    QString failedVersion; ///< this copy is back because that one did not start

    /// Takes the relauncher's own out of the arguments. Before anything else opens a descriptor:
    /// what is written to is a pipe that this process was started with, and nothing else.
    static RelaunchOrder takeFrom(int& argc, char** argv);
    /// This version has started: the copy before it may go. Once.
    void report(const QString& version);
};

/// What the relauncher is to do once this process is gone.
struct RelaunchPlan {
    QString relauncher;
    QString copy;    ///< the folder to replace
    QString tree;    ///< the folder to replace it with
    QString staging; ///< goes in the end, with what is in it
    QString version; ///< that the new copy must report
};

/// Starts the relauncher, which outlives this process and waits for its end.
Result<void> startRelauncher(const RelaunchPlan& plan);

} // namespace tamsel
