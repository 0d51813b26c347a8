#pragma once

#include "coding/cfg_coding.h"
#include "core/core.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tamsel {

using engine::Edge;
using engine::EngineTime;
namespace word = protocol::status;

class FakeMemory final : public OrderMemory {
public:
    Order load() const override { return order; }
    Result<void> save(Order saved) override {
        if (isBroken)
            return fail("no room", "state");
        order = saved;
        return {};
    }
    Order order = Order::start;
    bool isBroken = false;
};

class FakeOutput final : public VirtualDevice {
public:
    Result<void> write(std::span<const engine::OutputEvent> events) override {
        if (isBroken)
            return fail("no room", "out");
        for (const engine::OutputEvent& event : events)
            text += std::to_string(event.usage) + (event.edge == Edge::down ? "d " : "u ");
        return {};
    }
    Result<void> record(const ShortcutAction& action) override {
        text += "!" + std::string(name(action.type)) + " ";
        return {};
    }
    std::string taken() { return std::exchange(text, {}); }
    std::string text;
    bool isBroken = false;
};

class FakeRunner final : public ActionRunner {
public:
    void runCommand(const std::string& command) override { asked.push_back("run " + command); }
    void openURL(const std::string& url) override { asked.push_back("open " + url); }
    void requestClipboardText(ClipboardText done) override { clipboard = std::move(done); }
    std::vector<std::string> asked;
    ClipboardText clipboard;
};

/// Obeys at once, unless told not to; what was wished for then is in `wishes`.
class FakeDevices final : public DeviceControl {
public:
    void want(engine::DeviceIndex device, engine::Seizure seizure) override {
        const bool isWanted = seizure == engine::Seizure::seized;
        if (isSlow)
            wishes += (isWanted ? "+" : "-") + std::to_string(device) + " ";
        else
            isWanted ? core->seized(device, KeysThen::asSeen) : core->freed(device);
    }
    void tryAgain() override { wishes += "again "; }

    Core* core = nullptr;
    bool isSlow = false;
    std::string wishes;
};

inline SeenDeviceInfo device(std::int64_t vendor, const char* product, bool isMouse) {
    return {vendor, 7, product, "Maker", "USB", false, false, isMouse};
}

inline Bytes encoded(const Cfg& cfg) {
    return encodeCfg(cfg).value();
}

inline Cfg capsIsControl() {
    Cfg cfg;
    cfg.mappings.push_back({"id", true, {57, {}}, {224, {}}});
    return cfg;
}

/// Combos on the keys from 4 on, without modifiers.
inline Cfg
combos(const std::vector<std::pair<ShortcutAction, std::optional<ShortcutAction>>>& actions) {
    Cfg cfg;
    for (const auto& [action, actionUp] : actions) {
        Shortcut combo{.id = "id", .enabled = true, .action = action, .actionUp = actionUp};
        combo.keys.keyCode = static_cast<std::uint32_t>(4 + cfg.shortcuts.size());
        cfg.shortcuts.push_back(combo);
    }
    return cfg;
}

class CoreTest : public testing::Test {
protected:
    enum : engine::DeviceIndex { appleKeyboard, otherKeyboard, mouse, bluetoothKeyboard };

    static constexpr AccessReport ready{NodeAccess::ok, NodeAccess::ok};

    std::unique_ptr<Core> makeCore(const AccessReport& access = ready) {
        auto core = std::make_unique<Core>(m_output, m_memory, [this](const Error& error) {
            m_complaints.push_back(error.description());
        });
        m_devices.core = core.get();
        core->setDeviceControl(&m_devices);
        core->setAccess(access);
        for (const SeenDeviceInfo& each : {device(1452, "Keys", false), device(2, "Keys", false),
                                           device(2, "Keys", true), device(0x4C, "Air", false)})
            core->addDevice(core->newIndex(), each);
        return core;
    }

    engine::DeviceIndex plug(SeenDeviceInfo device, Reach reach = Reach::canBeSeized) {
        const auto index = m_core->newIndex();
        m_core->addDevice(index, std::move(device), reach);
        return index;
    }

    std::optional<KeyEvent> press(engine::DeviceIndex index, std::uint32_t usage,
                                  Edge edge = Edge::down) {
        return m_core->handle({EngineTime(++m_time), index, usage, edge});
    }

    /// The chosen devices as a row of marks: seized, allowed only, neither.
    std::string devices() const {
        std::string marks;
        for (const SeenDeviceInfo& each : m_core->seenDevices())
            marks += each.isSeized ? 's' : each.isAllowed ? 'a' : '-';
        return marks;
    }

    std::string_view statusText() const { return m_core->status().text; }

    FakeMemory m_memory;
    FakeOutput m_output;
    FakeDevices m_devices;
    std::vector<std::string> m_complaints;
    std::unique_ptr<Core> m_core = makeCore();
    int m_time = 0;
};

} // namespace tamsel
