#include "copies/exchange.h"

#include "copies/small_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr const char* infoFile = "/share/tamsel/Info.plist";
constexpr const char* rememberedFile = "before";

UniqueFd openFolder(const std::string& folder) {
    return UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::optional<std::string> infoOf(const std::string& copy) {
    return readSmallFile(AT_FDCWD, copy + infoFile);
}

} // namespace

std::string stagingPrefix(const std::string& copy) {
    const auto slash = copy.rfind('/') + 1;
    return copy.substr(0, slash) + '.' + copy.substr(slash) + ".update-";
}

std::string unpackedIn(const OwnFolder& staging) {
    return staging.path() + "/new";
}

Result<void> exchangeCopies(const std::string& one, const std::string& other) {
    const auto folder = openFolder(other);
    // What was unpacked is on the disk before it is in place.
    if (folder.isOpen())
        ::syncfs(folder.get());
    if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) != 0)
        return fail("can't be replaced: " + std::generic_category().message(errno), one);
    const auto parent = openFolder(one.substr(0, one.rfind('/') + 1));
    if (parent.isOpen())
        ::fsync(parent.get());
    return {};
}

Result<void> rememberCopy(const OwnFolder& staging, const std::string& copy) {
    const auto info = infoOf(copy);
    if (!info)
        return fail("does not say which version it is", copy);
    return writeSmallFile(staging.fd(), rememberedFile, *info);
}

bool isAsRemembered(const OwnFolder& staging, const std::string& copy) {
    const auto info = infoOf(copy);
    return info && info == readSmallFile(staging.fd(), rememberedFile);
}

} // namespace tamsel
