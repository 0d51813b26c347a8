#pragma once

#include <QObject>
#include <QString>

#include <cstdint>

namespace tamsel {

/// The domain of the service's own failures.
inline const QString systemExtensionErrorDomain = QStringLiteral("OSSystemExtensionErrorDomain");

/// Failure codes within that domain that the service reports; others must be accepted too.
enum SystemExtensionErrorCode : std::int64_t {
    systemExtensionUnknownError = 1,
    systemExtensionNotFound = 4,
    systemExtensionForbiddenByPolicy = 10,
    systemExtensionRequestCanceled =
        11, ///< another process holds the driver and blocks the request
    systemExtensionAuthorizationRequired = 13,
};

/// Known outcomes of a request that has finished; any other value may come.
enum SystemExtensionResult : std::int64_t {
    systemExtensionCompleted = 0,
    systemExtensionWillCompleteAfterReboot = 1,
};

struct SystemExtensionError {
    QString domain;
    std::int64_t code = 0;
    QString localizedDescription;
    /// The whole error as the platform prints it.
    QString description;

    /// A failure of the service's own.
    static SystemExtensionError ofService(std::int64_t code, const QString& text) {
        return {systemExtensionErrorDomain, code, text,
                QStringLiteral("Error Domain=%1 Code=%2 \"%3\"")
                    .arg(systemExtensionErrorDomain, QString::number(code), text)};
    }
};

/// What a request is for, and of which extension.
struct SystemExtensionRequest {
    enum class Kind { activation, deactivation };

    Kind kind;
    QString identifier;

    bool operator==(const SystemExtensionRequest&) const = default;
};

struct SystemExtensionProperties {
    QString bundleVersion;
};

enum class ReplacementAction { cancel = 0, replace = 1 };

/// Hears what becomes of the requests submitted with it. All calls come on the main thread, later
/// than the submit() that caused them; didFinish or didFail is the last one of a request.
class SystemExtensionRequestDelegate : public QObject {
public:
    using QObject::QObject;

    /// A different version is installed; the answer is taken at once.
    virtual ReplacementAction
    actionForReplacingExtension(const SystemExtensionRequest& request,
                                const SystemExtensionProperties& installed,
                                const SystemExtensionProperties& offered) = 0;
    virtual void requestNeedsUserApproval(const SystemExtensionRequest& request) = 0;
    virtual void didFinishWithResult(const SystemExtensionRequest& request,
                                     std::int64_t result) = 0;
    virtual void didFailWithError(const SystemExtensionRequest& request,
                                  const SystemExtensionError& error) = 0;
};

/// The platform's service for drivers. Main thread.
class SystemExtensionService {
public:
    virtual ~SystemExtensionService() = default;

    /// Hands the request over and returns at once. The delegate is held weakly: once it is
    /// destroyed, the request goes on unheard.
    virtual void submit(const SystemExtensionRequest& request,
                        SystemExtensionRequestDelegate& delegate) = 0;
};

} // namespace tamsel
