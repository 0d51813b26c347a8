#include "platform/linux/updater/relaunch.h"

#include "base/process.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

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
