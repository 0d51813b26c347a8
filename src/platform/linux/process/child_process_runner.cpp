#include "platform/linux/process/child_process_runner.h"

#include "platform/linux/process/administrator_script.h"
#include "platform/linux/process/child_process.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

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
        if (m_pid > 0 && ::kill(m_pid, SIGKILL) == 0)
            tamsel::reap(m_pid);
    }

    Result<void> start(const QString& program, const QStringList& arguments) {
        auto pipe = Pipe::make();
        if (!pipe)
            return tl::unexpected(pipe.error());
        m_output = std::move(pipe->reading);
        ::fcntl(m_output.get(), F_SETFL, O_NONBLOCK);
        ChildProgram child = backgroundChild(program, arguments);
        child.descriptors = {{STDOUT_FILENO, pipe->writing.get()}};
        const auto pid = spawn(child);
        if (!pid)
            return tl::unexpected(pid.error());
        m_pid = *pid;
        m_process = openProcess(m_pid);
        if (!m_process.isOpen())
            return fail("its end can't be awaited", program.toStdString());
        return {};
    }

    int output() const { return m_output.get(); }
    int process() const { return m_process.get(); }

    /// Appends what is there to read; false at the end of it.
    bool read(QByteArray& out) const {
        std::array<char, 16384> buffer{};
        for (;;) {
            const ssize_t count = ::read(m_output.get(), buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return count < 0 && errno == EAGAIN;
            out.append(buffer.data(), count);
            if (count < static_cast<ssize_t>(buffer.size()))
                return true;
        }
    }
    int reap() { return tamsel::reap(std::exchange(m_pid, 0)); }

private:
    pid_t m_pid = 0;
    UniqueFd m_output;
    UniqueFd m_process;
};

} // namespace

ChildProcessRunner::ChildProcessRunner(Settings settings)
    : m_settings(std::move(settings)), m_stopEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void ChildProcessRunner::stop() {
    ::eventfd_write(m_stopEvent.get(), 1);
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
    std::array<pollfd, 3> waits{{{child.output(), POLLIN, 0},
                                 {child.process(), POLLIN, 0},
                                 {m_stopEvent.get(), POLLIN, 0}}};
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
