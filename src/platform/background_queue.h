#pragma once

#include <functional>

namespace tamsel {

/// Work that must not hold up the main thread, at the priority of something the user waits for.
class BackgroundQueue {
public:
    virtual ~BackgroundQueue() = default;

    /// Runs `task` on some other thread; tasks may run side by side. Any thread may call. What the
    /// task uses must live until finish(); a task that has not begun by then never runs.
    virtual void run(std::function<void()> task) = 0;
    /// Waits for the tasks that have begun, waking those that may be blocked for long, and runs
    /// none from then on. Main thread.
    virtual void finish() = 0;
};

} // namespace tamsel
