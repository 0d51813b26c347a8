#pragma once

#include "devices/input_node.h"
#include "devices/kernel_output.h"
#include "devices/node_description.h"
#include "engine/engine.h"

#include <memory>
#include <optional>
#include <vector>

namespace tamsel {

/// What the owner of a device learns of it.
class KernelDeviceSink {
public:
    virtual ~KernelDeviceSink() = default;

    virtual void seized(engine::DeviceIndex device) = 0;
    virtual void freed(engine::DeviceIndex device) = 0;
    virtual void refused(engine::DeviceIndex device, int error) = 0;
    /// An event of a seized interface, between the output's begin() and end().
    virtual void handle(const engine::InputEvent& event) = 0;
    /// The node is gone; called last.
    virtual void lost(const std::string& name) = 0;
    /// Called when a node has become seized or freed, for those that go with it.
    virtual void changed() = 0;
};

/// One device node: watched, until it is wanted; then opened, seized as soon as no key of it is
/// down, read, and freed again. Its interfaces (a keyboard, a mouse, or both) are wanted one by
/// one; what comes from one that is not is passed through untouched.
class KernelDevice final {
public:
    struct Interface {
        engine::DeviceIndex index = 0;
        bool isMouse = false;
        bool isWanted = false;
        bool isSeized = false;
    };

    /// `output` and `sink` outlive the device.
    KernelDevice(MachineLoop on, std::string path, NodeDescription description,
                 std::vector<Interface> interfaces, KernelOutput& output, KernelDeviceSink& sink);
    KernelDevice(const KernelDevice&) = delete;
    KernelDevice& operator=(const KernelDevice&) = delete;
    /// Frees it, without a word to the sink.
    ~KernelDevice();

    const NodeDescription& description() const { return m_description; }
    const std::vector<Interface>& interfaces() const { return m_interfaces; }
    /// The seized keyboard among its interfaces.
    std::optional<engine::DeviceIndex> seizedKeyboard() const;

    void want(engine::DeviceIndex device, engine::Seizure wanted);
    /// For a node without interfaces of its own: whether the keyboard that it goes with is seized,
    /// and as which device its keys count.
    void follow(std::optional<engine::DeviceIndex> keyboard);
    /// Once more, after it was refused or the output has become ready.
    void tryAgain();
    void announced(std::string_view inputName);
    void setLight(std::uint16_t code, std::int32_t value);

private:
    enum class State : std::uint8_t { watched, opening, waiting, seized, freeing };

    bool isWanted() const;
    void update();
    void open();
    void opened(tl::expected<InputNode, int> node);
    void seizeIfNeutral();
    void seize();
    void refuse(int error);
    void letGo();
    void closeNode();
    void reportInterfaces();
    void read();
    void lose();
    void handle(const input_event& event);
    void endFrame();
    const Interface* seizedInterface(std::uint16_t code) const;
    bool isStandInReady();
    void dropStandIn();

    MachineLoop m_on;
    std::string m_path;
    NodeDescription m_description;
    std::vector<Interface> m_interfaces;
    std::optional<engine::DeviceIndex> m_followed;
    KernelOutput& m_output;
    KernelDeviceSink& m_sink;
    State m_state = State::watched;
    bool m_isRefused = false;
    std::shared_ptr<InputNode> m_node;
    std::unique_ptr<MadeDevice> m_standIn;
    EventSource m_readable;
    EventSource m_timer;
    std::chrono::microseconds m_waitingSince{0};
    std::chrono::microseconds m_seizedAt{0};
    std::vector<input_event> m_frame;
    KernelOutput::Held m_passed;
    std::shared_ptr<bool> m_life = std::make_shared<bool>();
};

} // namespace tamsel
