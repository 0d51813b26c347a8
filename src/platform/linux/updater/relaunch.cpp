#include "platform/linux/updater/relaunch.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace tamsel {

namespace {

/// The option's value, taken out of the arguments with it.
std::optional<std::string> takeOption(int& argc, char** argv, std::string_view option) {
    char** const end = argv + argc;
    char** const at = std::find(argv, end, option);
    if (end - at < 2)
        return std::nullopt;
    std::string value = at[1];
    // With the null that ends the arguments.
    std::copy(at + 2, end + 1, at);
    argc -= 2;
    return value;
}

/// The writing end of a pipe that has no name, made by a process of this user.
bool isOwnPipe(int fd) {
    struct stat info {};
    if (fd <= STDERR_FILENO || ::fstat(fd, &info) != 0 || !S_ISFIFO(info.st_mode) ||
        info.st_uid != ::geteuid() || (::fcntl(fd, F_GETFL) & O_ACCMODE) != O_WRONLY)
        return false;
    std::array<char, 8> name{};
    const std::string link = "/proc/self/fd/" + std::to_string(fd);
    return ::readlink(link.c_str(), name.data(), name.size()) > 0 &&
           std::string_view(name.data(), name.size()).starts_with("pipe:[");
}

} // namespace

RelaunchOrder RelaunchOrder::takeFrom(int& argc, char** argv) {
    RelaunchOrder order;
    if (const auto fd = takeOption(argc, argv, "--report-to")) {
        int number = -1;
        const auto read = std::from_chars(fd->data(), fd->data() + fd->size(), number);
        // No program that this one starts may keep the pipe open.
        if (read.ec == std::errc() && read.ptr == fd->data() + fd->size() && isOwnPipe(number) &&
            ::fcntl(number, F_SETFD, FD_CLOEXEC) == 0)
            order.reportTo = number;
    }
    order.failedVersion =
        QString::fromStdString(takeOption(argc, argv, "--update-failed").value_or(""));
    return order;
}

void RelaunchOrder::report(const QString& version) {
    if (!reportTo)
        return;
    const QByteArray line = version.toUtf8() + '\n';
    // A relauncher that has given up waiting ends this copy anyway.
    [[maybe_unused]] const auto written =
        ::write(*reportTo, line.constData(), static_cast<std::size_t>(line.size()));
    ::close(*reportTo);
    reportTo.reset();
}

Result<void> startRelauncher(const RelaunchPlan& plan) {
    // This process holds the pipe's other end until it is gone; the relauncher reads its end as
    // that of the process.
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        return fail(std::generic_category().message(errno));

    std::vector<QByteArray> words;
    for (const QString& word : {plan.relauncher, plan.copy, plan.tree, plan.staging, plan.version})
        words.push_back(QFile::encodeName(word));
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[0], STDIN_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // The application blocks the signals that it reads itself; its session's end is not the
    // relauncher's.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int error = ::posix_spawn(&child, words.front().constData(), &actions, &attributes,
                                    arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[0]);
    if (error != 0) {
        ::close(pipe[1]);
        return fail(std::generic_category().message(error), plan.relauncher.toStdString());
    }
    return {};
}

} // namespace tamsel
