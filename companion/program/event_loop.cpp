#include "program/event_loop.h"

#include <csignal>
#include <system_error>

namespace tamsel {

Result<Loop> makeLoop() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGCHLD})
        ::sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    sd_event* loop = nullptr;
    if (const int result = ::sd_event_new(&loop); result < 0)
        return loopError(result);
    Loop owned(loop);
    for (const int signal : {SIGTERM, SIGINT}) {
        // No handler: the loop exits.
        if (const int result = ::sd_event_add_signal(loop, nullptr, signal, nullptr, nullptr);
            result < 0)
            return loopError(result);
    }
    return owned;
}

tl::unexpected<Error> loopError(int result) {
    return fail("the event loop failed: " + std::generic_category().message(-result));
}

} // namespace tamsel
