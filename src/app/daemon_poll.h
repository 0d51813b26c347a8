#pragma once

#include "platform/main_queue.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace tamsel {

class DaemonMgr;
class DaemonXPCClient;
class SystemExtensionMgr;
class TamselDaemonProtocol;

/// Asks the daemon for its status every three seconds while it is started, and brings the daemon
/// in line with the master switch at each answer. Main thread.
class DaemonPoll final : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds interval{3000};
    static constexpr int unresponsiveAfter = 4; ///< ticks without a reply

    /// What the daemon's replies and their absence amount to.
    struct Status {
        bool hasDaemonStatus = false;
        bool driverConnected = false;
        bool daemonTccDenied = false;
        QString daemonStatusText;
        bool daemonUnresponsive = false;

        bool operator==(const Status&) const = default;
    };
    /// All of it outlives this object.
    struct Managers {
        MainQueue& queue;
        DaemonXPCClient& daemon;
        DaemonMgr& daemonMgr;
        SystemExtensionMgr& sysExtMgr;
    };

    /// `wantsRemapping` tells how the master switch stands.
    DaemonPoll(const Managers& managers, std::function<bool()> wantsRemapping)
        : m_managers(managers), m_wantsRemapping(std::move(wantsRemapping)) {}

    /// Asks at once and then at every interval.
    void start();
    void stop();
    /// Asks once, whether started or not.
    void ask();

    const Status& status() const { return m_status; }
    /// The daemon says that remapping works.
    bool isRemapping() const;
    bool isDaemonUp() const;
    /// Since the last reply.
    int tickCount() const { return m_tickCount; }

    /// Connects if need be; the answer is of no interest.
    void orderGrabbing(bool start);

signals:
    void statusChanged();

private:
    void tick();
    void fetch();
    void apply(bool isGrabbing, bool driverConnected, const QString& statusText);
    void align(bool isGrabbing);
    void setStatus(const Status& status);
    void setUnresponsive(bool isUnresponsive);
    std::shared_ptr<TamselDaemonProtocol> proxy();

    Managers m_managers;
    std::function<bool()> m_wantsRemapping;
    Status m_status;
    TaskHandle m_timer;
    int m_tickCount = 0;
};

} // namespace tamsel
