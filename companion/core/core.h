#pragma once

#include "base/bytes.h"
#include "base/error.h"
#include "core/access_report.h"
#include "core/action_runner.h"
#include "core/device_control.h"
#include "core/order_memory.h"
#include "core/virtual_device.h"
#include "engine/engine.h"
#include "protocol/daemon_protocol.h"
#include "records/records.h"
#include "records/seen_device.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace tamsel {

/// The reply of getStatus.
struct Status {
    bool isGrabbing = false;
    bool driverConnected = false;
    std::string_view text; ///< a word of protocol::status

    bool operator==(const Status&) const = default;
};

/// The daemon's decisions: which devices it seizes and when, what it answers. It wants to seize
/// once it has a configuration, a virtual device and no order to stop; what it then holds it learns
/// from the devices. Not seizing, it writes nothing.
class Core final {
public:
    /// The longest configuration accepted, in bytes.
    static constexpr std::size_t maxCfgSize = std::size_t{16} * 1024 * 1024;
    /// What a combo types at most, in characters: a text of its own, the clipboard's.
    static constexpr std::size_t maxTypedText = 2048;
    static constexpr std::size_t maxTypedClipboard = std::size_t{64} * 1024;

    /// Called with what goes wrong behind an answer (a state that cannot be saved, an output that
    /// cannot be written, a text that cannot be typed); never with a key or a text.
    using Complain = std::function<void(const Error&)>;

    /// `output` and `memory` outlive the core.
    Core(VirtualDevice& output, OrderMemory& memory, Complain complain);

    /// Who runs the actions of combos; without one those that need somebody do nothing.
    void setActionRunner(ActionRunner* runner) { m_runner = runner; }
    /// Who seizes devices; without one nothing is seized. Set before there are devices.
    void setDeviceControl(DeviceControl* control) { m_control = control; }

    /// On failure the last good configuration stays. The error may quote the configuration.
    Result<void> updateCfg(ByteView encoded);

    /// Whether the devices are to be seized now and not every one is refused. Refused after the
    /// lock-out chord until stopGrabbing; without a configuration the order is kept for the first
    /// one.
    bool startGrabbing();
    /// Releases every device and forgets the lock-out. Always true.
    bool stopGrabbing();

    /// An index for a further device; it is never given to another one.
    engine::DeviceIndex newIndex() { return m_nextIndex++; }
    /// The device is there; it may be wanted before this call returns.
    void addDevice(engine::DeviceIndex index, SeenDeviceInfo device,
                   Reach reach = Reach::canBeSeized);
    /// The device is gone; what it holds is released.
    void removeDevice(engine::DeviceIndex device);

    /// What became of a wish to the device control, and what happened without one.
    void seized(engine::DeviceIndex device, KeysThen keys);
    void freed(engine::DeviceIndex device);
    /// It cannot be seized, for this errno: another program holds it, most likely.
    void refused(engine::DeviceIndex device, int error);

    /// What keeps the daemon from the machine's devices; nothing is seized before it is known.
    void setAccess(const AccessReport& access);
    /// Nothing can be written any more: everything is freed, until there is an output again.
    void outputFailed(const Error& error);
    void outputReady();
    /// The machine is about to sleep, or has woken up; asleep nothing is seized.
    void setAsleep(bool isAsleep);

    Status status() const;
    /// In order of their indexes; several devices of one identity and kind are one entry.
    std::vector<SeenDeviceInfo> seenDevices() const;

    /// The next event of a device, in order of time. What a key viewer is to see of it, if
    /// anything.
    std::optional<KeyEvent> handle(const engine::InputEvent& event);

    /// The end: releases every device, whatever comes later; the last order stays remembered.
    void shutDown();

private:
    struct Device {
        SeenDeviceInfo info;
        Reach reach = Reach::canBeSeized;
        bool isWanted = false;
        bool isSeized = false;
        bool isRefused = false;
    };

    /// Whether everything but the devices allows it.
    bool mayGrab() const;
    bool isGrabbing() const;
    bool isDriverConnected() const {
        return m_access.uinput == NodeAccess::ok && !m_isOutputBroken;
    }
    void rememberOrder();
    void applySeizure();
    void applySeizure(engine::DeviceIndex index, Device& device);
    void apply(const engine::Effects& effects);
    void run(const ShortcutAction& action);
    void type(std::string_view text, std::size_t limit);
    void typeClipboard();
    void write(engine::Outputs outputs);
    void noteOutput(const Result<void>& done);

    VirtualDevice& m_output;
    OrderMemory& m_memory;
    std::map<engine::DeviceIndex, Device> m_devices;
    engine::DeviceIndex m_nextIndex = 0;
    AccessReport m_access;
    Complain m_complain;
    engine::Engine m_engine;
    std::optional<Cfg> m_cfg;
    Order m_order;
    Order m_savedOrder;
    ActionRunner* m_runner = nullptr;
    DeviceControl* m_control = nullptr;
    /// Grows whenever all is released; a clipboard asked for before is not typed any more.
    std::uint64_t m_releaseCount = 0;
    bool m_isLockedOut = false;
    bool m_isShutDown = false;
    bool m_isAsleep = false;
    bool m_isOutputBroken = false;
    bool m_outputFailed = false;
};

} // namespace tamsel
