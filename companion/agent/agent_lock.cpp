#include "agent/agent_lock.h"

#include "base/private_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

tl::unexpected<Error> systemError(const char* what, const std::string& place) {
    return fail(std::string(what) + ": " + std::generic_category().message(errno), place);
}

} // namespace

Result<AgentLock> AgentLock::acquire(const std::string& folder) {
    if (auto made = makePrivateFolders(folder); !made)
        return tl::unexpected(made.error());
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0)
        return systemError("the folder cannot be used", folder);
    if (info.st_uid != ::geteuid())
        return fail("the folder belongs to another user", folder);
    const std::string path = folder + "/agent.lock";
    UniqueFd file(
        ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return systemError("cannot be opened", path);
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return fail("is not a file", path);
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? fail("another agent of this user is running", path)
                                    : systemError("cannot be locked", path);
    const std::string pid = std::to_string(::getpid()) + "\n";
    if (::ftruncate(file.get(), 0) != 0 ||
        ::write(file.get(), pid.data(), pid.size()) != static_cast<ssize_t>(pid.size()))
        return systemError("cannot be written", path);
    return AgentLock(std::move(file));
}

} // namespace tamsel
