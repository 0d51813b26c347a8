#include "platform/linux/process/termination_signals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tamsel {

namespace {

sigset_t terminating() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

void TerminationSignals::block() {
    const sigset_t set = terminating();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    const sigset_t set = terminating();
    m_fd = UniqueFd(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    auto* notifier = new QSocketNotifier(m_fd.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, onSignal = std::move(onSignal)] {
        signalfd_siginfo info{};
        while (::read(m_fd.get(), &info, sizeof info) == sizeof info) {
        }
        onSignal();
    });
}

} // namespace tamsel
