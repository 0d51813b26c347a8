#include "bus/listener.h"

#include "base/private_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <systemd/sd-daemon.h>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr std::string_view systemFolder = "/run/tamsel";
constexpr mode_t privateSocket = 0600;
/// The system daemon serves whoever sits at the machine; each caller is checked by its identity.
constexpr mode_t publicSocket = 0666;

tl::unexpected<Error> systemError(const std::string& what, const std::string& place) {
    return fail(what + ": " + std::generic_category().message(errno), place);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

Result<UniqueFd> bindAndListen(const SocketName& name) {
    const std::string& place = name.text;
    const auto address = kernelAddress(name);
    if (!address)
        return tl::unexpected(address.error());
    UniqueFd socket = newSocket();
    // Nobody else may connect between bind() and chmod().
    const mode_t before = ::umask(0177);
    const bool isBound =
        socket.isOpen() && ::bind(socket.get(), address->get(), address->length) == 0;
    const int error = errno;
    ::umask(before);
    errno = error;
    if (!isBound && errno == EADDRINUSE)
        return fail("another daemon is listening there", place);
    if (!isBound || ::listen(socket.get(), SOMAXCONN) != 0)
        return systemError("cannot listen", place);
    return socket;
}

Result<void> requireOwnFolder(const std::string& folder) {
    if (auto made = makePrivateFolders(folder); !made)
        return made;
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0)
        return systemError("the folder cannot be used", folder);
    // The system's folder for everybody's files keeps strangers from replacing ours.
    const bool isSharedTemporary = info.st_uid == 0 && (info.st_mode & S_ISVTX) != 0;
    if (info.st_uid != ::geteuid() && !isSharedTemporary)
        return fail("the socket's folder belongs to another user", folder);
    return {};
}

/// Holds the lock beside a socket.
Result<UniqueFd> lock(const std::string& socket) {
    const std::string path = socket + ".lock";
    UniqueFd file(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                         privateSocket));
    if (!file.isOpen())
        return systemError("the lock file cannot be opened", path);
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        return file;
    if (errno == EWOULDBLOCK)
        return fail("another daemon is running there", socket);
    return systemError("the lock file cannot be locked", path);
}

/// Called with the lock held: who answers now is no daemon of ours, but must not lose its socket.
Result<void> removeStaleSocket(const std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0)
        return errno == ENOENT ? Result<void>() : systemError("cannot be looked at", path);
    if (!S_ISSOCK(info.st_mode))
        return fail("is in the way: not a socket", path);
    const auto address = kernelAddress({path, SocketName::Kind::file});
    if (!address)
        return tl::unexpected(address.error());
    const UniqueFd probe = newSocket();
    if (::connect(probe.get(), address->get(), address->length) == 0 || errno != ECONNREFUSED)
        return fail("somebody is listening there", path);
    if (::unlink(path.c_str()) != 0)
        return systemError("the old socket cannot be removed", path);
    return {};
}

} // namespace

Result<Listener> Listener::open(const std::string& address) {
    const auto name = socketName(address);
    if (!name)
        return tl::unexpected(name.error());
    if (auto listener = inherited(name->text); listener)
        return std::move(*listener);
    return name->kind == SocketName::Kind::file ? openFile(name->text) : openAbstract(*name);
}

std::optional<Listener> Listener::inherited(const std::string& path) {
    constexpr int unsetEnvironment = 1;
    constexpr int isListening = 1;
    const int count = ::sd_listen_fds(unsetEnvironment);
    for (int fd = SD_LISTEN_FDS_START; fd < SD_LISTEN_FDS_START + count; ++fd) {
        UniqueFd socket(fd);
        if (::sd_is_socket_unix(fd, SOCK_STREAM, isListening, path.c_str(), 0) <= 0)
            continue;
        ::fcntl(fd, F_SETFL, O_NONBLOCK);
        Listener listener;
        listener.m_socket = std::move(socket);
        return listener;
    }
    return std::nullopt;
}

Result<Listener> Listener::openFile(const std::string& path) {
    const std::string folder = folderOf(path);
    if (auto own = requireOwnFolder(folder); !own)
        return tl::unexpected(own.error());
    auto held = lock(path);
    if (!held)
        return tl::unexpected(held.error());
    if (auto removed = removeStaleSocket(path); !removed)
        return tl::unexpected(removed.error());
    auto socket = bindAndListen({path, SocketName::Kind::file});
    if (!socket)
        return tl::unexpected(socket.error());
    Listener listener;
    listener.m_socket = std::move(*socket);
    listener.m_lock = std::move(*held);
    listener.m_path = path;
    if (::chmod(path.c_str(), folder == systemFolder ? publicSocket : privateSocket) != 0)
        return systemError("the socket's mode cannot be set", path);
    return listener;
}

Result<Listener> Listener::openAbstract(const SocketName& name) {
    auto socket = bindAndListen(name);
    if (!socket)
        return tl::unexpected(socket.error());
    Listener listener;
    listener.m_socket = std::move(*socket);
    return listener;
}

Listener::~Listener() {
    if (m_socket.isOpen() && !m_path.empty())
        ::unlink(m_path.c_str());
}

} // namespace tamsel
