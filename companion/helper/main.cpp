#include "helper/helper.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace tamsel::driver;

int end(const HelperOutcome& outcome) {
    if (outcome.status != helperDone)
        std::fprintf(stderr, "%s: %s\n", helperProgram, outcome.message.c_str());
    return outcome.status;
}

using Command = HelperOutcome (*)();

Command commandNamed(const char* word) {
    if (std::strcmp(word, loadCommand) == 0)
        return loadDriver;
    if (std::strcmp(word, grantCommand) == 0)
        return grantAccess;
    return std::strcmp(word, revokeCommand) == 0 ? revokeAccess : nullptr;
}

/// Whoever started this may have closed the standard streams; a file opened later must not end up
/// as one of them.
bool openStandardStreams() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) != fd)
            return false;
    }
    return true;
}

/// Nothing of the caller's environment is taken over: the program starts itself again without one,
/// under the name by which a stuck helper is found.
bool isCleanStart(char** argv) {
    return *environ == nullptr && std::strcmp(argv[0], driverIdentifier) == 0;
}

void startAgain(const char* word) {
    char* const arguments[] = {const_cast<char*>(driverIdentifier), const_cast<char*>(word),
                               nullptr};
    char* const environment[] = {nullptr};
    ::execve("/proc/self/exe", arguments, environment);
}

} // namespace

// Does one of three things as root and takes no other input. Exit statuses: HelperStatus.
int main(int argc, char** argv) {
    if (!openStandardStreams())
        return helperInternalFailure;
    const Command command = argc == 2 ? commandNamed(argv[1]) : nullptr;
    if (!command)
        return end({helperMisused, "the one argument is load, grant or revoke"});
    if (!isCleanStart(argv)) {
        startAgain(argv[1]);
        return end({helperInternalFailure, "the program can't be started again"});
    }
    if (systemRoot.empty() && ::geteuid() != 0)
        return end({helperNotPrivileged, "only root can do this"});

    std::signal(SIGCHLD, SIG_DFL); // children are waited for
    ::umask(022);
    if (::chdir("/") != 0)
        return end({helperInternalFailure, "the root folder can't be entered"});
    return end(command());
}
