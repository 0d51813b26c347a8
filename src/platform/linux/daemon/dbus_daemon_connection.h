#pragma once

#include "platform/daemon_connection.h"
#include "platform/main_queue.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace tamsel {

class DBusAppObject;

/// A peer-to-peer D-Bus connection to the daemon. Replies, handlers and the daemon's calls run on
/// the main thread, later than the call that caused them.
class DBusDaemonConnection final : public QObject, public DaemonConnection {
    Q_OBJECT

public:
    DBusDaemonConnection(QString address, MainQueue& queue);
    ~DBusDaemonConnection() override;

    void setExportedObject(TamselAppCallbackProtocol* object) override;
    void setInvalidationHandler(std::function<void()> handler) override;
    void setInterruptionHandler(std::function<void()> handler) override;
    void resume() override;
    void invalidate() override;
    std::shared_ptr<TamselDaemonProtocol> remoteObjectProxy(ErrorHandler onError) override;

    using ReplyHandler = std::function<void(const QVariantList&)>;
    /// Sends one call; exactly one of `onReply` (with arguments of the method's reply signature)
    /// and `onError` runs, later.
    void call(const protocol::Method& method, const QVariantList& arguments, ReplyHandler onReply,
              ErrorHandler onError);

private slots:
    void peerClosed();

private:
    void failCall(const ErrorHandler& onError, const Error& error);
    void close();

    QString m_address;
    QString m_name;
    MainQueue& m_queue;
    TamselAppCallbackProtocol* m_exported = nullptr;
    std::unique_ptr<DBusAppObject> m_appObject;
    std::function<void()> m_onInvalidation;
    std::function<void()> m_onInterruption;
    QDBusConnection m_bus;
    enum class State { made, open, notReachable, closed } m_state = State::made;
};

/// Connects to one address, whatever the service's name.
class DBusDaemonConnector final : public DaemonConnector {
public:
    DBusDaemonConnector(QString address, MainQueue& queue)
        : m_address(std::move(address)), m_queue(queue) {}
    std::unique_ptr<DaemonConnection> makeConnection(std::string_view serviceName) override;

private:
    QString m_address;
    MainQueue& m_queue;
};

} // namespace tamsel
