#include "copies/trial.h"

#include "copies/exchange.h"
#include "copies/small_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr const char* noteFile = "trial";
constexpr const char* begunFile = "begun";

/// Which folder it is, wherever it stands.
std::optional<std::string> identityOf(const std::string& folder) {
    struct stat info {};
    if (::lstat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    return std::to_string(info.st_dev) + ':' + std::to_string(info.st_ino);
}

/// Cuts the first line off.
std::string takeLine(std::string& text) {
    const auto end = text.find('\n');
    std::string line = text.substr(0, end);
    text.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

} // namespace

Result<void> noteTrial(const OwnFolder& staging, const std::string& tree,
                       const std::string& version) {
    const auto identity = identityOf(tree);
    const std::string name = tree.substr(tree.rfind('/') + 1);
    if (!identity || tree != unpackedIn(staging) + '/' + name)
        return fail("is no copy in the staging folder", tree);
    if ((name + version).find('\n') != std::string::npos)
        return fail("can't be noted", tree);
    return writeSmallFile(staging.fd(), noteFile, *identity + '\n' + name + '\n' + version + '\n');
}

std::optional<Trial> trialOf(const OwnFolder& staging, const std::string& copy) {
    auto note = readSmallFile(staging.fd(), noteFile);
    if (!note || takeLine(*note) != identityOf(copy))
        return std::nullopt;
    Trial trial;
    trial.tree = unpackedIn(staging) + '/' + takeLine(*note);
    trial.version = takeLine(*note);
    trial.hasBegun = ::faccessat(staging.fd(), begunFile, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    return trial;
}

Result<void> beginTrial(const OwnFolder& staging) {
    return writeSmallFile(staging.fd(), begunFile, {});
}

void endTrial(const OwnFolder& staging) {
    ::unlinkat(staging.fd(), noteFile, 0);
}

} // namespace tamsel
