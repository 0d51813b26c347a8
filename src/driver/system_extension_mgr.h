#pragma once

#include "driver/sys_ext_status.h"
#include "platform/main_queue.h"
#include "platform/system_extension.h"

#include <QVariant>

#include <chrono>
#include <functional>
#include <optional>

namespace tamsel {

class BackgroundQueue;
class DaemonXPCClient;
class Logger;
class ProcessRunner;

/// What the manager needs of the machine; all of it outlives the background queue.
struct SysExtServices {
    SystemExtensionService& extensions;
    ProcessRunner& processes;
    BackgroundQueue& background;
    MainQueue& queue;
    Logger& logger;
};

/// Has the virtual input driver installed and removed, reports the driver's state, tells the daemon
/// to let go of the devices and to take them again around a change, and repairs, once between two
/// completed requests, an activation that a stuck driver process blocks. Main thread only.
class SystemExtensionMgr final : public SystemExtensionRequestDelegate {
    Q_OBJECT
    Q_PROPERTY(QVariant extensionStatus READ extensionStatusVariant NOTIFY extensionStatusChanged)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged)
    Q_PROPERTY(bool needsApproval READ needsApproval NOTIFY needsApprovalChanged)
    Q_PROPERTY(tamsel::SysExtStatus status READ status NOTIFY statusChanged)

public:
    static inline const QString driverBundleId = QStringLiteral("app.tamsel.driver.virtualhid");
    /// The driver needs a moment until the daemon can use it.
    static constexpr std::chrono::milliseconds startGrabbingDelay{1000};
    static constexpr std::chrono::milliseconds retryDelay{2000};

    SystemExtensionMgr(SysExtServices services, DaemonXPCClient& daemon, QObject* parent = nullptr);
    ~SystemExtensionMgr() override;

    Q_INVOKABLE void loadExtension();
    Q_INVOKABLE void unloadExtension();

    /// The result of the last request that finished.
    std::optional<std::int64_t> extensionStatus() const { return m_extensionStatus; }
    bool isLoaded() const { return m_isLoaded; }
    /// The platform waits for the user's approval.
    bool needsApproval() const { return m_needsApproval; }
    const SysExtStatus& status() const { return m_status; }

    ReplacementAction
    actionForReplacingExtension(const SystemExtensionRequest& request,
                                const SystemExtensionProperties& installed,
                                const SystemExtensionProperties& offered) override;
    void requestNeedsUserApproval(const SystemExtensionRequest& request) override;
    void didFinishWithResult(const SystemExtensionRequest& request, std::int64_t result) override;
    void didFailWithError(const SystemExtensionRequest& request,
                          const SystemExtensionError& error) override;

signals:
    void extensionStatusChanged();
    void isLoadedChanged();
    void needsApprovalChanged();
    void statusChanged();

private:
    using Kind = SystemExtensionRequest::Kind;
    enum class Grabbing { stop, start };

    QVariant extensionStatusVariant() const;
    void finish(Kind kind, std::int64_t result);
    void completed(Kind kind);
    void fail(Kind kind, const SystemExtensionError& error);
    void killStuckDextAndRetry();
    void scheduleRetry();
    void tellDaemon(Grabbing order);
    /// Runs `task` after `delay`, unless this object is gone by then.

    void setExtensionStatus(std::int64_t result);
    void setIsLoaded(bool isLoaded);
    void setNeedsApproval(bool needsApproval);
    void setStatus(const SysExtStatus& status);

    SysExtServices m_services;
    DaemonXPCClient& m_daemon;
    std::optional<std::int64_t> m_extensionStatus;
    bool m_isLoaded = false;
    bool m_needsApproval = false;
    SysExtStatus m_status;
    bool m_hasRetriedAfterDisconnect = false;
};

} // namespace tamsel
