#include "relauncher/started_copy.h"

#include "base/process.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tamsel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int reportFd = 3; ///< in the started copy
constexpr std::chrono::milliseconds endPatience{5'000};
constexpr std::size_t maxReport = 256;

/// Its process, or -1. `descriptors` beside the standard output and error of this process.
pid_t start(const std::string& folder, std::vector<std::string> arguments,
            std::vector<ChildDescriptor> descriptors = {}) {
    for (const int shared : {STDOUT_FILENO, STDERR_FILENO})
        descriptors.push_back({shared, shared});
    return spawn({.program = folder + "/bin/tamsel",
                  .arguments = std::move(arguments),
                  .descriptors = std::move(descriptors),
                  .session = ChildProgram::Session::callers})
        .value_or(-1);
}

bool becomesReadable(int fd, Clock::time_point until) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    pollfd waited{fd, POLLIN, 0};
    return left > 0 && ::poll(&waited, 1, static_cast<int>(left)) > 0;
}

} // namespace

StartedCopy StartedCopy::toReport(const std::string& folder) {
    auto pipe = Pipe::make();
    if (!pipe)
        return {-1, UniqueFd()};
    const pid_t pid =
        start(folder, {"--report-to", std::to_string(reportFd)}, {{reportFd, pipe->writing.get()}});
    return {pid, std::move(pipe->reading)};
}

void StartedCopy::afterFailureOf(const std::string& version, const std::string& folder) {
    start(folder, {"--update-failed", version});
}

void StartedCopy::asUsual(const std::string& folder) {
    start(folder, {});
}

bool StartedCopy::reports(const std::string& version, std::chrono::milliseconds patience) const {
    const auto until = Clock::now() + patience;
    std::string line;
    while (m_pid > 0 && line.size() < maxReport && line.find('\n') == std::string::npos &&
           becomesReadable(m_report.get(), until)) {
        std::array<char, maxReport> bytes{};
        const auto got = ::read(m_report.get(), bytes.data(), bytes.size());
        if (got <= 0)
            break;
        line.append(bytes.data(), static_cast<std::size_t>(got));
    }
    return line == version + '\n';
}

void StartedCopy::end() const {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGTERM);
    if (const UniqueFd process = openProcess(m_pid);
        !process.isOpen() || !hasEndedWithin(process, endPatience))
        ::kill(m_pid, SIGKILL);
    reap(m_pid);
}

} // namespace tamsel
