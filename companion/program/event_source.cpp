#include "program/event_source.h"

#include <sys/epoll.h>

namespace tamsel {

namespace {

using Happened = EventSource::Happened;

void run(void* happened) {
    // A copy: what happens may end the source, and the function with it.
    const Happened function = *static_cast<Happened*>(happened);
    function();
}

void forget(void* happened) {
    delete static_cast<Happened*>(happened);
}

int onIo(sd_event_source* /*source*/, int /*fd*/, std::uint32_t /*events*/, void* happened) {
    run(happened);
    return 0;
}

int onTime(sd_event_source* /*source*/, std::uint64_t /*time*/, void* happened) {
    run(happened);
    return 0;
}

} // namespace

EventSource EventSource::onReadable(sd_event* loop, int fd, Happened happened,
                                    std::int64_t priority) {
    EventSource made;
    sd_event_source* source = nullptr;
    auto function = std::make_unique<Happened>(std::move(happened));
    if (::sd_event_add_io(loop, &source, fd, EPOLLIN, onIo, function.get()) < 0)
        return made;
    ::sd_event_source_set_destroy_callback(source, forget);
    static_cast<void>(function.release());
    ::sd_event_source_set_priority(source, priority);
    made.m_source.reset(source);
    return made;
}

EventSource EventSource::after(sd_event* loop, std::chrono::microseconds delay, Happened happened) {
    constexpr std::uint64_t accuracy = 1000;
    EventSource made;
    sd_event_source* source = nullptr;
    auto function = std::make_unique<Happened>(std::move(happened));
    if (::sd_event_add_time_relative(loop, &source, CLOCK_MONOTONIC,
                                     static_cast<std::uint64_t>(delay.count()), accuracy, onTime,
                                     function.get()) < 0)
        return made;
    ::sd_event_source_set_destroy_callback(source, forget);
    static_cast<void>(function.release());
    made.m_source.reset(source);
    return made;
}

} // namespace tamsel
