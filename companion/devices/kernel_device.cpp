#include "devices/kernel_device.h"

#include "keys/evdev_codes.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace tamsel {

namespace {

using namespace std::chrono_literals;
using std::chrono::microseconds;

/// How long a key may be held, or somebody else hold the device, before it is decided upon.
constexpr microseconds patience = 2s;
constexpr microseconds pause = 100ms;
constexpr std::size_t roomForFrame = 64;
constexpr std::uint32_t firstButtonUsage = 0x1001;
constexpr unsigned buttonsWithUsage = 16;

microseconds now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) +
           std::chrono::duration_cast<microseconds>(std::chrono::nanoseconds(time.tv_nsec));
}

microseconds timeOf(const input_event& event) {
    return std::chrono::seconds(event.input_event_sec) + microseconds(event.input_event_usec);
}

constexpr bool isButton(std::uint16_t code) {
    return code >= BTN_MISC && code < KEY_OK;
}

/// 0 for what the catalogue has no code for.
std::uint32_t usageOf(std::uint16_t code) {
    if (code >= BTN_MOUSE && code < BTN_MOUSE + buttonsWithUsage)
        return firstButtonUsage + (code - BTN_MOUSE);
    return EvdevCodes::toHid(code).value_or(0);
}

} // namespace

KernelDevice::KernelDevice(MachineLoop on, std::string path, NodeDescription description,
                           std::vector<Interface> interfaces, KernelOutput& output,
                           KernelDeviceSink& sink)
    : m_on(on),
      m_path(std::move(path)),
      m_description(std::move(description)),
      m_interfaces(std::move(interfaces)),
      m_output(output),
      m_sink(sink) {
    m_frame.reserve(roomForFrame);
}

KernelDevice::~KernelDevice() {
    closeNode();
    m_output.release(m_passed);
    dropStandIn();
}

bool KernelDevice::isWanted() const {
    return m_followed || std::any_of(m_interfaces.begin(), m_interfaces.end(),
                                     [](const Interface& each) { return each.isWanted; });
}

void KernelDevice::want(engine::DeviceIndex device, engine::Seizure wanted) {
    for (Interface& each : m_interfaces) {
        if (each.index == device)
            each.isWanted = wanted == engine::Seizure::seized;
    }
    update();
}

void KernelDevice::follow(std::optional<engine::DeviceIndex> keyboard) {
    if (m_followed == keyboard)
        return;
    m_followed = keyboard;
    update();
}

std::optional<engine::DeviceIndex> KernelDevice::seizedKeyboard() const {
    for (const Interface& each : m_interfaces) {
        if (each.isSeized && !each.isMouse)
            return each.index;
    }
    return std::nullopt;
}

void KernelDevice::tryAgain() {
    m_isRefused = false;
    update();
}

void KernelDevice::announced(std::string_view inputName) {
    if (m_standIn)
        m_standIn->announced(inputName);
}

void KernelDevice::setLight(std::uint16_t code, std::int32_t value) {
    if (m_node && m_state == State::seized)
        m_node->setLight(code, value);
}

void KernelDevice::update() {
    if (!isWanted()) {
        m_isRefused = false;
        if (m_state == State::waiting || m_state == State::seized)
            letGo();
        dropStandIn();
        return;
    }
    if (m_state == State::watched && !m_isRefused && m_output.isReady() && isStandInReady())
        open();
    if (m_state == State::seized)
        reportInterfaces();
}

bool KernelDevice::isStandInReady() {
    if (!m_description.standIn)
        return true;
    if (!m_standIn)
        m_standIn = std::make_unique<MadeDevice>(m_on, *m_description.standIn, [this] {
            if (m_standIn->failure())
                refuse(EIO);
            else
                update();
        });
    return m_standIn->isReady();
}

void KernelDevice::dropStandIn() {
    if (m_standIn)
        m_output.forget(m_standIn->device());
    m_standIn.reset();
}

void KernelDevice::open() {
    m_state = State::opening;
    auto result = std::make_shared<tl::expected<InputNode, int>>(tl::unexpected(ENODEV));
    m_on.helpers.run([result, path = m_path] { *result = InputNode::open(path); },
                     [this, result, life = std::weak_ptr(m_life)] {
                         if (!life.expired())
                             opened(std::move(*result));
                     });
}

void KernelDevice::opened(tl::expected<InputNode, int> node) {
    m_state = State::watched;
    if (!node)
        return refuse(node.error());
    m_node = std::make_shared<InputNode>(std::move(*node));
    if (!isWanted())
        return closeNode();
    m_state = State::waiting;
    m_waitingSince = now();
    m_readable = EventSource::onReadable(
        m_on.loop, m_node->fd(), [this] { seizeIfNeutral(); }, EventSource::keyPriority);
    seizeIfNeutral();
}

void KernelDevice::seizeIfNeutral() {
    input_event event{};
    int result = 0;
    while ((result = m_node->next(event)) == 0) {
    }
    if (result != -EAGAIN)
        return lose();
    const std::vector<std::uint16_t> down = m_node->keysDown();
    if (!down.empty()) {
        const bool isDrag = std::any_of(down.begin(), down.end(), isButton);
        const microseconds left = m_waitingSince + patience - now();
        if (isDrag || left > 0us) {
            m_timer =
                EventSource::after(m_on.loop, isDrag ? pause : left, [this] { seizeIfNeutral(); });
            return;
        }
        m_node->pretendUp(down);
    }
    seize();
}

void KernelDevice::seize() {
    const microseconds before = now();
    if (const int error = m_node->grab(); error != 0) {
        if (error != EBUSY || now() > m_waitingSince + patience)
            return refuse(error);
        m_timer = EventSource::after(m_on.loop, pause, [this] { seizeIfNeutral(); });
        return;
    }
    m_timer = {};
    if (!m_node->keysDown().empty()) {
        // Went down in between: the others have seen the press and must see the release.
        closeNode();
        m_state = State::watched;
        return update();
    }
    m_seizedAt = before;
    m_state = State::seized;
    m_frame.clear();
    m_readable = {}; // a descriptor is waited on once
    m_readable = EventSource::onReadable(
        m_on.loop, m_node->fd(), [this] { read(); }, EventSource::keyPriority);
    reportInterfaces();
    m_sink.changed();
}

void KernelDevice::refuse(int error) {
    closeNode();
    dropStandIn();
    m_state = State::watched;
    m_isRefused = true;
    if (error == ENODEV || error == ENOENT || error == ENXIO)
        return; // gone; udev will say so
    for (const Interface& each : m_interfaces) {
        if (each.isWanted)
            m_sink.refused(each.index, error);
    }
}

void KernelDevice::reportInterfaces() {
    for (Interface& each : m_interfaces) {
        if (each.isSeized == each.isWanted)
            continue;
        each.isSeized = each.isWanted;
        each.isSeized ? m_sink.seized(each.index) : m_sink.freed(each.index);
    }
}

void KernelDevice::letGo() {
    const bool wasSeized = m_state == State::seized;
    m_output.release(m_passed);
    m_readable = {};
    m_timer = {};
    m_state = State::freeing;
    m_on.helpers.run([node = std::exchange(m_node, nullptr)]() mutable { node.reset(); },
                     [this, life = std::weak_ptr(m_life)] {
                         if (life.expired())
                             return;
                         m_state = State::watched;
                         update();
                     });
    for (Interface& each : m_interfaces) {
        if (std::exchange(each.isSeized, false))
            m_sink.freed(each.index);
    }
    if (wasSeized)
        m_sink.changed();
}

void KernelDevice::closeNode() {
    m_readable = {};
    m_timer = {};
    if (m_node)
        m_on.helpers.run([node = std::exchange(m_node, nullptr)]() mutable { node.reset(); });
}

void KernelDevice::read() {
    input_event event{};
    int result = 0;
    while (m_state == State::seized && (result = m_node->next(event)) == 0)
        handle(event);
    if (m_state == State::seized && result != -EAGAIN && result != -EINTR)
        lose();
}

void KernelDevice::lose() {
    // A dead descriptor is ready for ever.
    m_readable = {};
    m_timer = {};
    m_sink.lost(m_description.name);
}

void KernelDevice::handle(const input_event& event) {
    if (timeOf(event) < m_seizedAt)
        return;
    if (event.type != EV_SYN)
        m_frame.push_back(event);
    else if (event.code == SYN_REPORT)
        endFrame();
}

void KernelDevice::endFrame() {
    m_output.begin({m_description.place, m_standIn ? m_standIn->device() : nullptr});
    for (const input_event& event : m_frame) {
        const bool isKey = event.type == EV_KEY;
        if (event.type == EV_LED || event.type == EV_REP || (isKey && event.value == 2) ||
            (event.type == EV_MSC && event.code == MSC_SCAN))
            continue;
        const std::uint32_t usage = isKey ? usageOf(event.code) : 0;
        const Interface* const from = usage != 0 ? seizedInterface(event.code) : nullptr;
        if (m_state != State::seized)
            break; // freed by what an event did
        const bool isOurs = usage != 0 && (from || m_followed) &&
                            !(event.value == 0 && KernelOutput::isHeld(m_passed, event.code));
        if (!isOurs) {
            m_output.pass(event, m_passed);
            continue;
        }
        m_sink.handle({std::chrono::duration_cast<engine::EngineTime>(timeOf(event)),
                       from ? from->index : *m_followed, usage,
                       event.value != 0 ? engine::Edge::down : engine::Edge::up});
    }
    m_frame.clear();
    m_output.end();
}

const KernelDevice::Interface* KernelDevice::seizedInterface(std::uint16_t code) const {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(), [code](const Interface& each) {
            return each.isSeized && each.isMouse == isButton(code);
        });
    return found == m_interfaces.end() ? nullptr : &*found;
}

} // namespace tamsel
