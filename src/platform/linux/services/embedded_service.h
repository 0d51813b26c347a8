#pragma once

#include "platform/linux/process/watched_process.h"
#include "platform/main_queue.h"
#include "platform/service_management.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tamsel {

/// A companion program that the application runs itself, per user, where no unit is installed for
/// it. Registered means running: the process is a session of its own and outlives a crash of the
/// application, whose next run finds it. That there is one at most is the program's own care (it
/// holds a lock); one that ends since another one holds it is no failure.
class EmbeddedService final : public ServiceHandle {
public:
    struct Program {
        std::optional<QString> path;
        /// Finds a running one, whoever has started it.
        std::function<std::optional<pid_t>()> findRunning;
        /// Removes what a killed one has left.
        std::function<void()> cleanUp = [] {};
    };

    /// A program that ends by itself within this time has failed to start.
    static constexpr std::chrono::milliseconds settleTime{10'000};
    /// From asking it to end to killing it.
    static constexpr std::chrono::milliseconds graceTime{1000};

    EmbeddedService(Program program, MainQueue& queue);

    ServiceStatus status() override;
    ServiceResult registerService() override;
    ServiceResult unregisterService() override;

    /// Asks the program to end if this object has started it.
    void askOwnToEnd();
    /// For the end of the application: waits until the own program has ended, kills it if need be.
    void awaitOwnEnd();

private:
    bool isRunning();
    bool findsRunning();
    ServiceResult start();
    void childEnded(pid_t pid, int exitStatus);
    void processEnded();

    Program m_program;
    MainQueue& m_queue;
    std::unique_ptr<WatchedProcess> m_process;
    pid_t m_child = 0; ///< the process that this object has started, until it has ended
    bool m_isEnding = false;
    bool m_startsAfterEnd = false;
    bool m_isSettling = false;
    TaskHandle m_settled;
    TaskHandle m_kill;
};

} // namespace tamsel
