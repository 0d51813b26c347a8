#include "platform/linux/process/watched_process.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace tamsel {

std::unique_ptr<WatchedProcess> WatchedProcess::open(pid_t pid, std::function<void()> ended) {
    UniqueFd fd = openProcess(pid);
    if (!fd.isOpen())
        return nullptr;
    std::unique_ptr<WatchedProcess> process(new WatchedProcess(pid, std::move(fd)));
    if (ended) {
        auto* const notifier = new QSocketNotifier(process->m_fd.get(), QSocketNotifier::Read);
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
}

bool WatchedProcess::isRunning() const {
    return !waitForEnd(std::chrono::milliseconds(0));
}

void WatchedProcess::signal(int number) const {
    ::syscall(SYS_pidfd_send_signal, m_fd.get(), number, nullptr, 0);
}

bool WatchedProcess::waitForEnd(std::chrono::milliseconds limit) const {
    return hasEndedWithin(m_fd, limit);
}

} // namespace tamsel
