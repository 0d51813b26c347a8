#include "platform/linux/process/child_process.h"

#include <QFile>
#include <QSocketNotifier>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tamsel {

namespace {

/// The strings' addresses as exec wants them; the list must outlive the result.
std::vector<char*> pointers(QList<QByteArray>& strings) {
    std::vector<char*> out;
    for (QByteArray& string : strings)
        out.push_back(string.data());
    out.push_back(nullptr);
    return out;
}

QList<QByteArray> environmentForChild() {
    QList<QByteArray> out;
    for (char** entry = environ; *entry; ++entry) {
        const QByteArray variable(*entry);
        if (!variable.startsWith("XDG_ACTIVATION_TOKEN=") &&
            !variable.startsWith("DESKTOP_STARTUP_ID="))
            out << variable;
    }
    return out;
}

} // namespace

int reapChild(qint64 pid) {
    int status = 0;
    if (::waitpid(static_cast<pid_t>(pid), &status, 0) != pid)
        return -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

Result<qint64> spawnChild(const QString& program, const QStringList& arguments,
                          int standardOutput) {
    QList<QByteArray> words{QFile::encodeName(program)};
    for (const QString& argument : arguments)
        words << argument.toUtf8();
    QList<QByteArray> environment = environmentForChild();

    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (standardOutput < 0)
        posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    else
        posix_spawn_file_actions_adddup2(&streams, standardOutput, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    pid_t pid = -1;
    const int failure = ::posix_spawnp(&pid, words.front().constData(), &streams, &attributes,
                                       pointers(words).data(), pointers(environment).data());
    posix_spawn_file_actions_destroy(&streams);
    posix_spawnattr_destroy(&attributes);
    if (failure != 0)
        return fail(std::strerror(failure), program.toStdString());
    return pid;
}

Result<qint64> startDetachedChild(const QString& program, const QStringList& arguments,
                                  QObject* context, std::function<void(int status)> done) {
    auto started = spawnChild(program, arguments);
    if (!started)
        return started;
    const auto pid = static_cast<pid_t>(*started);
    const int pidFd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    if (pidFd < 0)
        return pid; // still running, only its end goes unnoticed
    auto* notifier = new QSocketNotifier(pidFd, QSocketNotifier::Read, context);
    QObject::connect(notifier, &QObject::destroyed, [pidFd] { ::close(pidFd); });
    QObject::connect(notifier, &QSocketNotifier::activated, context,
                     [notifier, pid, done = std::move(done)] {
                         notifier->setEnabled(false);
                         notifier->deleteLater();
                         done(reapChild(pid));
                     });
    return pid;
}

} // namespace tamsel
