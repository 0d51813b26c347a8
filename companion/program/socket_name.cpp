#include "program/socket_name.h"

#include "protocol/socket_path.h"

#include <cstddef>
#include <cstring>
#include <string_view>

namespace tamsel {

Result<SocketName> socketName(const std::string& address) {
    constexpr std::string_view pathPrefix = "unix:path=";
    constexpr std::string_view abstractPrefix = "unix:abstract=";
    const bool isAbstract = address.starts_with(abstractPrefix);
    // One rule for a value's escapes and end, whatever its key.
    const std::string name = protocol::socketFile(
        isAbstract ? std::string(pathPrefix) + address.substr(abstractPrefix.size()) : address);
    if (name.find('\0') != std::string::npos)
        return fail("the address has a NUL in it");
    if (isAbstract && !name.empty())
        return SocketName{name, SocketName::Kind::abstractName};
    if (!isAbstract && !name.empty() && name.front() == '/' && name.back() != '/')
        return SocketName{name, SocketName::Kind::file};
    return fail("is not the address of a socket (unix:path=/... or unix:abstract=...)",
                address.empty() ? "the daemon's address" : address);
}

Result<KernelAddress> kernelAddress(const SocketName& name) {
    const bool isAbstract = name.kind == SocketName::Kind::abstractName;
    const std::string bytes = isAbstract ? '\0' + name.text : name.text;
    KernelAddress kernel;
    if (bytes.size() >= sizeof kernel.address.sun_path)
        return fail("the socket's name is too long", name.text);
    kernel.address.sun_family = AF_UNIX;
    std::memcpy(kernel.address.sun_path, bytes.data(), bytes.size());
    kernel.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + bytes.size() +
                                           (isAbstract ? 0 : 1));
    return kernel;
}

UniqueFd newSocket() {
    return UniqueFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

} // namespace tamsel
