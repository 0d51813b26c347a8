#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <string>
#include <vector>

namespace tamsel {

/// A folder that this user has made and nobody else may enter (mode 0700), held by descriptor and
/// locked. What others put in its place, or lead to from it, is never taken for it. Any thread.
class OwnFolder final {
public:
    /// Several may share a folder; one alone may take it away.
    enum class Lock { shared, exclusive };

    /// Fails, without waiting, for a link, for a folder of somebody else's or one that others may
    /// enter, and when somebody holds a lock that this one can't stand beside.
    static Result<OwnFolder> open(const std::string& path, Lock lock);
    /// A new one, whose name begins with `prefix`; its lock is shared.
    static Result<OwnFolder> make(const std::string& prefix);

    const std::string& path() const { return m_path; }
    /// For calls that are relative to the folder.
    int fd() const { return m_folder.get(); }

    /// Removes the folder with everything in it: links, not what they lead to, and nothing of
    /// another file system or of somebody else. False when something is left.
    bool remove() const;

private:
    OwnFolder(std::string path, UniqueFd parent, UniqueFd folder)
        : m_path(std::move(path)), m_parent(std::move(parent)), m_folder(std::move(folder)) {}

    std::string m_path;
    UniqueFd m_parent;
    UniqueFd m_folder;
};

/// The paths of what stands in the prefix's folder under names that begin as the prefix does, such
/// as "/home/me/.tamsel.update-"; links left out. Whose they are is OwnFolder's to find out.
std::vector<std::string> foldersWithPrefix(const std::string& prefix);

} // namespace tamsel
