#include "devices/kernel_devices.h"

#include <algorithm>
#include <linux/input.h>
#include <unistd.h>

namespace tamsel {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseBetweenTries = 2s;
constexpr std::chrono::microseconds now{0};

} // namespace

KernelDevices::KernelDevices(sd_event* loop, const DeviceNodes& nodes, Say say)
    : m_on{loop, m_helpers},
      m_say(std::move(say)),
      m_output(m_on, [this] { outputChanged(); }),
      m_watch({}, nodes, m_helpers, *this) {}

KernelDevices::~KernelDevices() {
    if (m_core)
        m_core->setDeviceControl(nullptr);
    m_devices.clear();
    m_output.close();
}

Result<void> KernelDevices::start(Core& core, Publish publish) {
    m_core = &core;
    core.setDeviceControl(this);
    m_publish = std::move(publish);
    m_helpersSource = EventSource::onReadable(
        m_on.loop, m_helpers.fd(), [this] { m_helpers.finish(); }, EventSource::keyPriority);
    auto monitor = UdevMonitor::open();
    if (!monitor)
        return tl::unexpected(monitor.error());
    m_monitor.emplace(std::move(*monitor));
    m_newsSource = EventSource::onReadable(m_on.loop, m_monitor->fd(), [this] { readNews(); });
    m_watch.lookAtEverything();
    return {};
}

void KernelDevices::readNews() {
    const bool isAll = m_monitor->read([this](const UdevMonitor::News& news) {
        if (news.name == "uinput")
            return m_watch.driverChanged();
        if (news.isGone)
            return m_watch.gone(news.name);
        announced(news.parent);
        m_watch.changed(news.name);
    });
    if (!isAll)
        m_watch.lookAtEverything();
}

void KernelDevices::announced(const std::string& inputName) {
    m_output.announced(inputName);
    for (KernelDevice& device : m_devices)
        device.announced(inputName);
}

void KernelDevices::lookAgain() {
    m_watch.lookAtEverything();
    tryAgain();
}

void KernelDevices::want(engine::DeviceIndex device, engine::Seizure seizure) {
    if (KernelDevice* const found = find(device))
        found->want(device, seizure);
}

void KernelDevices::tryAgain() {
    for (KernelDevice& device : m_devices)
        device.tryAgain();
}

KernelDevice* KernelDevices::find(engine::DeviceIndex device) {
    for (KernelDevice& each : m_devices) {
        for (const KernelDevice::Interface& interface : each.interfaces()) {
            if (interface.index == device)
                return &each;
        }
    }
    return nullptr;
}

void KernelDevices::nodeAppeared(const NodeDescription& node) {
    std::vector<KernelDevice::Interface> interfaces;
    for (const SeenDeviceInfo& entry : node.entries)
        interfaces.push_back({m_core->newIndex(), entry.isMouse});
    KernelDeviceSink& sink = *this;
    // The core may want it at once.
    m_devices.emplace_back(m_on, "/dev/input/" + node.name, node, interfaces, m_output, sink);
    for (std::size_t i = 0; i < interfaces.size(); ++i) {
        const SeenDeviceInfo& entry = node.entries[i];
        m_core->addDevice(interfaces[i].index, entry,
                          entry.isAllowed ? Reach::canBeSeized : Reach::outOfReach);
    }
    // Whoever held another one may be gone with it.
    tryAgain();
    changed();
}

void KernelDevices::nodeGone(const std::string& name) {
    const auto device = std::find_if(m_devices.begin(), m_devices.end(), [&](const auto& each) {
        return each.description().name == name;
    });
    if (device == m_devices.end())
        return;
    // Gone for the core first: its keys go up, and a freed device is none of its business.
    for (const KernelDevice::Interface& interface : device->interfaces())
        m_core->removeDevice(interface.index);
    m_devices.erase(device);
    changed();
}

void KernelDevices::lost(const std::string& name) {
    // Not from within the device.
    m_lost.push_back(name);
    m_later = EventSource::after(m_on.loop, now, [this] {
        for (const std::string& each : std::exchange(m_lost, {}))
            m_watch.gone(each);
    });
}

void KernelDevices::accessChanged(const AccessReport& report) {
    m_say(describe(report));
    if (report.uinput == NodeAccess::ok && !m_output.isOpen() && !m_retry.isSet())
        m_output.open();
    m_core->setAccess(report);
}

void KernelDevices::complain(const Error& error) {
    m_say(error.description());
}

void KernelDevices::handle(const engine::InputEvent& event) {
    if (const auto seen = m_core->handle(event))
        m_publish(*seen);
}

void KernelDevices::changed() {
    for (KernelDevice& device : m_devices) {
        if (!device.description().hasMediaKeys)
            continue;
        std::optional<engine::DeviceIndex> keyboard;
        for (const KernelDevice& other : m_devices) {
            if (other.description().family == device.description().family && other.seizedKeyboard())
                keyboard = other.seizedKeyboard();
        }
        device.follow(keyboard);
    }
}

void KernelDevices::outputChanged() {
    if (const auto failure = m_output.failure()) {
        m_core->outputFailed(*failure);
        m_output.close();
        m_builtInLights = {};
        m_externalLights = {};
        m_retry = EventSource::after(m_on.loop, pauseBetweenTries, [this] {
            m_retry = {};
            m_output.open();
        });
        return;
    }
    if (!m_output.isReady())
        return;
    for (const KeyboardPlace place : {KeyboardPlace::builtIn, KeyboardPlace::external}) {
        EventSource& source = place == KeyboardPlace::builtIn ? m_builtInLights : m_externalLights;
        source = {};
        source = EventSource::onReadable(m_on.loop, m_output.keyboard(place)->fd(),
                                         [this, place] { readLights(place); });
    }
    m_core->outputReady();
    tryAgain();
}

void KernelDevices::readLights(KeyboardPlace place) {
    input_event event{};
    while (::read(m_output.keyboard(place)->fd(), &event, sizeof event) == sizeof event) {
        if (event.type != EV_LED)
            continue;
        for (KernelDevice& device : m_devices) {
            if (device.description().place == place)
                device.setLight(event.code, event.value);
        }
    }
}

} // namespace tamsel
