#include "platform/linux/process/child_process.h"

#include <QFile>
#include <QSocketNotifier>

#include <memory>
#include <string_view>
#include <unistd.h>

namespace tamsel {

namespace {

std::vector<std::string> environmentForChild() {
    std::vector<std::string> out;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view variable(*entry);
        if (!variable.starts_with("XDG_ACTIVATION_TOKEN=") &&
            !variable.starts_with("DESKTOP_STARTUP_ID="))
            out.emplace_back(variable);
    }
    return out;
}

} // namespace

ChildProgram backgroundChild(const QString& program, const QStringList& arguments) {
    ChildProgram child{QFile::encodeName(program).toStdString()};
    for (const QString& argument : arguments)
        child.arguments.push_back(argument.toStdString());
    child.environment = environmentForChild();
    return child;
}

Result<pid_t> startDetachedChild(const QString& program, const QStringList& arguments,
                                 QObject* context, std::function<void(int status)> done) {
    auto started = spawn(backgroundChild(program, arguments));
    if (!started)
        return started;
    const pid_t pid = *started;
    const auto process = std::make_shared<UniqueFd>(openProcess(pid));
    if (!process->isOpen())
        return pid; // still running, only its end goes unnoticed
    auto* notifier = new QSocketNotifier(process->get(), QSocketNotifier::Read, context);
    // It is closed after the notifier has let go of it.
    QObject::connect(notifier, &QObject::destroyed, [process] {});
    QObject::connect(notifier, &QSocketNotifier::activated, context,
                     [notifier, pid, done = std::move(done)] {
                         notifier->setEnabled(false);
                         notifier->deleteLater();
                         done(reap(pid));
                     });
    return pid;
}

} // namespace tamsel
