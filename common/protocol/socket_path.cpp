#include "protocol/socket_path.h"

#include <cstdlib>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel::protocol {

namespace {

constexpr const char* systemSocket = "/run/tamsel/daemon.sock";
constexpr const char* unitFolders[] = {"/etc/systemd/system", "/run/systemd/system",
                                       "/usr/local/lib/systemd/system", "/usr/lib/systemd/system",
                                       "/lib/systemd/system"};

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// D-Bus address escaping: everything outside [-0-9A-Za-z_/.\*] as %XX.
std::string escaped(std::string_view path) {
    constexpr std::string_view plain =
        "-_/.\\*0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view digits = "0123456789abcdef";
    std::string out;
    for (const char c : path) {
        if (plain.find(c) != std::string_view::npos) {
            out += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out += '%';
            out += digits[byte >> 4U];
            out += digits[byte & 15U];
        }
    }
    return out;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

bool systemUnitInstalled() {
    for (const char* folder : unitFolders) {
        const std::string unit = std::string(folder) + "/app.tamsel.daemon.service";
        if (::access(unit.c_str(), F_OK) == 0)
            return true;
    }
    return false;
}

std::string userRuntimeFolder() {
    if (std::string folder = environment("XDG_RUNTIME_DIR"); !folder.empty())
        return folder;
    // A bare login without a session manager has no runtime folder; a private one under /tmp
    // stands in, unless somebody else has taken its name.
    std::string folder = "/tmp/tamsel-runtime-" + std::to_string(::getuid());
    struct stat info {};
    if (::lstat(folder.c_str(), &info) == 0 &&
        (!S_ISDIR(info.st_mode) || info.st_uid != ::getuid() || (info.st_mode & 077U) != 0))
        return {};
    return folder;
}

std::string userDaemonAddress() {
    const std::string folder = userRuntimeFolder();
    return folder.empty() ? std::string() : "unix:path=" + escaped(folder + "/tamsel/daemon.sock");
}

std::string daemonAddress() {
    if (std::string address = environment("TAMSEL_DAEMON_ADDRESS"); !address.empty())
        return address;
    return systemUnitInstalled() ? std::string("unix:path=") + systemSocket : userDaemonAddress();
}

std::string socketFile(const std::string& address) {
    constexpr std::string_view prefix = "unix:path=";
    if (!std::string_view(address).starts_with(prefix))
        return {};
    std::string path;
    for (std::size_t i = prefix.size(); i < address.size(); ++i) {
        if (address[i] == ',' || address[i] == ';')
            break;
        if (address[i] != '%') {
            path += address[i];
            continue;
        }
        const int high = i + 1 < address.size() ? hexDigit(address[i + 1]) : -1;
        const int low = i + 2 < address.size() ? hexDigit(address[i + 2]) : -1;
        if (high < 0 || low < 0)
            return {};
        path += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return path;
}

} // namespace tamsel::protocol
