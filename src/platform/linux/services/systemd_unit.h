#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <optional>

namespace tamsel {

/// What systemd says of a unit: whether it starts by itself (GetUnitFileState, such as "enabled"
/// or "static") and whether it runs (ActiveState, such as "active" or "failed").
struct UnitFacts {
    bool exists = false;
    QString fileState;
    QString activeState;

    bool startsByItself() const { return fileState.startsWith(u"enabled"); }
    bool isActive() const { return activeState == u"active" || activeState == u"reloading"; }
};

/// One unit of a systemd manager over D-Bus. Main thread; no call blocks. Every call lets polkit
/// ask the user, and waits for as long as that takes. Handlers run later, not after this object's
/// end.
class SystemdUnit final : public QObject {
    Q_OBJECT

public:
    using ReplyHandler = std::function<void(const QDBusMessage& reply)>;
    /// Nothing when the manager could not be asked.
    using FactsHandler = std::function<void(std::optional<UnitFacts>)>;
    /// How a job ended: "done", "failed", "canceled", ...; an error reply when none was begun.
    using JobHandler = std::function<void(const QDBusMessage& reply, const QString& result)>;

    SystemdUnit(QDBusConnection bus, QString unit);

    bool hasBus() const { return m_bus.isConnected(); }
    const QString& name() const { return m_name; }

    void readFacts(FactsHandler done);
    /// A method of the manager.
    void call(const QString& method, const QVariantList& arguments, ReplyHandler done);
    /// StartUnit or StopUnit, until the job that it begins has ended.
    void runJob(const QString& method, JobHandler done);

signals:
    /// The unit's state has changed, or may have.
    void changed();

private slots:
    void onJobRemoved(const QDBusMessage& signal);
    void onUnitChanged() { Q_EMIT changed(); }

private:
    void send(QDBusMessage message, ReplyHandler done);
    void finishJob(const QString& result);

    QDBusConnection m_bus;
    QString m_name;
    QString m_path;
    JobHandler m_job;
    QDBusMessage m_jobReply;   ///< names the job that is waited for; empty before
    QStringList m_removedJobs; ///< path and result in turn, of those that ended before the reply
};

} // namespace tamsel
