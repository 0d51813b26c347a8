#pragma once

#include "platform/service_management.h"

#include <QStringList>

#include <optional>

namespace tamsel {

/// Answers as told and writes its calls into a list that it shares with others.
class FakeService final : public ServiceHandle {
public:
    FakeService(QString name, QStringList& calls) : m_name(std::move(name)), m_calls(calls) {}

    ServiceStatus current = ServiceStatus::notRegistered;
    /// What the status becomes by a call that succeeds.
    ServiceStatus afterRegistering = ServiceStatus::enabled;
    std::optional<ServiceError> registerError;
    std::optional<ServiceError> unregisterError;

    ServiceStatus status() override { return current; }
    ServiceResult registerService() override {
        return answer(QStringLiteral("register "), registerError, afterRegistering);
    }
    ServiceResult unregisterService() override {
        return answer(QStringLiteral("unregister "), unregisterError, ServiceStatus::notRegistered);
    }
    void change(ServiceStatus status) {
        current = status;
        Q_EMIT statusChanged();
    }

private:
    ServiceResult answer(const QString& call, const std::optional<ServiceError>& error,
                         ServiceStatus next) {
        m_calls << call + m_name;
        if (error)
            return tl::unexpected(*error);
        current = next;
        return {};
    }

    QString m_name;
    QStringList& m_calls;
};

/// Hands each service out once, named by its property list; the test keeps looking at it through
/// the pointers, which live as long as who owns the handle.
class FakeServiceManagement final : public ServiceManagement {
public:
    QStringList calls;

private:
    std::unique_ptr<FakeService> m_daemon = make(QStringLiteral("daemon"));
    std::unique_ptr<FakeService> m_agent = make(QStringLiteral("agent"));
    std::unique_ptr<FakeService> m_mainApp = make(QStringLiteral("application"));

    std::unique_ptr<FakeService> make(const QString& name) {
        return std::make_unique<FakeService>(name, calls);
    }

public:
    FakeService* const daemon = m_daemon.get();
    FakeService* const agent = m_agent.get();
    FakeService* const mainApp = m_mainApp.get();

    std::unique_ptr<ServiceHandle> daemonService(const QString& plistName) override {
        return plistName == u"app.tamsel.daemon.plist" ? std::move(m_daemon) : nullptr;
    }
    std::unique_ptr<ServiceHandle> agentService(const QString& plistName) override {
        return plistName == u"app.tamsel.agent.plist" ? std::move(m_agent) : nullptr;
    }
    std::unique_ptr<ServiceHandle> mainAppService() override { return std::move(m_mainApp); }
};

} // namespace tamsel
