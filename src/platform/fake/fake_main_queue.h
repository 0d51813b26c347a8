#pragma once

#include "platform/clock.h"
#include "platform/main_queue.h"

#include <QPointer>

#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace tamsel {

/// The main queue in virtual time: nothing runs until a test says so. async() may come from any
/// thread; the rest is for the test's own thread.
class FakeMainQueue final : public MainQueue {
public:
    using Milliseconds = std::chrono::milliseconds;

    void async(QObject* context, std::function<void()> task) override;
    TaskHandle after(Milliseconds delay, std::function<void()> task) override;
    void after(QObject* context, Milliseconds delay, std::function<void()> task) override;
    TaskHandle every(Milliseconds interval, std::function<void()> task) override;

    /// Runs everything queued, also what is queued meanwhile.
    void runPending();
    /// Lets time pass, running what falls due on the way, in order.
    void advance(Milliseconds duration);

    Milliseconds elapsed() const { return m_now; }
    std::size_t pendingTimers() const { return m_timers->size(); }

private:
    struct Async {
        bool hasContext = false;
        QPointer<QObject> context;
        std::function<void()> task;
    };
    struct Timer {
        Milliseconds interval{0}; ///< zero: once
        std::shared_ptr<std::function<void()>> task;
    };
    /// By due time and order of scheduling; shared with the handles, which may outlive the queue.
    using Timers = std::map<std::pair<Milliseconds, std::uint64_t>, Timer>;

    std::uint64_t add(Milliseconds delay, Milliseconds interval, std::function<void()> task);
    std::function<void()> removal(std::uint64_t id) const;

    std::mutex m_mutex;
    std::deque<Async> m_async;
    std::shared_ptr<Timers> m_timers = std::make_shared<Timers>();
    std::uint64_t m_nextId = 0;
    Milliseconds m_now{0};
};

/// A clock that stands still until it is set; the uptime follows a queue's virtual time.
class FakeClock final : public Clock {
public:
    explicit FakeClock(const FakeMainQueue& queue) : m_queue(queue) {}

    std::chrono::system_clock::time_point wallTime{};
    double uptimeAtStart = 1000;
    QTimeZone zone = QTimeZone::utc();

    std::chrono::system_clock::time_point now() const override {
        return wallTime + m_queue.elapsed();
    }
    double systemUptime() const override {
        return uptimeAtStart + std::chrono::duration<double>(m_queue.elapsed()).count();
    }
    QTimeZone timeZone() const override { return zone; }

private:
    const FakeMainQueue& m_queue;
};

} // namespace tamsel
