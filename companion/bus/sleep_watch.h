#pragma once

#include "base/unique_fd.h"

#include <functional>
#include <systemd/sd-bus.h>

namespace tamsel {

/// Tells when the machine is about to sleep and when it has woken up. While awake it holds a delay
/// lock of logind, so that the machine waits for what is done then; without logind nothing is told.
class SleepWatch final {
public:
    /// `changed` is called on the loop, with true before the machine sleeps; the lock goes when it
    /// returns.
    SleepWatch(sd_event* loop, std::function<void(bool)> changed);
    SleepWatch(const SleepWatch&) = delete;
    SleepWatch& operator=(const SleepWatch&) = delete;
    ~SleepWatch();

private:
    static int onSignal(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onLock(sd_bus_message* reply, void* self, sd_bus_error* error);
    void askForLock();

    std::function<void(bool)> m_changed;
    sd_bus* m_bus = nullptr;
    UniqueFd m_lock;
};

} // namespace tamsel
