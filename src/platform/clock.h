#pragma once

#include <QTimeZone>

#include <chrono>

namespace tamsel {

/// Wall clock, uptime and time zone. Any thread may call.
class Clock {
public:
    virtual ~Clock() = default;

    virtual std::chrono::system_clock::time_point now() const = 0;
    /// Seconds since the machine booted, on CLOCK_MONOTONIC (the clock of deadlines that the
    /// daemon sends).
    virtual double systemUptime() const = 0;
    /// The system's current time zone.
    virtual QTimeZone timeZone() const = 0;
};

} // namespace tamsel
