#pragma once

#include "base/unique_fd.h"

#include <functional>
#include <list>
#include <mutex>
#include <pthread.h>

namespace tamsel {

/// Calls of the kernel that take tens of milliseconds (closing or freeing a node, making or
/// removing a virtual device), away from the loop: each on a thread of its own, so that many take
/// no longer than one.
class Helpers final {
public:
    Helpers();
    Helpers(const Helpers&) = delete;
    Helpers& operator=(const Helpers&) = delete;
    /// Waits for all of them; what was to be done afterwards is not.
    ~Helpers();

    /// `work` touches nothing that it does not own; `done` runs in finish().
    void run(
        std::function<void()> work, std::function<void()> done = [] {});

    /// The descriptor to wait on for reading: some have ended.
    int fd() const { return m_ended.get(); }
    /// Runs what is to be done after those that have ended.
    void finish();
    bool isIdle() const { return m_jobs.empty(); }

private:
    struct Job {
        Helpers* owner = nullptr;
        std::function<void()> work;
        std::function<void()> done;
        pthread_t thread{};
        bool hasThread = false;
        bool hasEnded = false;
    };

    static void* runJob(void* job);

    UniqueFd m_ended;
    std::mutex m_mutex; ///< guards `hasEnded`
    std::list<Job> m_jobs;
};

} // namespace tamsel
