#pragma once

#include "platform/service_management.h"

namespace tamsel {

/// Why a service could not be registered or unregistered, as codes of the domain
/// "app.tamsel.ServiceErrorDomain".
enum class ServiceFailure : int {
    failed = 1,  ///< the system tried and failed
    refused = 2, ///< the user or the system's policy said no
    notFound = 3,
};

inline ServiceError serviceError(ServiceFailure code, const QString& description) {
    return {QStringLiteral("app.tamsel.ServiceErrorDomain"), static_cast<int>(code), description};
}

inline ServiceError alreadyRegistered() {
    return {ServiceError::serviceManagementDomain.toString(), ServiceError::alreadyRegisteredCode,
            QObject::tr("The service is registered already.")};
}

} // namespace tamsel
