#pragma once

#include "devices/helpers.h"

#include <systemd/sd-event.h>

namespace tamsel {

/// What everything about real devices runs on.
struct MachineLoop {
    sd_event* loop;
    Helpers& helpers;
};

} // namespace tamsel
