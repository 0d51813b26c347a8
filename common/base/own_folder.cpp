#include "base/own_folder.h"

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
/// Folders inside folders that are gone into; each costs a descriptor.
constexpr int maxDepth = 200;

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

std::string reason(int error) {
    return std::generic_category().message(error);
}

std::string parentOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// The names in a folder; `folder` stays the caller's.
std::vector<std::string> namesIn(int folder) {
    std::vector<std::string> names;
    const int fd = ::openat(folder, ".", folderFlags);
    const Directory directory(fd < 0 ? nullptr : ::fdopendir(fd));
    if (!directory && fd >= 0)
        ::close(fd);
    for (const dirent* entry = nullptr; directory && (entry = ::readdir(directory.get()));) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

/// Opens a folder in a folder, also one that its owner has shut for himself.
UniqueFd openInside(int folder, const std::string& name) {
    UniqueFd inside(::openat(folder, name.c_str(), folderFlags));
    if (!inside.isOpen() && errno == EACCES &&
        ::fchmodat(folder, name.c_str(), S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0)
        inside = UniqueFd(::openat(folder, name.c_str(), folderFlags));
    return inside;
}

bool empty(int folder, dev_t fileSystem, int depth) {
    bool isEmpty = depth < maxDepth;
    for (const std::string& name : isEmpty ? namesIn(folder) : std::vector<std::string>()) {
        if (::unlinkat(folder, name.c_str(), 0) == 0)
            continue;
        const UniqueFd inside = openInside(folder, name);
        struct stat info {};
        const bool isOurs = inside.isOpen() && ::fstat(inside.get(), &info) == 0 &&
                            info.st_dev == fileSystem && info.st_uid == ::geteuid() &&
                            ::fchmod(inside.get(), S_IRWXU) == 0;
        isEmpty = isOurs && empty(inside.get(), fileSystem, depth + 1) &&
                  ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0 && isEmpty;
    }
    return isEmpty;
}

} // namespace

Result<OwnFolder> OwnFolder::open(const std::string& path, Lock lock) {
    UniqueFd parent(::open(parentOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    UniqueFd folder(::openat(parent.get(), nameOf(path).c_str(), folderFlags));
    struct stat info {};
    if (!folder.isOpen() || ::fstat(folder.get(), &info) != 0)
        return fail(reason(errno), path);
    if (info.st_uid != ::geteuid() || (info.st_mode & 0777) != S_IRWXU)
        return fail("is not a folder of this user's alone", path);
    if (::flock(folder.get(), (lock == Lock::shared ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0)
        return fail("is in use", path);
    return OwnFolder(path, std::move(parent), std::move(folder));
}

Result<OwnFolder> OwnFolder::make(const std::string& prefix) {
    std::string path = prefix + "XXXXXX";
    if (!::mkdtemp(path.data()))
        return fail(reason(errno), parentOf(path));
    return open(path, Lock::shared);
}

bool OwnFolder::remove() const {
    struct stat info {};
    return ::fstat(m_folder.get(), &info) == 0 && empty(m_folder.get(), info.st_dev, 0) &&
           ::unlinkat(m_parent.get(), nameOf(m_path).c_str(), AT_REMOVEDIR) == 0;
}

std::vector<std::string> foldersWithPrefix(const std::string& prefix) {
    const std::string parent = parentOf(prefix);
    const UniqueFd folder(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::vector<std::string> paths;
    for (const std::string& name : namesIn(folder.get())) {
        struct stat info {};
        if (name.starts_with(nameOf(prefix)) &&
            ::fstatat(folder.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(info.st_mode))
            paths.push_back(prefix.substr(0, prefix.size() - nameOf(prefix).size()) + name);
    }
    return paths;
}

} // namespace tamsel
