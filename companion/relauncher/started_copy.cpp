#include "relauncher/started_copy.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tamsel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int reportFd = 3; ///< in the started copy
constexpr std::chrono::milliseconds endPatience{5'000};
constexpr std::size_t maxReport = 256;

/// Its process, or -1. `report` becomes its reportFd.
pid_t start(std::vector<std::string> words, int report) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (report >= 0)
        posix_spawn_file_actions_adddup2(&actions, report, reportFd);
    pid_t pid = -1;
    if (::posix_spawn(&pid, words.front().c_str(), &actions, nullptr, arguments.data(), environ) !=
        0)
        pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

std::string programOf(const std::string& folder) {
    return folder + "/bin/tamsel";
}

bool becomesReadable(int fd, Clock::time_point until) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    pollfd waited{fd, POLLIN, 0};
    return left > 0 && ::poll(&waited, 1, static_cast<int>(left)) > 0;
}

} // namespace

StartedCopy StartedCopy::toReport(const std::string& folder) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {-1, UniqueFd()};
    UniqueFd ours(ends[0]);
    // Away from the number that it gets over there: a descriptor duplicated onto itself would stay
    // closed to the copy.
    const UniqueFd theirs(::fcntl(ends[1], F_DUPFD_CLOEXEC, reportFd + 1));
    ::close(ends[1]);
    const pid_t pid =
        start({programOf(folder), "--report-to", std::to_string(reportFd)}, theirs.get());
    return {pid, std::move(ours)};
}

void StartedCopy::afterFailureOf(const std::string& version, const std::string& folder) {
    start({programOf(folder), "--update-failed", version}, -1);
}

void StartedCopy::asUsual(const std::string& folder) {
    start({programOf(folder)}, -1);
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
    // A process descriptor becomes readable when its process has ended.
    const UniqueFd process(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
    if (!process.isOpen() || !becomesReadable(process.get(), Clock::now() + endPatience))
        ::kill(m_pid, SIGKILL);
    ::waitpid(m_pid, nullptr, 0);
}

} // namespace tamsel
