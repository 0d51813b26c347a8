#include "platform/linux/daemon/dbus_daemon_connection.h"

#include "platform/linux/daemon/dbus_app_object.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QUuid>

#include <limits>

namespace tamsel {

namespace {

constexpr int noTimeout = std::numeric_limits<int>::max(); // libdbus: wait for ever

/// The remote interface; each call becomes one message of the connection.
class DBusDaemonProxy final : public TamselDaemonProtocol {
public:
    DBusDaemonProxy(DBusDaemonConnection& connection, DaemonConnection::ErrorHandler onError)
        : m_connection(&connection), m_onError(std::move(onError)) {}

    void updateCfg(const Bytes& cfg, BoolReply reply) override {
        const QByteArray bytes(reinterpret_cast<const char*>(cfg.data()),
                               static_cast<qsizetype>(cfg.size()));
        callBool(protocol::updateCfg, std::move(reply), {bytes});
    }
    void getStatus(StatusReply reply) override {
        call(protocol::getStatus, {}, [reply](const QVariantList& r) {
            reply(r[0].toBool(), r[1].toBool(), r[2].toString().toStdString());
        });
    }
    void getVersion(std::function<void(std::string)> reply) override {
        call(protocol::getVersion, {},
             [reply](const QVariantList& r) { reply(r[0].toString().toStdString()); });
    }
    void stopGrabbing(BoolReply reply) override {
        callBool(protocol::stopGrabbing, std::move(reply));
    }
    void startGrabbing(BoolReply reply) override {
        callBool(protocol::startGrabbing, std::move(reply));
    }
    void subscribeKeyViewer(BoolReply reply) override {
        callBool(protocol::subscribeKeyViewer, std::move(reply));
    }
    void unsubscribeKeyViewer(BoolReply reply) override {
        callBool(protocol::unsubscribeKeyViewer, std::move(reply));
    }
    void getSeenDevices(std::function<void(Bytes)> reply) override {
        call(protocol::getSeenDevices, {}, [reply](const QVariantList& r) {
            const QByteArray json = r[0].toByteArray();
            reply(Bytes(json.begin(), json.end()));
        });
    }

private:
    void call(const protocol::Method& method, const QVariantList& arguments,
              DBusDaemonConnection::ReplyHandler onReply) {
        // A proxy that outlives its connection has nobody left to tell.
        if (m_connection)
            m_connection->call(method, arguments, std::move(onReply), m_onError);
    }
    void callBool(const protocol::Method& method, BoolReply reply,
                  const QVariantList& arguments = {}) {
        call(method, arguments,
             [reply = std::move(reply)](const QVariantList& r) { reply(r[0].toBool()); });
    }

    QPointer<DBusDaemonConnection> m_connection;
    DaemonConnection::ErrorHandler m_onError;
};

Error describe(const QDBusMessage& message) {
    const QString text = message.errorMessage();
    return {(text.isEmpty() ? message.errorName() : text).toStdString()};
}

} // namespace

DBusDaemonConnection::DBusDaemonConnection(QString address, MainQueue& queue)
    : m_address(std::move(address)),
      m_name(QStringLiteral("tamsel-daemon-") + QUuid::createUuid().toString(QUuid::Id128)),
      m_queue(queue),
      m_bus(m_name) {}

DBusDaemonConnection::~DBusDaemonConnection() {
    close();
}

void DBusDaemonConnection::setExportedObject(TamselAppCallbackProtocol* object) {
    m_exported = object;
}

void DBusDaemonConnection::setInvalidationHandler(std::function<void()> handler) {
    m_onInvalidation = std::move(handler);
}

void DBusDaemonConnection::setInterruptionHandler(std::function<void()> handler) {
    m_onInterruption = std::move(handler);
}

void DBusDaemonConnection::resume() {
    if (m_state != State::made)
        return;
    m_bus = QDBusConnection::connectToPeer(m_address, m_name);
    if (m_exported) {
        m_appObject = std::make_unique<DBusAppObject>(*m_exported);
        m_bus.registerVirtualObject(QLatin1String(protocol::appPath), m_appObject.get());
    }
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  this, SLOT(peerClosed()));
    // Asked after the signal is connected: a peer that is gone by now counts as never reached.
    m_state = m_bus.isConnected() ? State::open : State::notReachable;
}

void DBusDaemonConnection::peerClosed() {
    if (m_state != State::open)
        return;
    close();
    if (m_onInterruption)
        m_queue.async(this, std::exchange(m_onInterruption, nullptr));
}

void DBusDaemonConnection::invalidate() {
    close();
    // No context: the report comes also when this object is gone by then.
    if (m_onInvalidation)
        m_queue.async(nullptr, std::exchange(m_onInvalidation, nullptr));
}

void DBusDaemonConnection::close() {
    if (m_state == State::open || m_state == State::notReachable)
        QDBusConnection::disconnectFromPeer(m_name);
    m_appObject.reset();
    m_state = State::closed;
}

void DBusDaemonConnection::failCall(const ErrorHandler& onError, const Error& error) {
    m_queue.async(this, [onError, error] { onError(error); });
    if (m_state != State::notReachable || !m_onInvalidation)
        return;
    // One turn further on, so that messages of the same turn have failed by then.
    m_queue.async(this, [this, report = std::exchange(m_onInvalidation, nullptr)] {
        m_queue.async(this, report);
    });
}

void DBusDaemonConnection::call(const protocol::Method& method, const QVariantList& arguments,
                                ReplyHandler onReply, ErrorHandler onError) {
    if (m_state != State::open) {
        const QString reason = m_bus.lastError().message();
        failCall(onError, {reason.isEmpty() ? "the daemon can't be reached" : reason.toStdString(),
                           m_address.toStdString()});
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        QString(), QLatin1String(protocol::daemonPath), QLatin1String(protocol::daemonInterface),
        QLatin1String(method.name));
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, noTimeout), this);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this,
                     [watcher, method, onReply = std::move(onReply), onError = std::move(onError)] {
                         watcher->deleteLater();
                         const QDBusMessage reply = watcher->reply();
                         if (reply.type() != QDBusMessage::ReplyMessage)
                             onError(describe(reply));
                         else if (reply.signature() != QLatin1String(method.reply))
                             onError({"the reply has the signature \"" +
                                          reply.signature().toStdString() + "\" instead of \"" +
                                          method.reply + "\"",
                                      method.name});
                         else
                             onReply(reply.arguments());
                     });
}

std::shared_ptr<TamselDaemonProtocol>
DBusDaemonConnection::remoteObjectProxy(ErrorHandler onError) {
    return std::make_shared<DBusDaemonProxy>(*this, std::move(onError));
}

std::unique_ptr<DaemonConnection> DBusDaemonConnector::makeConnection(std::string_view) {
    return std::make_unique<DBusDaemonConnection>(m_address, m_queue);
}

} // namespace tamsel
