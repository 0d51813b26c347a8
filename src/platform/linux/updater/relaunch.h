#pragma once

#include "base/error.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tamsel {

/// What the relauncher tells a copy that it starts, by the program's arguments:
/// `--report-to FD` and `--update-failed VERSION`.
struct RelaunchOrder {
    std::optional<int> reportTo; ///< a pipe that waits for word that this version has started
    QString failedVersion;       ///< this copy is back because that one did not start

    /// Takes the relauncher's own out of the arguments.
    static RelaunchOrder takeFrom(QStringList& arguments);
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
