#pragma once

#include "base/process.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <sys/types.h>

namespace tamsel {

/// A running process, held by a descriptor, so that a signal never reaches another process that
/// has got its number since. Main thread.
class WatchedProcess final {
public:
    /// Null when there is no such process. `ended`, if any, runs later, once, when it has ended.
    static std::unique_ptr<WatchedProcess> open(pid_t pid, std::function<void()> ended = {});
    ~WatchedProcess();
    WatchedProcess(const WatchedProcess&) = delete;
    WatchedProcess& operator=(const WatchedProcess&) = delete;

    pid_t pid() const { return m_pid; }
    bool isRunning() const;
    void signal(int number) const;
    /// Blocks until the process has ended, at most that long; whether it has.
    bool waitForEnd(std::chrono::milliseconds limit) const;

private:
    WatchedProcess(pid_t pid, UniqueFd fd) : m_pid(pid), m_fd(std::move(fd)) {}

    pid_t m_pid;
    UniqueFd m_fd;
    QSocketNotifier* m_notifier = nullptr; ///< deleted later, as it may be running
};

} // namespace tamsel
