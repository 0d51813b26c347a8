#include "platform/linux/termination_signals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tamsel {

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    sigset_t caught;
    sigemptyset(&caught);
    sigaddset(&caught, SIGTERM);
    sigaddset(&caught, SIGINT);
    pthread_sigmask(SIG_BLOCK, &caught, nullptr);
    m_fd = ::signalfd(-1, &caught, SFD_CLOEXEC | SFD_NONBLOCK);
    auto* notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, onSignal = std::move(onSignal)] {
        signalfd_siginfo info{};
        while (::read(m_fd, &info, sizeof info) == sizeof info) {
        }
        onSignal();
    });
}

TerminationSignals::~TerminationSignals() {
    ::close(m_fd);
}

} // namespace tamsel
