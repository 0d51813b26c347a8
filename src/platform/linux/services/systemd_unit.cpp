#include "platform/linux/services/systemd_unit.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <limits>

namespace tamsel {

namespace {

const auto systemdService = QStringLiteral("org.freedesktop.systemd1");
const auto managerPath = QStringLiteral("/org/freedesktop/systemd1");
const auto managerInterface = QStringLiteral("org.freedesktop.systemd1.Manager");
const auto unitInterface = QStringLiteral("org.freedesktop.systemd1.Unit");
const auto propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// The user may take any time to answer a prompt.
constexpr int noTimeout = std::numeric_limits<int>::max();

/// A unit's object: letters and digits stand for themselves, everything else is _XX.
QString pathOfUnit(const QString& unit) {
    QString path = managerPath + QStringLiteral("/unit/");
    for (const char c : unit.toUtf8()) {
        const bool isPlain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        path += isPlain ? QString(QLatin1Char(c))
                        : QStringLiteral("_%1").arg(uint(uchar(c)), 2, 16, QLatin1Char('0'));
    }
    return path;
}

bool isError(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ErrorMessage;
}

bool saysNotFound(const QDBusMessage& reply) {
    return reply.errorName() == u"org.freedesktop.systemd1.NoSuchUnit" ||
           reply.errorName() == u"org.freedesktop.DBus.Error.FileNotFound";
}

QString pathIn(const QDBusMessage& message, int argument) {
    return message.arguments().value(argument).value<QDBusObjectPath>().path();
}

QString firstText(const QDBusMessage& reply) {
    const QVariant first = reply.arguments().value(0);
    return first.canConvert<QDBusVariant>() ? first.value<QDBusVariant>().variant().toString()
                                            : first.toString();
}

} // namespace

SystemdUnit::SystemdUnit(QDBusConnection bus, QString unit)
    : m_bus(std::move(bus)), m_name(std::move(unit)), m_path(pathOfUnit(m_name)) {
    if (!hasBus())
        return;
    // Without a sender's name: looking its owner up would block.
    m_bus.connect({}, managerPath, managerInterface, QStringLiteral("JobRemoved"),
                  {QString(), QString(), m_name}, QStringLiteral("uoss"), this,
                  SLOT(onJobRemoved(QDBusMessage)));
    m_bus.connect({}, m_path, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                  SLOT(onUnitChanged()));
    call(QStringLiteral("Subscribe"), {}, [](const QDBusMessage&) {});
}

void SystemdUnit::send(QDBusMessage message, ReplyHandler done) {
    message.setAutoStartService(false);
    message.setInteractiveAuthorizationAllowed(true);
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, noTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, done = std::move(done)] {
        watcher->deleteLater();
        done(watcher->reply());
    });
}

void SystemdUnit::call(const QString& method, const QVariantList& arguments, ReplyHandler done) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(systemdService, managerPath, managerInterface, method);
    message.setArguments(arguments);
    send(message, std::move(done));
}

void SystemdUnit::readFacts(FactsHandler done) {
    call(QStringLiteral("GetUnitFileState"), {m_name},
         [this, done = std::move(done)](const QDBusMessage& reply) {
             if (isError(reply)) {
                 done(saysNotFound(reply) ? std::optional(UnitFacts{}) : std::nullopt);
                 return;
             }
             QDBusMessage get = QDBusMessage::createMethodCall(
                 systemdService, m_path, propertiesInterface, QStringLiteral("Get"));
             get.setArguments({unitInterface, QStringLiteral("ActiveState")});
             send(get, [done, fileState = firstText(reply)](const QDBusMessage& state) {
                 // A unit that is not loaded has no object and does not run.
                 done(UnitFacts{true, fileState, isError(state) ? QString() : firstText(state)});
             });
         });
}

void SystemdUnit::runJob(const QString& method, JobHandler done) {
    m_job = std::move(done);
    m_jobReply = {};
    m_removedJobs.clear();
    call(method, {m_name, QStringLiteral("replace")}, [this](const QDBusMessage& reply) {
        m_jobReply = reply;
        const qsizetype at = isError(reply) ? -1 : m_removedJobs.indexOf(pathIn(reply, 0));
        if (isError(reply) || at >= 0)
            finishJob(at >= 0 ? m_removedJobs.at(at + 1) : QString());
    });
}

// The arguments are the job's number and path, the unit and the result.
void SystemdUnit::onJobRemoved(const QDBusMessage& signal) {
    const QString job = pathIn(signal, 1);
    const QString result = signal.arguments().value(3).toString();
    if (!m_job)
        Q_EMIT changed();
    else if (m_jobReply.type() == QDBusMessage::InvalidMessage)
        m_removedJobs << job << result;
    else if (pathIn(m_jobReply, 0) == job)
        finishJob(result);
}

void SystemdUnit::finishJob(const QString& result) {
    if (const JobHandler done = std::exchange(m_job, nullptr))
        done(m_jobReply, result);
}

} // namespace tamsel
