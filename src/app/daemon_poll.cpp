#include "app/daemon_poll.h"

#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "driver/system_extension_mgr.h"
#include "protocol/daemon_protocol.h"

#include <QPointer>

namespace tamsel {

void DaemonPoll::start() {
    stop();
    m_tickCount = 0;
    setUnresponsive(false);
    ask();
    m_timer = m_managers.queue.every(interval, [this] {
        m_managers.queue.async(this, [this] {
            // The last firing may come after the end of the polling.
            if (m_timer)
                tick();
        });
    });
}

void DaemonPoll::stop() {
    m_timer.cancel();
}

void DaemonPoll::tick() {
    if (isDaemonUp() && ++m_tickCount >= unresponsiveAfter)
        setUnresponsive(true);
    ask();
}

bool DaemonPoll::isDaemonUp() const {
    return m_managers.daemonMgr.isInstalled() && m_managers.daemonMgr.isRunning();
}

bool DaemonPoll::isRemapping() const {
    return m_status.hasDaemonStatus &&
           protocol::status::canonical(m_status.daemonStatusText.toStdString()) ==
               protocol::status::running;
}

void DaemonPoll::ask() {
    if (isDaemonUp()) {
        fetch();
        return;
    }
    m_managers.daemonMgr.refreshStatus();
    m_tickCount = 0;
    setStatus({});
}

void DaemonPoll::fetch() {
    MainQueue& queue = m_managers.queue;
    const QPointer<DaemonPoll> weak(this);
    const auto applyLater = [&queue, weak](bool isGrabbing, bool driverConnected,
                                           const QString& statusText) {
        queue.async(nullptr, [=] {
            if (weak)
                weak->apply(isGrabbing, driverConnected, statusText);
        });
    };
    const auto remote = proxy();
    if (!remote) {
        const auto& text = protocol::status::notConnected;
        applyLater(false, false, QString::fromUtf8(text.data(), qsizetype(text.size())));
        return;
    }
    remote->getStatus(
        [applyLater](bool isGrabbing, bool driverConnected, const std::string& statusText) {
            applyLater(isGrabbing, driverConnected, QString::fromStdString(statusText));
        });
}

void DaemonPoll::apply(bool isGrabbing, bool driverConnected, const QString& statusText) {
    m_tickCount = 0;
    const std::string code = statusText.toStdString();
    setStatus({true, driverConnected, code == protocol::status::tccDenied, statusText, false});
    align(isGrabbing);
}

void DaemonPoll::align(bool isGrabbing) {
    const bool isWanted = m_wantsRemapping();
    if (isWanted && !isGrabbing && m_managers.sysExtMgr.isLoaded() && !m_status.daemonTccDenied)
        orderGrabbing(true);
    else if (!isWanted && isGrabbing)
        orderGrabbing(false);
}

void DaemonPoll::orderGrabbing(bool start) {
    const auto remote = proxy();
    if (!remote)
        return;
    const auto ignored = [](bool) {};
    if (start)
        remote->startGrabbing(ignored);
    else
        remote->stopGrabbing(ignored);
}

std::shared_ptr<TamselDaemonProtocol> DaemonPoll::proxy() {
    if (!m_managers.daemon.hasConnection())
        m_managers.daemon.connect();
    return m_managers.daemon.proxy();
}

void DaemonPoll::setStatus(const Status& status) {
    if (m_status == status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

void DaemonPoll::setUnresponsive(bool isUnresponsive) {
    Status status = m_status;
    status.daemonUnresponsive = isUnresponsive;
    setStatus(status);
}

} // namespace tamsel
