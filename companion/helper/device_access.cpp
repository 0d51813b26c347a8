#include "helper/device_access.h"

#include <cerrno>
#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>

namespace tamsel::driver {

namespace {

tl::unexpected<Error> failBySystem(const std::string& node) {
    const int code = errno;
    return fail("access can't be changed: " + std::generic_category().message(code), node);
}

} // namespace

Result<void> giveNodeToGroup(const std::string& node, const char* group) {
    const ::group* entry = ::getgrnam(group);
    if (!entry)
        return fail("access takes effect after a restart", node);
    if (::lchown(node.c_str(), ::geteuid(), entry->gr_gid) != 0 || ::chmod(node.c_str(), 0660) != 0)
        return failBySystem(node);
    return {};
}

Result<void> takeNodeBack(const std::string& node) {
    // The list first: while there is one, the mode's group bits are its mask.
    if (::lremovexattr(node.c_str(), "system.posix_acl_access") != 0) {
        if (errno == ENOENT)
            return {};
        if (errno != ENODATA && errno != ENOTSUP)
            return failBySystem(node);
    }
    if (::lchown(node.c_str(), ::geteuid(), ::getegid()) != 0 || ::chmod(node.c_str(), 0600) != 0)
        return failBySystem(node);
    return {};
}

} // namespace tamsel::driver
