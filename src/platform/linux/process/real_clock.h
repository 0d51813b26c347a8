#pragma once

#include "platform/clock.h"

namespace tamsel {

class RealClock final : public Clock {
public:
    std::chrono::system_clock::time_point now() const override;
    double systemUptime() const override;
    QTimeZone timeZone() const override;
};

} // namespace tamsel
