#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

// The one way to start a program and to await its end.

namespace tamsel {

/// A descriptor of a child: `number` there is a copy of `source` here, which stays the caller's.
struct ChildDescriptor {
    int number;
    int source;
};

/// What to start. The child starts with no signal blocked or ignored, and with no descriptor but
/// its standard streams and those that it is given.
struct ChildProgram {
    enum class Session { own, callers };

    std::string program; ///< looked up in PATH unless it has a slash
    std::vector<std::string> arguments = {};
    /// A standard stream that is not among them, or whose source is closed, is /dev/null.
    std::vector<ChildDescriptor> descriptors = {};
    /// Every "NAME=value" of the child; this process's own environment without one.
    std::optional<std::vector<std::string>> environment = {};
    /// One of its own outlives the terminal and the session of this process.
    Session session = Session::own;
};

/// Starts it: its process id, which the caller has to reap, or why it can't be started. Any thread.
Result<pid_t> spawn(const ChildProgram& child);

/// Waits for a child of this process: its exit status, 128 + N after signal N, -1 when it is none.
int reap(pid_t child);

/// A descriptor that becomes readable when the process ends; closed when there is no such process.
UniqueFd openProcess(pid_t process);

/// Blocks until the process behind an open descriptor has ended, at most that long; whether it has.
bool hasEndedWithin(const UniqueFd& process, std::chrono::milliseconds limit);

/// Two ends that no child gets unless it is given one.
struct Pipe {
    UniqueFd reading;
    UniqueFd writing;

    static Result<Pipe> make();
};

} // namespace tamsel
