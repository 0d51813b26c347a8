#pragma once

#include "base/error.h"
#include "base/unique_fd.h"
#include "program/socket_name.h"

#include <optional>
#include <string>
#include <sys/types.h>

namespace tamsel {

/// The daemon's listening socket, at most one an address: a lock file beside the socket decides.
/// The socket's file goes with the object, the lock file stays.
class Listener final {
public:
    /// Listens at a "unix:path=" or "unix:abstract=" address; on the socket there that systemd has
    /// opened for this process, if it has, which then stays systemd's. A missing folder is made
    /// (0700); fails when the folder is another user's, when a daemon lives there already and when
    /// something other than a forgotten socket is in the way.
    static Result<Listener> open(const std::string& address);

    Listener(Listener&&) noexcept = default;
    Listener& operator=(Listener&&) = delete;
    ~Listener();

    /// Non-blocking, for accept().
    int fd() const { return m_socket.get(); }

private:
    Listener() = default;

    static std::optional<Listener> inherited(const std::string& path);
    static Result<Listener> openFile(const std::string& path);
    static Result<Listener> openAbstract(const SocketName& name);

    UniqueFd m_socket;
    UniqueFd m_lock;
    std::string m_path; ///< empty for an abstract address
};

} // namespace tamsel
