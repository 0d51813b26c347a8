#include "platform/linux/services/systemd_service.h"

#include "platform/linux/services/service_errors.h"

#include <QDBusArgument>

namespace tamsel {

namespace {

/// Why a call failed; nothing when it has not.
std::optional<ServiceError> errorOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ErrorMessage)
        return std::nullopt;
    const QString name = reply.errorName();
    if (name == u"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired" ||
        name == u"org.freedesktop.DBus.Error.AccessDenied" ||
        name == u"org.freedesktop.DBus.Error.AuthFailed")
        return serviceError(ServiceFailure::refused, QObject::tr("The authorization was refused."));
    if (name == u"org.freedesktop.systemd1.NoSuchUnit" ||
        name == u"org.freedesktop.DBus.Error.FileNotFound")
        return serviceError(ServiceFailure::notFound, reply.errorMessage());
    return serviceError(ServiceFailure::failed,
                        reply.errorMessage().isEmpty() ? name : reply.errorMessage());
}

/// Whether a reply's list of changed links, a(sss), is not empty.
bool hasChanges(const QDBusMessage& reply, int argument) {
    const auto list = reply.arguments().value(argument).value<QDBusArgument>();
    if (list.currentType() != QDBusArgument::ArrayType)
        return false;
    list.beginArray();
    const bool isEmpty = list.atEnd();
    list.endArray();
    return !isEmpty;
}

ServiceError noBus() {
    return serviceError(ServiceFailure::failed, QObject::tr("The message bus can't be reached."));
}

} // namespace

SystemdService::SystemdService(const QDBusConnection& bus, const QString& unit)
    : m_unit(bus, unit) {
    connect(&m_unit, &SystemdUnit::changed, this, [this] {
        m_isStale = m_isRefreshing;
        refresh();
    });
    refresh();
}

ServiceStatus SystemdService::knownStatus() const {
    if (m_running)
        return ServiceStatus::requiresApproval;
    if (m_facts && !m_facts->exists)
        return ServiceStatus::notFound;
    return m_facts && m_facts->startsByItself() && m_facts->isActive()
               ? ServiceStatus::enabled
               : ServiceStatus::notRegistered;
}

ServiceStatus SystemdService::status() {
    refresh();
    return m_announced = knownStatus();
}

void SystemdService::refresh() {
    if (m_isRefreshing || m_running || !m_unit.hasBus())
        return;
    m_isRefreshing = true;
    m_unit.readFacts([this](const std::optional<UnitFacts>& facts) {
        m_isRefreshing = false;
        takeFacts(facts);
        announce();
        if (std::exchange(m_isStale, false))
            refresh();
    });
}

void SystemdService::takeFacts(const std::optional<UnitFacts>& facts) {
    // Without an answer nothing runs, as far as anybody can tell.
    m_facts = facts ? facts : std::optional(UnitFacts{true, {}, {}});
}

void SystemdService::announce() {
    const ServiceStatus status = knownStatus();
    if (std::exchange(m_announced, status) != status)
        Q_EMIT statusChanged();
}

ServiceResult SystemdService::registerService() {
    if (!m_unit.hasBus())
        return tl::unexpected(noBus());
    const bool isUnderWay = m_running == ServiceOperation::registration && !m_next;
    if (isUnderWay || knownStatus() == ServiceStatus::enabled)
        return tl::unexpected(alreadyRegistered());
    begin(ServiceOperation::registration);
    return {};
}

ServiceResult SystemdService::unregisterService() {
    if (!m_unit.hasBus())
        return tl::unexpected(noBus());
    if (knownStatus() == ServiceStatus::notFound)
        return tl::unexpected(
            serviceError(ServiceFailure::notFound, tr("There is no unit %1.").arg(m_unit.name())));
    const bool isOff = !m_running && m_facts && m_facts->fileState == u"disabled" &&
                       (m_facts->activeState == u"inactive" || m_facts->activeState.isEmpty());
    if (!isOff)
        begin(ServiceOperation::unregistration);
    return {};
}

void SystemdService::begin(ServiceOperation operation) {
    if (!m_running)
        run(operation);
    else if (m_running == operation)
        m_next.reset();
    else
        m_next = operation;
}

void SystemdService::run(ServiceOperation operation) {
    m_running = operation;
    operation == ServiceOperation::registration ? enable() : disable();
}

void SystemdService::enable() {
    m_unit.call(
        QStringLiteral("EnableUnitFiles"), {QStringList{m_unit.name()}, false, false},
        [this](const QDBusMessage& reply) {
            if (auto error = errorOf(reply))
                return conclude(std::move(error));
            if (!reply.arguments().value(0).toBool())
                return conclude(serviceError(
                    ServiceFailure::failed,
                    tr("The unit %1 says nothing of its installation.").arg(m_unit.name())));
            reloadAndRun(hasChanges(reply, 1));
        });
}

void SystemdService::disable() {
    m_unit.call(QStringLiteral("DisableUnitFiles"), {QStringList{m_unit.name()}, false},
                [this](const QDBusMessage& reply) {
                    if (auto error = errorOf(reply))
                        return conclude(std::move(error));
                    reloadAndRun(hasChanges(reply, 0));
                });
}

void SystemdService::reloadAndRun(bool filesChanged) {
    if (!filesChanged)
        return runJob();
    m_unit.call(QStringLiteral("Reload"), {}, [this](const QDBusMessage& reply) {
        if (auto error = errorOf(reply))
            return conclude(std::move(error));
        runJob();
    });
}

void SystemdService::runJob() {
    const bool isStart = m_running == ServiceOperation::registration;
    m_unit.runJob(isStart ? QStringLiteral("StartUnit") : QStringLiteral("StopUnit"),
                  [this, isStart](const QDBusMessage& reply, const QString& result) {
                      auto error = errorOf(reply);
                      // What is not even loaded needs no stopping.
                      if (!isStart && error &&
                          error->code == static_cast<int>(ServiceFailure::notFound))
                          error.reset();
                      else if (!error && result != u"done")
                          error = serviceError(ServiceFailure::failed,
                                               tr("systemd's job ended as \"%1\".").arg(result));
                      conclude(std::move(error));
                  });
}

void SystemdService::conclude(std::optional<ServiceError> error) {
    m_unit.readFacts([this, error = std::move(error)](const std::optional<UnitFacts>& facts) {
        takeFacts(facts);
        settle(error);
    });
}

void SystemdService::settle(std::optional<ServiceError> error) {
    const ServiceOperation operation = *std::exchange(m_running, std::nullopt);
    if (!error && operation == ServiceOperation::registration &&
        knownStatus() != ServiceStatus::enabled)
        // The start of a program that is missing counts as done.
        error = serviceError(ServiceFailure::failed,
                             tr("The unit %1 does not run (%2, %3).")
                                 .arg(m_unit.name(), m_facts->fileState, m_facts->activeState));
    const auto next = std::exchange(m_next, std::nullopt);
    if (next)
        run(*next);
    if (error)
        Q_EMIT failedLater(operation, *error);
    announce();
}

} // namespace tamsel
