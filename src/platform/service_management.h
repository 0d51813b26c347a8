#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <tl/expected.hpp>

namespace tamsel {

/// What the system says of a background service; the numbers are the ones that logs show.
enum class ServiceStatus : int {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< asked for, and neither granted nor refused so far
    notFound = 3,
};

struct ServiceError {
    static constexpr QStringView serviceManagementDomain = u"SMAppServiceErrorDomain";
    static constexpr int alreadyRegisteredCode = 1;

    QString domain;
    int code = 0;
    QString localizedDescription;

    bool isAlreadyRegistered() const {
        return domain == serviceManagementDomain && code == alreadyRegisteredCode;
    }
};
using ServiceResult = tl::expected<void, ServiceError>;

enum class ServiceOperation { registration, unregistration };

/// One service that the system can start by itself. Main thread.
///
/// No call blocks. One that waits for the user's approval, or for the system's answer, starts the
/// matter and succeeds at once; the status reads requiresApproval until it is settled. A failure
/// that shows only then is told by failedLater(). Of calls made meanwhile the last one counts.
class ServiceHandle : public QObject {
    Q_OBJECT

public:
    /// What is known now; reading it never emits a signal of this object.
    virtual ServiceStatus status() = 0;
    /// Has the system run the service, now and from now on. Fails with isAlreadyRegistered() when
    /// it does so already.
    virtual ServiceResult registerService() = 0;
    /// Ends the service and has the system forget it.
    virtual ServiceResult unregisterService() = 0;

signals:
    /// The status has changed by itself, not by a call that is being made.
    void statusChanged();
    /// A call that had succeeded has failed after all; statusChanged() follows where it applies.
    void failedLater(tamsel::ServiceOperation operation, const tamsel::ServiceError& error);
};

/// Makes handles; the caller owns them. Main thread.
class ServiceManagement {
public:
    virtual ~ServiceManagement() = default;

    /// A privileged service of the whole machine, by the name of its property list
    /// ("app.tamsel.daemon.plist"). Never null, neither are the others.
    virtual std::unique_ptr<ServiceHandle> daemonService(const QString& plistName) = 0;
    /// A service in the user's own session.
    virtual std::unique_ptr<ServiceHandle> agentService(const QString& plistName) = 0;
    /// The application itself as a login item; registering it again renews the entry.
    virtual std::unique_ptr<ServiceHandle> mainAppService() = 0;
};

} // namespace tamsel
