#include "helper/command.h"

#include "helper/helper.h"
#include "base/unique_fd.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tamsel::driver {

namespace {

constexpr int limitMs = 20'000;

std::string firstThere(std::span<const char* const> places) {
    for (const char* place : places) {
        if (std::string path = underRoot(place); ::access(path.c_str(), X_OK) == 0)
            return path;
    }
    return {};
}

pid_t start(std::string& program, std::vector<std::string>& arguments) {
    std::vector<char*> words{program.data()};
    for (std::string& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    std::string path = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
    std::string locale = "LC_ALL=C";
    char* const environment[] = {path.data(), locale.data(), nullptr};

    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
        posix_spawn_file_actions_addopen(&streams, fd, "/dev/null", O_RDWR, 0);
    pid_t pid = -1;
    const int failure =
        ::posix_spawn(&pid, program.c_str(), &streams, nullptr, words.data(), environment);
    posix_spawn_file_actions_destroy(&streams);
    return failure == 0 ? pid : -1;
}

/// True once the process has ended within the limit.
bool waitForEnd(pid_t pid) {
    const UniqueFd process(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
    if (!process.isOpen())
        return true; // a kernel without it: the wait below has no limit
    pollfd poll{process.get(), POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&poll, 1, limitMs);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace

CommandEnd runCommand(std::span<const char* const> places, std::vector<std::string> arguments) {
    std::string program = firstThere(places);
    const pid_t pid = program.empty() ? -1 : start(program, arguments);
    if (pid < 0)
        return CommandEnd::notStarted;
    if (!waitForEnd(pid)) {
        ::kill(pid, SIGKILL);
        return CommandEnd::timedOut;
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? CommandEnd::succeeded
                                                         : CommandEnd::failed;
}

} // namespace tamsel::driver
