#include "platform/linux/services/program_holders.h"

#include "base/unique_fd.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// 0, or why nobody could be reached.
int connectTo(int socket, const QString& socketFile) {
    const QByteArray path = QFile::encodeName(socketFile);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socket < 0 || path.isEmpty() ||
        static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return EINVAL;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
               ? 0
               : errno;
}

int newSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

int openLock(const QString& file) {
    return ::open(QFile::encodeName(file).constData(),
                  O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

/// A program that was replaced while it runs keeps its name, with a remark of the kernel's.
bool runsProgram(pid_t pid, const QString& name) {
    char target[4096];
    const QByteArray link = "/proc/" + QByteArray::number(pid) + "/exe";
    const ssize_t length = ::readlink(link.constData(), target, sizeof target);
    if (length <= 0)
        return false;
    const QString path = QFile::decodeName(QByteArray(target, length));
    const QString running = path.mid(path.lastIndexOf(u'/') + 1);
    return running == name || running == name + QStringLiteral(" (deleted)");
}

} // namespace

std::optional<pid_t> socketHolder(const QString& socketFile) {
    const UniqueFd socket(newSocket());
    if (connectTo(socket.get(), socketFile) != 0)
        return std::nullopt;
    ucred peer{};
    socklen_t length = sizeof peer;
    if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0 ||
        peer.uid != ::getuid())
        return std::nullopt;
    return peer.pid;
}

std::optional<pid_t> lockHolder(const QString& lockFile, const QString& programName) {
    const UniqueFd file(openLock(lockFile));
    char text[16];
    const ssize_t length = !file.isOpen() ? -1 : ::read(file.get(), text, sizeof text);
    if (length <= 0)
        return std::nullopt;
    bool isNumber = false;
    const int pid = QByteArray(text, length).trimmed().toInt(&isNumber);
    // The lock is tried last: for a moment it would be in the way of a program that starts.
    if (!isNumber || pid <= 0 || !runsProgram(pid, programName) ||
        ::flock(file.get(), LOCK_SH | LOCK_NB) == 0)
        return std::nullopt;
    return pid;
}

void removeForgottenSocket(const QString& socketFile) {
    const QByteArray path = QFile::encodeName(socketFile);
    struct stat info {};
    if (::lstat(path.constData(), &info) != 0 || !S_ISSOCK(info.st_mode))
        return;
    const UniqueFd lock(openLock(socketFile + QStringLiteral(".lock")));
    if (lock.isOpen() && ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return;
    const UniqueFd socket(newSocket());
    if (connectTo(socket.get(), socketFile) == ECONNREFUSED)
        ::unlink(path.constData());
}

} // namespace tamsel
