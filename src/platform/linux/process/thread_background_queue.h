#pragma once

#include "platform/background_queue.h"

#include <QThreadPool>

namespace tamsel {

/// Background work on a few threads, which end when they have been idle. The kernel schedules them
/// like the main thread. Destroying the queue calls `interrupt`, which has to wake tasks that may
/// be blocked for long, and waits for the tasks that have begun.
class ThreadBackgroundQueue final : public BackgroundQueue {
public:
    explicit ThreadBackgroundQueue(std::function<void()> interrupt);
    ~ThreadBackgroundQueue() override;

    void run(std::function<void()> task) override;

private:
    QThreadPool m_threads;
    std::function<void()> m_interrupt;
};

} // namespace tamsel
