#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <string>

namespace tamsel {

/// Makes the agent the only one of its user: an exclusive lock on "agent.lock" in a folder of the
/// user's own, with the process id as text inside. The file stays when the lock goes, with the
/// process however that ends; what it says counts only while it is locked.
class AgentLock final {
public:
    /// Makes the folder (0700) when it is missing. Fails when another agent holds the lock and
    /// when the folder or the file is not this user's to use.
    static Result<AgentLock> acquire(const std::string& folder);

private:
    explicit AgentLock(UniqueFd file) : m_file(std::move(file)) {}

    UniqueFd m_file;
};

} // namespace tamsel
