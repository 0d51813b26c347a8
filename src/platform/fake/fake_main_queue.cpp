#include "platform/fake/fake_main_queue.h"

namespace tamsel {

void FakeMainQueue::async(QObject* context, std::function<void()> task) {
    const std::lock_guard lock(m_mutex);
    m_async.push_back({context != nullptr, context, std::move(task)});
}

TaskHandle FakeMainQueue::after(Milliseconds delay, std::function<void()> task) {
    return TaskHandle(removal(add(delay, Milliseconds(0), std::move(task))));
}

void FakeMainQueue::after(QObject* context, Milliseconds delay, std::function<void()> task) {
    QObject::connect(context, &QObject::destroyed,
                     removal(add(delay, Milliseconds(0), std::move(task))));
}

TaskHandle FakeMainQueue::every(Milliseconds interval, std::function<void()> task) {
    return TaskHandle(removal(add(interval, interval, std::move(task))));
}

std::uint64_t FakeMainQueue::add(Milliseconds delay, Milliseconds interval,
                                 std::function<void()> task) {
    const std::uint64_t id = m_nextId++;
    (*m_timers)[{m_now + delay, id}] = {interval,
                                        std::make_shared<std::function<void()>>(std::move(task))};
    return id;
}

std::function<void()> FakeMainQueue::removal(std::uint64_t id) const {
    return [timers = std::weak_ptr(m_timers), id] {
        if (const auto all = timers.lock())
            std::erase_if(*all, [id](const auto& timer) { return timer.first.second == id; });
    };
}

void FakeMainQueue::runPending() {
    for (;;) {
        Async next;
        {
            const std::lock_guard lock(m_mutex);
            if (m_async.empty())
                return;
            next = std::move(m_async.front());
            m_async.pop_front();
        }
        if (!next.hasContext || next.context)
            next.task();
    }
}

void FakeMainQueue::advance(Milliseconds duration) {
    const Milliseconds end = m_now + duration;
    runPending();
    while (!m_timers->empty() && m_timers->begin()->first.first <= end) {
        const auto [due, id] = m_timers->begin()->first;
        const Timer timer = m_timers->begin()->second;
        m_timers->erase(m_timers->begin());
        m_now = due;
        if (timer.interval.count() > 0)
            (*m_timers)[{due + timer.interval, id}] = timer;
        (*timer.task)();
        runPending();
    }
    m_now = end;
}

} // namespace tamsel
