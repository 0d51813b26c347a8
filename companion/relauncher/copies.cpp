#include "relauncher/copies.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

UniqueFd openFolder(const std::string& folder) {
    return UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

} // namespace

Result<void> exchange(const std::string& one, const std::string& other) {
    const auto folder = openFolder(other);
    // What was unpacked is on the disk before it is in place.
    if (folder.isOpen())
        ::syncfs(folder.get());
    if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) != 0)
        return fail("can't be replaced: " + std::generic_category().message(errno), one);
    const auto parent = openFolder(std::filesystem::path(one).parent_path());
    if (parent.isOpen())
        ::fsync(parent.get());
    return {};
}

UniqueFd lockFolder(const std::string& folder) {
    UniqueFd fd = openFolder(folder);
    if (fd.isOpen())
        ::flock(fd.get(), LOCK_SH | LOCK_NB);
    return fd;
}

} // namespace tamsel
