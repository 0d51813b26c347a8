#pragma once

#include "base/unique_fd.h"
#include "platform/process_runner.h"

#include <chrono>

namespace tamsel {

/// Runs programs as child processes. A program has 30 seconds and 4 MiB of output; one that takes
/// more is killed and counts as failed. There is no script runner here: a call of
/// /usr/bin/osascript runs the kill program through the authorization program, as long as its
/// script is one that processesToKill() knows, for as long as the prompt is open; any other call of
/// it ends at once with status 1.
class ChildProcessRunner final : public ProcessRunner {
public:
    struct Settings {
        QString authorize = QStringLiteral("/usr/bin/pkexec");
        QString kill = QStringLiteral("/bin/kill");
        std::chrono::milliseconds limit{30'000};
        qsizetype maxOutput = qsizetype{4} * 1024 * 1024;
    };

    explicit ChildProcessRunner(Settings settings);
    ChildProcessRunner() : ChildProcessRunner(Settings{}) {}

    Result<ProcessResult> run(const QString& program, const QStringList& arguments) override;

    /// From now on every run fails at once, also those that are waiting. Any thread.
    void stop();

private:
    Result<ProcessResult> runAdministratorScript(const QStringList& arguments);
    /// A negative limit is none.
    Result<ProcessResult> runChild(const QString& program, const QStringList& arguments,
                                   std::chrono::milliseconds limit);

    Settings m_settings;
    UniqueFd m_stopEvent; ///< readable from stop() on
};

} // namespace tamsel
