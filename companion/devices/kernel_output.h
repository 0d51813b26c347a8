#pragma once

#include "core/virtual_device.h"
#include "devices/made_device.h"
#include "engine/usage_slots.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tamsel {

/// The virtual devices: a keyboard for what is built in and one for what is plugged in, which are
/// there from start to end, a pointer for buttons that have no other, and a stand-in for each
/// pointing device that is seized.
///
/// A press goes to the keyboard that its source belongs to, a release to the device that carries
/// the press; an event of a mouse to its stand-in.
class KernelOutput final : public VirtualDevice {
public:
    /// Where events come from.
    struct Source {
        KeyboardPlace place = KeyboardPlace::external;
        UinputDevice* pointer = nullptr; ///< its stand-in, if it has one
    };

    /// What a source passed through and still holds; emptied by release().
    class Held {
        friend class KernelOutput;
        std::vector<std::pair<UinputDevice*, std::uint16_t>> m_keys;
    };

    /// `changed` is called when it has become ready or broken.
    KernelOutput(MachineLoop on, std::function<void()> changed);

    /// Makes the devices; again after they broke.
    void open();
    /// Gives all of them up.
    void close();
    bool isOpen() const { return m_builtIn != nullptr; }
    bool isReady() const;
    /// Why it is not, and will not become so by itself: the devices could not be made or written.
    std::optional<Error> failure() const;
    void announced(std::string_view inputName);

    /// Everything until end() comes from this source and is written as one frame a device.
    void begin(const Source& source);
    void end();

    Result<void> write(std::span<const engine::OutputEvent> events) override;
    /// An event that nothing is to rewrite, as it is. One that no virtual device has is left out.
    void pass(const input_event& event, Held& held);
    /// Whether the press of this key was passed and its release has not been.
    static bool isHeld(const Held& held, std::uint16_t code);
    void release(Held& held);
    /// The stand-in goes: nothing is written to it any more.
    void forget(const UinputDevice* pointer);

    /// The keyboards, for who wants to read which lights others switch on them.
    UinputDevice* keyboard(KeyboardPlace place);

private:
    struct Target {
        UinputDevice* device = nullptr;
        std::uint16_t code = 0;
    };

    Target target(std::uint32_t usage);
    void emit(UinputDevice* device, std::uint16_t type, std::uint16_t code, std::int32_t value);
    Result<void> syncAll();
    void noteFailure(const Result<void>& done);

    MachineLoop m_on;
    std::function<void()> m_changed;
    std::unique_ptr<MadeDevice> m_builtIn;
    std::unique_ptr<MadeDevice> m_external;
    std::unique_ptr<MadeDevice> m_pointer;
    std::optional<Error> m_writeFailure;
    EventSource m_soon;
    Source m_source;
    bool m_isInFrame = false;
    std::vector<UinputDevice*> m_touched;               ///< in this frame, in order
    std::array<Target, engine::slotCount> m_carriers{}; ///< of the presses that are down
    UinputDevice* m_lastWritten = nullptr;              ///< by the engine, in this frame
};

} // namespace tamsel
