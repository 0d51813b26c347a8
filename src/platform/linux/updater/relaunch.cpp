#include "platform/linux/updater/relaunch.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <system_error>
#include <unistd.h>
#include <vector>

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace tamsel {

namespace {

const QString reportOption = QStringLiteral("--report-to");
const QString failedOption = QStringLiteral("--update-failed");

/// The option's value, taken out of the arguments with it.
std::optional<QString> takeOption(QStringList& arguments, const QString& option) {
    const qsizetype at = arguments.indexOf(option);
    if (at < 0 || at + 1 >= arguments.size())
        return std::nullopt;
    arguments.removeAt(at);
    return arguments.takeAt(at);
}

} // namespace

RelaunchOrder RelaunchOrder::takeFrom(QStringList& arguments) {
    RelaunchOrder order;
    if (const auto fd = takeOption(arguments, reportOption)) {
        bool isNumber = false;
        const int number = fd->toInt(&isNumber);
        // No program that this one starts may keep the pipe open.
        if (isNumber && number > STDERR_FILENO && ::fcntl(number, F_SETFD, FD_CLOEXEC) == 0)
            order.reportTo = number;
    }
    order.failedVersion = takeOption(arguments, failedOption).value_or(QString());
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
