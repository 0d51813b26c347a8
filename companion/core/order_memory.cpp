#include "core/order_memory.h"

#include "base/private_folder.h"
#include "base/unique_fd.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr std::string_view stopped = "stopped\n";
constexpr std::string_view started = "started\n";

tl::unexpected<Error> systemError(const std::string& what, const std::string& path) {
    return fail(what + ": " + std::generic_category().message(errno), path);
}

Result<void> syncFolder(const std::string& path) {
    const UniqueFd folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen() || ::fsync(folder.get()) != 0)
        return systemError("cannot be synced", path);
    return {};
}

Result<void> writeAndSync(const std::string& path, std::string_view text) {
    const UniqueFd file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return systemError("cannot be made", path);
    if (::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        ::fsync(file.get()) != 0)
        return systemError("cannot be written", path);
    return {};
}

} // namespace

Order FileOrderMemory::load() const {
    const UniqueFd file(::open(FileOrderMemory::file().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    std::array<char, stopped.size() + 1> buffer{};
    const ssize_t count = file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : -1;
    const std::string_view text(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    return text == stopped ? Order::stop : Order::start;
}

Result<void> FileOrderMemory::save(Order order) {
    if (auto made = makePrivateFolders(m_folder); !made)
        return made;
    const std::string fresh = file() + ".new";
    if (auto written = writeAndSync(fresh, order == Order::stop ? stopped : started); !written)
        return written;
    if (::rename(fresh.c_str(), file().c_str()) != 0)
        return systemError("cannot be replaced", file());
    return syncFolder(m_folder);
}

Result<std::string> defaultStateFolder() {
    const auto absolute = [](const char* name) {
        const char* const value = std::getenv(name);
        return std::string(value && *value == '/' ? value : "");
    };
    if (const std::string state = absolute("XDG_STATE_HOME"); !state.empty())
        return state + "/tamsel";
    if (const std::string home = absolute("HOME"); !home.empty())
        return home + "/.local/state/tamsel";
    return fail(
        "there is no folder for the daemon's state: neither XDG_STATE_HOME nor HOME is set");
}

} // namespace tamsel
