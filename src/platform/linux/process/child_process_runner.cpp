#include "platform/linux/process/child_process_runner.h"

#include "platform/linux/process/administrator_script.h"
#include "platform/linux/process/child_process.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// One child with its output; ends by itself or is given up, and is never left as a zombie unless
/// it belongs to another user by now.
class Child {
public:
    Child() = default;
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (m_pid > 0 && ::kill(static_cast<pid_t>(m_pid), SIGKILL) == 0)
            reapChild(m_pid);
        for (const int fd : {m_output, m_process}) {
            if (fd >= 0)
                ::close(fd);
        }
    }

    Result<void> start(const QString& program, const QStringList& arguments) {
        std::array<int, 2> ends{-1, -1};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            return fail(std::strerror(errno));
        m_output = ends[0];
        ::fcntl(m_output, F_SETFL, O_NONBLOCK);
        const auto pid = spawnChild(program, arguments, ends[1]);
        ::close(ends[1]);
        if (!pid)
            return tl::unexpected(pid.error());
        m_pid = *pid;
        m_process = static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0));
        if (m_process < 0)
            return fail("its end can't be awaited", program.toStdString());
        return {};
    }

    int output() const { return m_output; }
    int process() const { return m_process; }

    /// Appends what is there to read; false at the end of it.
    bool read(QByteArray& out) const {
        std::array<char, 16384> buffer{};
        for (;;) {
            const ssize_t count = ::read(m_output, buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return count < 0 && errno == EAGAIN;
            out.append(buffer.data(), count);
            if (count < static_cast<ssize_t>(buffer.size()))
                return true;
        }
    }
    int reap() { return reapChild(std::exchange(m_pid, 0)); }

private:
    qint64 m_pid = 0;
    int m_output = -1;
    int m_process = -1;
};

} // namespace

ChildProcessRunner::ChildProcessRunner(Settings settings)
    : m_settings(std::move(settings)), m_stopEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

ChildProcessRunner::~ChildProcessRunner() {
    ::close(m_stopEvent);
}

void ChildProcessRunner::stop() {
    ::eventfd_write(m_stopEvent, 1);
}

Result<ProcessResult> ChildProcessRunner::run(const QString& program,
                                              const QStringList& arguments) {
    if (program == u"/usr/bin/osascript")
        return runAdministratorScript(arguments);
    return runChild(program, arguments, m_settings.limit);
}

Result<ProcessResult> ChildProcessRunner::runAdministratorScript(const QStringList& arguments) {
    const auto processes = arguments.size() == 2 && arguments[0] == u"-e"
                               ? processesToKill(arguments[1])
                               : std::nullopt;
    if (!processes)
        return ProcessResult{1, {}};
    // The prompt is the desktop's; a question on a terminal would never be seen.
    const QStringList kill{QStringLiteral("--disable-internal-agent"), m_settings.kill,
                           QStringLiteral("-9")};
    return runChild(m_settings.authorize, kill + *processes, std::chrono::milliseconds(-1));
}

Result<ProcessResult> ChildProcessRunner::runChild(const QString& program,
                                                   const QStringList& arguments,
                                                   std::chrono::milliseconds limit) {
    Child child;
    if (const auto started = child.start(program, arguments); !started)
        return tl::unexpected(started.error());
    const QDeadlineTimer deadline =
        limit.count() < 0 ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(limit);
    QByteArray output;
    std::array<pollfd, 3> waits{
        {{child.output(), POLLIN, 0}, {child.process(), POLLIN, 0}, {m_stopEvent, POLLIN, 0}}};
    auto& [outputWait, processWait, stopWait] = waits;
    for (;;) {
        const int ready =
            ::poll(waits.data(), waits.size(), static_cast<int>(deadline.remainingTime()));
        if (ready == 0 || (ready < 0 && errno != EINTR) || (ready > 0 && stopWait.revents != 0))
            return fail("given up", program.toStdString());
        if (ready < 0)
            continue;
        const bool hasEnded = processWait.revents != 0;
        // An ended child's output is in the pipe by now, whatever poll saw of it; a descendant that
        // keeps the pipe open holds nothing up.
        if ((hasEnded || outputWait.revents != 0) && outputWait.fd >= 0 && !child.read(output))
            outputWait.fd = -1;
        if (output.size() > m_settings.maxOutput)
            return fail("too much output", program.toStdString());
        if (hasEnded)
            return ProcessResult{child.reap(), output};
    }
}

} // namespace tamsel
