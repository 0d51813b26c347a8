#include "platform/linux/process/real_clock.h"

#include <ctime>

namespace tamsel {

std::chrono::system_clock::time_point RealClock::now() const {
    return std::chrono::system_clock::now();
}

double RealClock::systemUptime() const {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

QTimeZone RealClock::timeZone() const {
    return QTimeZone::systemTimeZone();
}

} // namespace tamsel
