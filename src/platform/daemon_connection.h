#pragma once

#include "base/error.h"
#include "protocol/daemon_protocol.h"

#include <functional>
#include <memory>
#include <string_view>

namespace tamsel {

/// One connection to the daemon, both ways. Set up, then resume(); all calls on the main thread.
/// Handlers and replies run on a queue of the connection, any thread, in order; what they touch
/// must hop to the main queue first. Destroying a connection closes it silently: no handler of it
/// runs afterwards, save the invalidation that invalidate() has promised.
class DaemonConnection {
public:
    using ErrorHandler = std::function<void(const Error&)>;

    virtual ~DaemonConnection() = default;

    /// Serves the daemon's calls; not owned, must outlive the connection.
    virtual void setExportedObject(TamselAppCallbackProtocol* object) = 0;
    /// Runs once: after invalidate(), or after the first message of a connection that could not
    /// be opened.
    virtual void setInvalidationHandler(std::function<void()> handler) = 0;
    /// Runs once when the peer has closed.
    virtual void setInterruptionHandler(std::function<void()> handler) = 0;

    /// Opens. Never fails here: without a daemon, the first message reports the failure.
    virtual void resume() = 0;
    /// Closes; the invalidation handler follows, also when the object is destroyed meanwhile.
    virtual void invalidate() = 0;

    /// The daemon's interface. Each call that fails in transport runs `onError` in place of its
    /// reply. Null when the remote object does not implement the interface.
    virtual std::shared_ptr<TamselDaemonProtocol> remoteObjectProxy(ErrorHandler onError) = 0;
};

/// Makes connections. Main thread.
class DaemonConnector {
public:
    virtual ~DaemonConnector() = default;

    /// A fresh connection to the named service, not yet resumed; never null.
    virtual std::unique_ptr<DaemonConnection> makeConnection(std::string_view serviceName) = 0;
};

} // namespace tamsel
