#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <cstdint>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace tamsel {

/// What a unix socket is called: an absolute path, or an abstract name (without its leading NUL).
struct SocketName {
    enum class Kind : std::uint8_t { file, abstractName };

    std::string text;
    Kind kind = Kind::file;
};

/// The name in a D-Bus address "unix:path=/..." or "unix:abstract=...", its escapes undone.
Result<SocketName> socketName(const std::string& address);

/// The kernel's form of a name.
struct KernelAddress {
    sockaddr_un address{};
    socklen_t length = 0;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
};

/// Fails when the name is too long for the kernel.
Result<KernelAddress> kernelAddress(const SocketName& name);

/// A unix stream socket, non-blocking; not open on failure, errno then says why.
UniqueFd newSocket();

} // namespace tamsel
