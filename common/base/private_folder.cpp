#include "base/private_folder.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

namespace tamsel {

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

} // namespace

Result<void> makePrivateFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
            return fail("the folder cannot be made: " + reason(errno), folder);
        if (end == std::string::npos)
            break;
    }
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return fail("the folder cannot be used: " + reason(errno), path);
    if (!S_ISDIR(info.st_mode))
        return fail("is not a folder", path);
    return {};
}

} // namespace tamsel
