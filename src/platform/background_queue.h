#pragma once

#include <functional>

namespace tamsel {

/// Work that must not hold up the main thread, at the priority of something the user waits for.
class BackgroundQueue {
public:
    virtual ~BackgroundQueue() = default;

    /// Runs `task` on some other thread; tasks may run side by side. Any thread may call. What the
    /// task uses must outlive the queue; a task that has not begun when the queue is destroyed
    /// never runs.
    virtual void run(std::function<void()> task) = 0;
};

} // namespace tamsel
