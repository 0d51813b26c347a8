#include "devices/made_device.h"

namespace tamsel {

namespace {

using namespace std::chrono_literals;

/// A machine without udev announces nothing.
constexpr auto longestWaitForUdev = 2s;
constexpr auto timeToOpen = 500ms;

} // namespace

MadeDevice::MadeDevice(MachineLoop on, VirtualRecipe recipe, std::function<void()> changed)
    : m_on(on), m_changed(std::move(changed)) {
    auto result = std::make_shared<Result<UinputDevice>>(fail("not made"));
    m_on.helpers.run([result, recipe = std::move(recipe)] { *result = UinputDevice::make(recipe); },
                     [this, result, life = std::weak_ptr(m_life)] {
                         if (!life.expired())
                             made(std::move(*result));
                     });
}

MadeDevice::~MadeDevice() {
    if (m_device)
        m_on.helpers.run([device = std::move(m_device)]() mutable { device.reset(); });
}

void MadeDevice::made(Result<UinputDevice> result) {
    if (!result) {
        m_failure = result.error();
        m_changed();
        return;
    }
    m_device = std::make_shared<UinputDevice>(std::move(*result));
    m_timer = EventSource::after(m_on.loop, longestWaitForUdev, [this] { settle(); });
}

void MadeDevice::announced(std::string_view inputName) {
    if (!m_device || m_isAnnounced || m_device->inputName() != inputName)
        return;
    m_isAnnounced = true;
    settle();
}

void MadeDevice::settle() {
    m_timer = EventSource::after(m_on.loop, timeToOpen, [this] {
        m_isReady = true;
        m_changed();
    });
}

} // namespace tamsel
