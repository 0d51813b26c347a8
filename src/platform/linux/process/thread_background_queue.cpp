#include "platform/linux/process/thread_background_queue.h"

namespace tamsel {

namespace {

/// Tasks wait (for a prompt, for a disk) more than they work.
constexpr int maxThreads = 4;

} // namespace

ThreadBackgroundQueue::ThreadBackgroundQueue(std::function<void()> interrupt)
    : m_interrupt(std::move(interrupt)) {
    m_threads.setMaxThreadCount(maxThreads);
}

ThreadBackgroundQueue::~ThreadBackgroundQueue() {
    finish();
}

void ThreadBackgroundQueue::run(std::function<void()> task) {
    if (!m_hasFinished)
        m_threads.start(std::move(task));
}

void ThreadBackgroundQueue::finish() {
    m_hasFinished = true;
    m_threads.clear();
    m_interrupt();
    m_threads.waitForDone();
}

} // namespace tamsel
