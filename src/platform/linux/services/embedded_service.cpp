#include "platform/linux/services/embedded_service.h"

#include "platform/linux/process/child_process.h"
#include "platform/linux/services/service_errors.h"

#include <csignal>

namespace tamsel {

EmbeddedService::EmbeddedService(Program program, MainQueue& queue)
    : m_program(std::move(program)), m_queue(queue) {}

ServiceStatus EmbeddedService::status() {
    if (m_startsAfterEnd)
        return ServiceStatus::requiresApproval;
    if (!m_isEnding && isRunning())
        return ServiceStatus::enabled;
    return m_program.path ? ServiceStatus::notRegistered : ServiceStatus::notFound;
}

bool EmbeddedService::isRunning() {
    // The own child runs until its end is reported: by then it is known what to make of that.
    if (m_process && (m_process->pid() == m_child || m_process->isRunning()))
        return true;
    return findsRunning();
}

bool EmbeddedService::findsRunning() {
    const auto found = m_program.findRunning();
    m_process = found ? WatchedProcess::open(*found, [this] { processEnded(); }) : nullptr;
    return m_process != nullptr;
}

ServiceResult EmbeddedService::registerService() {
    if (m_isEnding) {
        if (m_startsAfterEnd)
            return tl::unexpected(alreadyRegistered());
        m_startsAfterEnd = true;
        return {};
    }
    if (isRunning())
        return tl::unexpected(alreadyRegistered());
    return start();
}

ServiceResult EmbeddedService::start() {
    if (!m_program.path)
        return tl::unexpected(
            serviceError(ServiceFailure::notFound, tr("The program is not there.")));
    // By the time an end is reported, another child may have been started.
    const auto pid = std::make_shared<pid_t>(0);
    const auto started = startDetachedChild(*m_program.path, {}, this,
                                            [this, pid](int status) { childEnded(*pid, status); });
    if (!started)
        return tl::unexpected(serviceError(ServiceFailure::failed,
                                           QString::fromStdString(started.error().description())));
    *pid = m_child = *started;
    m_process = WatchedProcess::open(m_child);
    m_isSettling = true;
    m_settled = m_queue.after(settleTime, [this] { m_isSettling = false; });
    return {};
}

void EmbeddedService::childEnded(pid_t pid, int exitStatus) {
    if (pid != m_child)
        return;
    m_child = 0;
    const bool failedToStart = std::exchange(m_isSettling, false) && exitStatus < 128;
    if (m_process && m_process->pid() != pid)
        return; // somebody else's was found meanwhile
    if (!m_isEnding && failedToStart && !isRunning())
        Q_EMIT failedLater(ServiceOperation::registration,
                           serviceError(ServiceFailure::failed,
                                        tr("The program ended with status %1.").arg(exitStatus)));
    processEnded();
}

void EmbeddedService::processEnded() {
    m_kill.cancel();
    if (std::exchange(m_isEnding, false)) {
        m_process.reset();
        m_program.cleanUp();
        if (std::exchange(m_startsAfterEnd, false)) {
            if (const ServiceResult started = start(); !started)
                Q_EMIT failedLater(ServiceOperation::registration, started.error());
        }
    }
    Q_EMIT statusChanged();
}

ServiceResult EmbeddedService::unregisterService() {
    m_startsAfterEnd = false;
    if (m_isEnding)
        return {};
    if (!isRunning()) {
        m_program.cleanUp();
        return {};
    }
    m_isEnding = true;
    m_process->signal(SIGTERM);
    m_kill = m_queue.after(graceTime, [this] { m_process->signal(SIGKILL); });
    return {};
}

void EmbeddedService::askOwnToEnd() {
    m_startsAfterEnd = false;
    if (m_child > 0 && m_process && m_process->pid() == m_child)
        m_process->signal(SIGTERM);
}

void EmbeddedService::awaitOwnEnd() {
    if (m_child <= 0 || !m_process || m_process->pid() != m_child)
        return;
    if (!m_process->waitForEnd(graceTime)) {
        m_process->signal(SIGKILL);
        m_process->waitForEnd(graceTime);
        m_program.cleanUp();
    }
}

} // namespace tamsel
