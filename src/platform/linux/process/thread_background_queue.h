#pragma once

#include "platform/background_queue.h"

#include <QThreadPool>

#include <atomic>

namespace tamsel {

/// Background work on a few threads, which end when they have been idle. The kernel schedules them
/// like the main thread. The end calls `interrupt`, which has to wake tasks that may be blocked for
/// long.
class ThreadBackgroundQueue final : public BackgroundQueue {
public:
    explicit ThreadBackgroundQueue(std::function<void()> interrupt);
    ~ThreadBackgroundQueue() override;

    void run(std::function<void()> task) override;
    void finish() override;

private:
    QThreadPool m_threads;
    std::function<void()> m_interrupt;
    std::atomic<bool> m_hasFinished = false;
};

} // namespace tamsel
