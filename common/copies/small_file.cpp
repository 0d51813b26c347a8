#include "copies/small_file.h"

#include "base/unique_fd.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr std::size_t maxSize = std::size_t{64} * 1024;

} // namespace

std::optional<std::string> readSmallFile(int folder, const std::string& name) {
    const UniqueFd file(
        ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return std::nullopt;
    std::string text(maxSize + 1, '\0');
    std::size_t size = 0;
    for (;;) {
        const auto got = ::read(file.get(), text.data() + size, text.size() - size);
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    text.resize(size);
    return size > maxSize ? std::nullopt : std::optional(text);
}

Result<void> writeSmallFile(int folder, const std::string& name, const std::string& text) {
    const std::string fresh = name + ".new";
    const UniqueFd file(::openat(folder, fresh.c_str(),
                                 O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    const bool isWritten =
        file.isOpen() &&
        ::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        ::fsync(file.get()) == 0 && ::renameat(folder, fresh.c_str(), folder, name.c_str()) == 0 &&
        ::fsync(folder) == 0;
    if (!isWritten)
        return fail(std::generic_category().message(errno), name);
    return {};
}

} // namespace tamsel
