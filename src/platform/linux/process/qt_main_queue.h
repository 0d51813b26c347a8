#pragma once

#include "platform/main_queue.h"

class QTimer;

namespace tamsel {

/// The main queue on Qt's event loop. Made on the main thread; tasks still pending when it is
/// destroyed never run.
class QtMainQueue final : public MainQueue {
public:
    void async(QObject* context, std::function<void()> task) override;
    TaskHandle after(std::chrono::milliseconds delay, std::function<void()> task) override;
    void after(QObject* context, std::chrono::milliseconds delay,
               std::function<void()> task) override;
    TaskHandle every(std::chrono::milliseconds interval, std::function<void()> task) override;

private:
    enum class Repeat { no, yes };
    QTimer* start(QObject* owner, std::chrono::milliseconds delay, Repeat repeat,
                  std::function<void()> task);
    TaskHandle schedule(std::chrono::milliseconds delay, Repeat repeat, std::function<void()> task);

    QObject m_anchor; ///< owns the timers and stands in for a missing context
};

} // namespace tamsel
