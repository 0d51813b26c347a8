#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <utility>

namespace tamsel {

/// A pending delayed or repeating task. Cancelling it, assigning over it or destroying it takes
/// the task back; one that has already run is not harmed. Move-only, main thread only.
class TaskHandle final {
public:
    TaskHandle() = default;
    explicit TaskHandle(std::function<void()> cancel) : m_cancel(std::move(cancel)) {}
    TaskHandle(TaskHandle&& other) noexcept : m_cancel(std::exchange(other.m_cancel, nullptr)) {}
    TaskHandle& operator=(TaskHandle&& other) noexcept {
        if (this != &other) {
            cancel();
            m_cancel = std::exchange(other.m_cancel, nullptr);
        }
        return *this;
    }
    TaskHandle(const TaskHandle&) = delete;
    TaskHandle& operator=(const TaskHandle&) = delete;
    ~TaskHandle() { cancel(); }

    void cancel() {
        if (auto cancelTask = std::exchange(m_cancel, nullptr))
            cancelTask();
    }
    /// A task was stored and not cancelled (it may have run since).
    explicit operator bool() const { return static_cast<bool>(m_cancel); }

private:
    std::function<void()> m_cancel;
};

/// The main thread's queue of work: the only source of delays and of "later" in the program.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Runs `task` on a later turn of the main loop, in the order of the calls. Any thread may
    /// call. `context` lives on the main thread; when it is destroyed first, the task is dropped
    /// (null: never dropped).
    virtual void async(QObject* context, std::function<void()> task) = 0;

    /// Runs `task` once after `delay`. Main thread.
    [[nodiscard]] virtual TaskHandle after(std::chrono::milliseconds delay,
                                           std::function<void()> task) = 0;

    /// The same for a task that nobody takes back; it is dropped when `context` is destroyed first.
    virtual void after(QObject* context, std::chrono::milliseconds delay,
                       std::function<void()> task) = 0;

    /// Runs `task` every `interval`, first after one interval. Main thread.
    [[nodiscard]] virtual TaskHandle every(std::chrono::milliseconds interval,
                                           std::function<void()> task) = 0;
};

} // namespace tamsel
