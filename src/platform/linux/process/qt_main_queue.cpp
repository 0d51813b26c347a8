#include "platform/linux/process/qt_main_queue.h"

#include <QPointer>
#include <QTimer>

namespace tamsel {

void QtMainQueue::async(QObject* context, std::function<void()> task) {
    QMetaObject::invokeMethod(context ? context : &m_anchor, std::move(task), Qt::QueuedConnection);
}

TaskHandle QtMainQueue::after(std::chrono::milliseconds delay, std::function<void()> task) {
    return schedule(delay, Repeat::no, std::move(task));
}

TaskHandle QtMainQueue::every(std::chrono::milliseconds interval, std::function<void()> task) {
    return schedule(interval, Repeat::yes, std::move(task));
}

void QtMainQueue::after(QObject* context, std::chrono::milliseconds delay,
                        std::function<void()> task) {
    start(context, delay, Repeat::no, std::move(task));
}

QTimer* QtMainQueue::start(QObject* owner, std::chrono::milliseconds delay, Repeat repeat,
                           std::function<void()> task) {
    auto* timer = new QTimer(owner);
    timer->setSingleShot(repeat == Repeat::no);
    // Coarse timers let the kernel join wake-ups; below a second their slack would show.
    timer->setTimerType(delay < std::chrono::seconds(1) ? Qt::PreciseTimer : Qt::CoarseTimer);
    QObject::connect(timer, &QTimer::timeout, &m_anchor, [timer, repeat, task = std::move(task)] {
        if (repeat == Repeat::no)
            timer->deleteLater();
        task();
    });
    timer->start(delay);
    return timer;
}

TaskHandle QtMainQueue::schedule(std::chrono::milliseconds delay, Repeat repeat,
                                 std::function<void()> task) {
    // Deferred deletion: a task may cancel itself while it runs.
    return TaskHandle([guarded = QPointer(start(&m_anchor, delay, repeat, std::move(task)))] {
        if (guarded) {
            guarded->stop();
            guarded->deleteLater();
        }
    });
}

} // namespace tamsel
