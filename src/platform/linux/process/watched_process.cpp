#include "platform/linux/process/watched_process.h"

#include <cerrno>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tamsel {

std::unique_ptr<WatchedProcess> WatchedProcess::open(pid_t pid, std::function<void()> ended) {
    const int fd = pid > 0 ? static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)) : -1;
    if (fd < 0)
        return nullptr;
    std::unique_ptr<WatchedProcess> process(new WatchedProcess(pid, fd));
    if (ended) {
        auto* const notifier = new QSocketNotifier(fd, QSocketNotifier::Read);
        process->m_notifier = notifier;
        QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                         [notifier, ended = std::move(ended)] {
                             notifier->setEnabled(false);
                             ended();
                         });
    }
    return process;
}

WatchedProcess::~WatchedProcess() {
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
    }
    ::close(m_fd);
}

bool WatchedProcess::isRunning() const {
    return !waitForEnd(0);
}

void WatchedProcess::signal(int number) const {
    ::syscall(SYS_pidfd_send_signal, m_fd, number, nullptr, 0);
}

bool WatchedProcess::waitForEnd(int milliseconds) const {
    pollfd wanted{m_fd, POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&wanted, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace tamsel
