#include "platform/linux/embedded_daemon.h"

#include "platform/linux/child_process.h"

#include <QFile>

#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tamsel {

EmbeddedDaemon::EmbeddedDaemon(QString program, QString socketFile)
    : m_program(std::move(program)), m_socketFile(std::move(socketFile)) {}

EmbeddedDaemon::~EmbeddedDaemon() {
    if (m_pid > 0)
        ::kill(static_cast<pid_t>(m_pid), SIGTERM);
}

bool EmbeddedDaemon::answers() const {
    const QByteArray path = QFile::encodeName(m_socketFile);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0)
        return false;
    const bool connected =
        ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return connected;
}

Result<void> EmbeddedDaemon::ensureRunning() {
    if (answers() || m_pid > 0)
        return {};
    const auto pid = startDetachedChild(m_program, {}, this, [this](int) { m_pid = 0; });
    if (!pid)
        return tl::unexpected(pid.error());
    m_pid = *pid;
    return {};
}

} // namespace tamsel
