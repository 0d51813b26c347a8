#include "platform/linux/updater/relaunch.h"

#include "base/process.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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
    const UniqueFd pipe(*std::exchange(reportTo, std::nullopt));
    const QByteArray line = version.toUtf8() + '\n';
    // A relauncher that has given up waiting ends this copy anyway.
    [[maybe_unused]] const auto written =
        ::write(pipe.get(), line.constData(), static_cast<std::size_t>(line.size()));
}

Result<void> startRelauncher(const RelaunchPlan& plan) {
    // This process holds the pipe's other end until it is gone; the relauncher reads its end as
    // that of the process.
    auto pipe = Pipe::make();
    if (!pipe)
        return tl::unexpected(pipe.error());
    ChildProgram child{QFile::encodeName(plan.relauncher).toStdString()};
    for (const QString& word : {plan.copy, plan.tree, plan.staging, plan.version})
        child.arguments.push_back(QFile::encodeName(word).toStdString());
    child.descriptors = {{STDIN_FILENO, pipe->reading.get()},
                         {STDOUT_FILENO, STDOUT_FILENO},
                         {STDERR_FILENO, STDERR_FILENO}};
    const auto started = spawn(child);
    if (!started)
        return tl::unexpected(started.error());
    pipe->writing.release();
    return {};
}

} // namespace tamsel
