#pragma once

#include "platform/daemon_connection.h"
#include "platform/main_queue.h"

#include <QObject>

#include <string>
#include <vector>

namespace tamsel {

class FakeDaemonConnection;

/// A daemon with scripted answers, and the connector that leads to it. Answers, errors and handler
/// calls come on later turns of the queue, as they do from a real connection.
class FakeDaemon final : public DaemonConnector {
public:
    explicit FakeDaemon(MainQueue& mainQueue) : queue(mainQueue) {}

    MainQueue& queue;
    bool reachable = true; ///< false: every connection made from now on fails to open
    bool silent = false;   ///< calls get neither a reply nor an error
    bool implementsProtocol = true;
    std::string callError; ///< not empty: every call fails with it, the connection stays
    bool boolReply = true;
    Bytes seenDevices;
    std::string version = "1";
    struct Status {
        bool isGrabbing = true;
        bool driverConnected = true;
        std::string text = "RUNNING";
    } status;

    std::vector<std::string> calls; ///< method names, in order
    std::vector<Bytes> configs;
    int connectionsMade = 0;
    FakeDaemonConnection* current = nullptr; ///< the connection that is open now

    std::unique_ptr<DaemonConnection> makeConnection(std::string_view serviceName) override;

    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }
};

class FakeDaemonConnection final : public QObject, public DaemonConnection {
public:
    explicit FakeDaemonConnection(FakeDaemon& daemon);
    ~FakeDaemonConnection() override;

    TamselAppCallbackProtocol* exported = nullptr;

    void setExportedObject(TamselAppCallbackProtocol* object) override { exported = object; }
    void setInvalidationHandler(std::function<void()> handler) override;
    void setInterruptionHandler(std::function<void()> handler) override;
    void resume() override;
    void invalidate() override;
    std::shared_ptr<TamselDaemonProtocol> remoteObjectProxy(ErrorHandler onError) override;

    /// The daemon dies.
    void interrupt();
    void call(const char* method, const ErrorHandler& onError, std::function<void()> answer);

    FakeDaemon& daemon;

private:
    bool m_open = false;
    std::function<void()> m_onInvalidation;
    std::function<void()> m_onInterruption;
};

} // namespace tamsel
