#include "helper/access_rule.h"

#include "base/unique_fd.h"
#include "helper/helper.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel::driver {

namespace {

tl::unexpected<Error> failBySystem(const char* what, const std::string& where) {
    const int code = errno;
    return fail(what + std::generic_category().message(code), where);
}

std::string folderOf(const std::string& file) {
    return file.substr(0, file.rfind('/'));
}

/// The folder and the one above it; where those are missing too, this is no system with udev.
Result<void> makeFolder(const std::string& folder) {
    for (const std::string& path : {folderOf(folder), folder}) {
        if (::mkdir(path.c_str(), 0755) != 0 && errno != EEXIST)
            return failBySystem("the folder can't be made: ", path);
    }
    return {};
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Nothing of the folder's change may be lost in a power cut after this program has reported it.
void syncFolder(const std::string& folder) {
    const UniqueFd fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd.isOpen())
        ::fsync(fd.get());
}

Result<void> moveInto(const std::string& temporary, const std::string& file) {
    if (::rename(temporary.c_str(), file.c_str()) != 0) {
        auto failure = failBySystem("can't be replaced: ", file);
        ::unlink(temporary.c_str());
        return failure;
    }
    syncFolder(folderOf(file));
    return {};
}

/// udev reads names that end in ".rules" only.
std::string temporaryName(const std::string& file) {
    return file + ".XXXXXX";
}

Result<void> coverPackagedRule(const std::string& file) {
    if (auto made = makeFolder(folderOf(file)); !made)
        return made;
    const std::string temporary = temporaryName(file);
    if (::unlink(temporary.c_str()) != 0 && errno != ENOENT)
        return failBySystem("is in the way: ", temporary);
    if (::symlink("/dev/null", temporary.c_str()) != 0)
        return failBySystem("can't be made: ", temporary);
    return moveInto(temporary, file);
}

} // namespace

Result<void> installAccessRule() {
    const std::string file = underRoot(accessRuleFile);
    if (auto made = makeFolder(folderOf(file)); !made)
        return made;
    std::string temporary = temporaryName(file);
    const UniqueFd fd(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!fd.isOpen())
        return failBySystem("a file can't be made: ", folderOf(file));
    if (!writeAll(fd.get(), accessRuleText) || ::fchmod(fd.get(), 0644) != 0 ||
        ::fsync(fd.get()) != 0) {
        auto failure = failBySystem("can't be written: ", temporary);
        ::unlink(temporary.c_str());
        return failure;
    }
    return moveInto(temporary, file);
}

Result<void> removeAccessRule() {
    const std::string file = underRoot(accessRuleFile);
    if (::access(underRoot(packagedRuleFile).c_str(), F_OK) == 0)
        return coverPackagedRule(file);
    if (::unlink(file.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR)
        return failBySystem("can't be removed: ", file);
    syncFolder(folderOf(file));
    return {};
}

} // namespace tamsel::driver
