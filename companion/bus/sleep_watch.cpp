#include "bus/sleep_watch.h"

#include <fcntl.h>

namespace tamsel {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";

} // namespace

SleepWatch::SleepWatch(sd_event* loop, std::function<void(bool)> changed)
    : m_changed(std::move(changed)) {
    if (::sd_bus_open_system(&m_bus) < 0)
        return;
    ::sd_bus_match_signal_async(m_bus, nullptr, service, path, interface, "PrepareForSleep",
                                onSignal, nullptr, this);
    ::sd_bus_attach_event(m_bus, loop, SD_EVENT_PRIORITY_NORMAL);
    askForLock();
}

SleepWatch::~SleepWatch() {
    if (!m_bus)
        return;
    ::sd_bus_detach_event(m_bus);
    ::sd_bus_close(m_bus); // without waiting for what is not sent yet
    ::sd_bus_unref(m_bus);
}

void SleepWatch::askForLock() {
    ::sd_bus_call_method_async(m_bus, nullptr, service, path, interface, "Inhibit", onLock, this,
                               "ssss", "sleep", "Tamsel", "keys that are held are let go", "delay");
}

int SleepWatch::onLock(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
    int lock = -1;
    if (::sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        ::sd_bus_message_read(reply, "h", &lock) >= 0)
        static_cast<SleepWatch*>(self)->m_lock = UniqueFd(::fcntl(lock, F_DUPFD_CLOEXEC, 0));
    return 0;
}

int SleepWatch::onSignal(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    auto* const watch = static_cast<SleepWatch*>(self);
    int isAboutToSleep = 0;
    if (::sd_bus_message_read(signal, "b", &isAboutToSleep) < 0)
        return 0;
    watch->m_changed(isAboutToSleep != 0);
    if (isAboutToSleep != 0)
        watch->m_lock = {};
    else
        watch->askForLock();
    return 0;
}

} // namespace tamsel
