#include "platform/fake/fake_daemon.h"

namespace tamsel {

namespace {

class FakeProxy final : public TamselDaemonProtocol {
public:
    FakeProxy(FakeDaemonConnection& connection, DaemonConnection::ErrorHandler onError)
        : m_connection(connection), m_daemon(connection.daemon), m_onError(std::move(onError)) {}

    void updateCfg(const Bytes& cfg, BoolReply reply) override {
        m_daemon.configs.push_back(cfg);
        answerBool("updateCfg", std::move(reply));
    }
    void getStatus(StatusReply reply) override {
        call("getStatus", [reply = std::move(reply), status = m_daemon.status] {
            reply(status.isGrabbing, status.driverConnected, status.text);
        });
    }
    void getVersion(std::function<void(std::string)> reply) override {
        call("getVersion",
             [reply = std::move(reply), version = m_daemon.version] { reply(version); });
    }
    void stopGrabbing(BoolReply reply) override { answerBool("stopGrabbing", std::move(reply)); }
    void startGrabbing(BoolReply reply) override { answerBool("startGrabbing", std::move(reply)); }
    void subscribeKeyViewer(BoolReply reply) override {
        answerBool("subscribeKeyViewer", std::move(reply));
    }
    void unsubscribeKeyViewer(BoolReply reply) override {
        answerBool("unsubscribeKeyViewer", std::move(reply));
    }
    void getSeenDevices(std::function<void(Bytes)> reply) override {
        call("getSeenDevices",
             [reply = std::move(reply), devices = m_daemon.seenDevices] { reply(devices); });
    }

private:
    void call(const char* method, std::function<void()> answer) {
        m_connection.call(method, m_onError, std::move(answer));
    }
    void answerBool(const char* method, BoolReply reply) {
        call(method, [reply = std::move(reply), answer = m_daemon.boolReply] { reply(answer); });
    }

    FakeDaemonConnection& m_connection;
    FakeDaemon& m_daemon;
    DaemonConnection::ErrorHandler m_onError;
};

} // namespace

std::unique_ptr<DaemonConnection> FakeDaemon::makeConnection(std::string_view) {
    ++connectionsMade;
    return std::make_unique<FakeDaemonConnection>(*this);
}

FakeDaemonConnection::FakeDaemonConnection(FakeDaemon& owner) : daemon(owner) {}

FakeDaemonConnection::~FakeDaemonConnection() {
    if (daemon.current == this)
        daemon.current = nullptr;
}

void FakeDaemonConnection::setInvalidationHandler(std::function<void()> handler) {
    m_onInvalidation = std::move(handler);
}

void FakeDaemonConnection::setInterruptionHandler(std::function<void()> handler) {
    m_onInterruption = std::move(handler);
}

void FakeDaemonConnection::resume() {
    m_open = daemon.reachable;
    daemon.current = this;
}

void FakeDaemonConnection::invalidate() {
    m_open = false;
    if (m_onInvalidation)
        daemon.queue.async(nullptr, std::exchange(m_onInvalidation, nullptr));
}

void FakeDaemonConnection::interrupt() {
    m_open = false;
    if (m_onInterruption)
        daemon.queue.async(this, std::exchange(m_onInterruption, nullptr));
}

std::shared_ptr<TamselDaemonProtocol>
FakeDaemonConnection::remoteObjectProxy(ErrorHandler onError) {
    return daemon.implementsProtocol ? std::make_shared<FakeProxy>(*this, std::move(onError))
                                     : nullptr;
}

void FakeDaemonConnection::call(const char* method, const ErrorHandler& onError,
                                std::function<void()> answer) {
    if (!m_open) {
        daemon.queue.async(this, [onError] { onError({"no daemon"}); });
        if (m_onInvalidation)
            daemon.queue.async(this, [this, report = std::exchange(m_onInvalidation, nullptr)] {
                daemon.queue.async(this, report);
            });
        return;
    }
    daemon.calls.emplace_back(method);
    if (daemon.silent)
        return;
    if (!daemon.callError.empty())
        answer = [onError, text = daemon.callError] { onError({text}); };
    daemon.queue.async(this, std::move(answer));
}

} // namespace tamsel
