#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <systemd/sd-event.h>

namespace tamsel {

/// Something that the loop waits for; it is waited for as long as this object lives. `happened` may
/// destroy the object that it belongs to.
class EventSource final {
public:
    using Happened = std::function<void()>;

    /// Before clients are served, keys are.
    static constexpr std::int64_t keyPriority = SD_EVENT_PRIORITY_IMPORTANT;

    EventSource() = default;

    /// As long as `fd`, which the caller owns, can be read.
    static EventSource onReadable(sd_event* loop, int fd, Happened happened,
                                  std::int64_t priority = SD_EVENT_PRIORITY_NORMAL);
    /// Once.
    static EventSource after(sd_event* loop, std::chrono::microseconds delay, Happened happened);

    bool isSet() const { return m_source != nullptr; }

private:
    struct Unref {
        void operator()(sd_event_source* source) const { ::sd_event_source_disable_unref(source); }
    };

    std::unique_ptr<sd_event_source, Unref> m_source;
};

} // namespace tamsel
