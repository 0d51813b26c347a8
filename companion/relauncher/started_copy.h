#pragma once

#include "base/unique_fd.h"

#include <chrono>
#include <string>
#include <sys/types.h>

namespace tamsel {

/// A copy of the application, started by this process.
class StartedCopy final {
public:
    /// The copy in `folder`, to report its version.
    static StartedCopy toReport(const std::string& folder);
    /// The copy in `folder`, to tell that `version` did not start; nobody waits for it.
    static void afterFailureOf(const std::string& version, const std::string& folder);
    /// The copy in `folder` with nothing to tell it.
    static void asUsual(const std::string& folder);

    /// It reports this version in time. One that can't be started, ends or says something else
    /// does not.
    bool reports(const std::string& version, std::chrono::milliseconds patience) const;
    /// Asks it to end, makes it end five seconds later, and returns when it is gone.
    void end() const;

private:
    StartedCopy(pid_t pid, UniqueFd report) : m_pid(pid), m_report(std::move(report)) {}

    pid_t m_pid;
    UniqueFd m_report;
};

} // namespace tamsel
