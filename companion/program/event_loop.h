#pragma once

#include "base/error.h"

#include <memory>
#include <systemd/sd-event.h>

namespace tamsel {

struct UnrefLoop {
    void operator()(sd_event* loop) const { ::sd_event_unref(loop); }
};
using Loop = std::unique_ptr<sd_event, UnrefLoop>;

/// A loop that ends with SIGTERM and SIGINT. From here on the process has these two and SIGCHLD
/// blocked, for the loop to take, and ignores SIGPIPE.
Result<Loop> makeLoop();

/// The error of a failed sd-event call, `result` its negative return value.
tl::unexpected<Error> loopError(int result);

} // namespace tamsel
